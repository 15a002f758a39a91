#include "eventkit/macos/recurrence.h"

#include "eventkit/macos/conversions.h"

namespace ek::macos {

namespace {

EKRecurrenceEnd* endTo(const std::optional<RecurrenceEnd>& end) {
  if (!end) return nil;
  if (end->endDate) return [EKRecurrenceEnd recurrenceEndWithEndDate:nsDate(end->endDate)];
  return [EKRecurrenceEnd recurrenceEndWithOccurrenceCount:static_cast<NSUInteger>(end->occurrenceCount)];
}

std::optional<RecurrenceEnd> endFrom(EKRecurrenceEnd* end) {
  if (end == nil) return std::nullopt;
  return RecurrenceEnd{.endDate = dateFrom([end endDate]),
                       .occurrenceCount = static_cast<std::int64_t>([end occurrenceCount])};
}

NSArray* daysTo(const std::vector<DayOfWeek>& days) {
  if (days.empty()) return nil;
  NSMutableArray* array = [NSMutableArray arrayWithCapacity:days.size()];
  for (const DayOfWeek& day : days)
    [array addObject:[EKRecurrenceDayOfWeek dayOfWeek:static_cast<EKWeekday>(day.dayOfTheWeek)
                                           weekNumber:day.weekNumber]];
  return array;
}

std::vector<DayOfWeek> daysFrom(NSArray* days) {
  std::vector<DayOfWeek> values;
  for (EKRecurrenceDayOfWeek* day in days)
    values.push_back({.dayOfTheWeek = static_cast<int>([day dayOfTheWeek]),
                      .weekNumber = static_cast<int>([day weekNumber])});
  return values;
}

}  // namespace

Ref<EKRecurrenceRule> ruleTo(const RecurrenceRule& rule) {
  if (rule.frequency > RecurrenceFrequency::yearly) return {};
  return Ref<EKRecurrenceRule>::adopt([[EKRecurrenceRule alloc]
      initRecurrenceWithFrequency:static_cast<EKRecurrenceFrequency>(rule.frequency)
                         interval:static_cast<NSInteger>(rule.interval)
                    daysOfTheWeek:daysTo(rule.daysOfTheWeek)
                   daysOfTheMonth:nsNumbers(rule.daysOfTheMonth)
                  monthsOfTheYear:nsNumbers(rule.monthsOfTheYear)
                   weeksOfTheYear:nsNumbers(rule.weeksOfTheYear)
                    daysOfTheYear:nsNumbers(rule.daysOfTheYear)
                     setPositions:nsNumbers(rule.setPositions)
                              end:endTo(rule.end)]);
}

RecurrenceRule ruleFrom(EKRecurrenceRule* rule) {
  return {.frequency = static_cast<RecurrenceFrequency>([rule frequency]),
          .interval = [rule interval],
          .firstDayOfTheWeek = static_cast<int>([rule firstDayOfTheWeek]),
          .daysOfTheWeek = daysFrom([rule daysOfTheWeek]),
          .daysOfTheMonth = numbersFrom([rule daysOfTheMonth]),
          .monthsOfTheYear = numbersFrom([rule monthsOfTheYear]),
          .weeksOfTheYear = numbersFrom([rule weeksOfTheYear]),
          .daysOfTheYear = numbersFrom([rule daysOfTheYear]),
          .setPositions = numbersFrom([rule setPositions]),
          .end = endFrom([rule recurrenceEnd])};
}

std::vector<RecurrenceRule> rulesFrom(NSArray* rules) {
  std::vector<RecurrenceRule> values;
  for (EKRecurrenceRule* rule in rules) values.push_back(ruleFrom(rule));
  return values;
}

}  // namespace ek::macos
