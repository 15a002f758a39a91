#include "eventkit/embedded/store/rules.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

namespace ek::embedded {

using foundation::WallTime;
using recurrence::Frequency;
using recurrence::Rule;
using recurrence::Until;

namespace {

constexpr struct {
  Frequency frequency;
  RecurrenceFrequency shown;
} kFrequencies[] = {
    {Frequency::daily, RecurrenceFrequency::daily},
    {Frequency::weekly, RecurrenceFrequency::weekly},
    {Frequency::monthly, RecurrenceFrequency::monthly},
    {Frequency::yearly, RecurrenceFrequency::yearly},
    {Frequency::hourly, RecurrenceFrequency::hourly},
    {Frequency::minutely, RecurrenceFrequency::minutely},
    {Frequency::secondly, RecurrenceFrequency::secondly},
};

RecurrenceFrequency shown(Frequency frequency) {
  return std::ranges::find(kFrequencies, frequency, [](const auto& each) { return each.frequency; })->shown;
}

Frequency stored(RecurrenceFrequency frequency) {
  return std::ranges::find(kFrequencies, frequency, [](const auto& each) { return each.shown; })->frequency;
}

constexpr int kMonday = 2;

// The day that a week begins with matters, and shows, only where weeks are skipped.
int firstDayOfTheWeek(RecurrenceFrequency frequency, std::int64_t interval) {
  return frequency == RecurrenceFrequency::weekly && interval > 1 ? kMonday : 0;
}

const foundation::TimeZone& zoneOf(const std::optional<ZonedTime>& start,
                                   const std::shared_ptr<const foundation::TimeZone>& defaultZone) {
  return start && start->zone.zone && !start->isDate ? *start->zone.zone : *defaultZone;
}

std::optional<RecurrenceEnd> endOf(const Rule& rule, const std::optional<ZonedTime>& start) {
  if (rule.count) return RecurrenceEnd{.endDate = std::nullopt, .occurrenceCount = *rule.count};
  if (rule.until) return RecurrenceEnd{.endDate = lastInstantOf(*rule.until, start)};
  return std::nullopt;
}

bool areWithin(const std::vector<int>& numbers, int limit, bool fromTheEndToo) {
  return std::ranges::all_of(numbers, [=](int number) {
    const int magnitude = fromTheEndToo ? std::abs(number) : number;
    return magnitude >= 1 && magnitude <= limit;
  });
}

void checkWeekNumbers(const RecurrenceRule& rule) {
  const int limit = rule.frequency == RecurrenceFrequency::monthly  ? 5
                    : rule.frequency == RecurrenceFrequency::yearly ? 53
                                                                    : 0;
  for (const DayOfWeek& day : rule.daysOfTheWeek) {
    DayOfWeek::dayOfWeek(day.dayOfTheWeek);
    if (std::abs(day.weekNumber) > limit)
      throw Exception("a week number of " + std::to_string(day.weekNumber) +
                      " has no meaning in a rule of this frequency");
  }
}

}  // namespace

RecurrenceRule fromRule(const Rule& rule, const std::optional<ZonedTime>& start) {
  RecurrenceRule result;
  result.frequency = shown(rule.frequency);
  result.interval = rule.interval;
  result.daysOfTheMonth = rule.byMonthDay;
  result.monthsOfTheYear = rule.byMonth;
  result.weeksOfTheYear = rule.byWeekNo;
  result.daysOfTheYear = rule.byYearDay;
  result.setPositions = rule.bySetPos;
  result.end = endOf(rule, start);
  result.firstDayOfTheWeek = rule.hasWeekStart ? static_cast<int>(rule.weekStart) + 1
                                               : firstDayOfTheWeek(result.frequency, result.interval);
  for (const recurrence::WeekdayNum& day : rule.byDay)
    result.daysOfTheWeek.push_back({static_cast<int>(day.weekday) + 1, day.ordinal});
  return result;
}

Rule toRule(const RecurrenceRule& rule, const ZonedTime& start) {
  Rule result;
  result.frequency = stored(rule.frequency);
  result.interval = rule.interval;
  if (rule.firstDayOfTheWeek > 0) {
    result.weekStart = static_cast<unsigned>(rule.firstDayOfTheWeek - 1);
    result.hasWeekStart = true;
  }
  for (const DayOfWeek& day : rule.daysOfTheWeek)
    result.byDay.push_back({day.weekNumber, static_cast<unsigned>(day.dayOfTheWeek - 1)});
  result.byMonthDay = rule.daysOfTheMonth;
  result.byMonth = rule.monthsOfTheYear;
  result.byWeekNo = rule.weeksOfTheYear;
  result.byYearDay = rule.daysOfTheYear;
  result.bySetPos = rule.setPositions;
  if (rule.end && rule.end->endDate)
    result.until = untilAt(*rule.end->endDate, start);
  else if (rule.end)
    result.count = rule.end->occurrenceCount;
  return result;
}

Until untilAt(Date lastInstant, const ZonedTime& start) {
  const bool isUtc = !start.isDate && start.zone.zone != nullptr;
  if (isUtc) return {.wall = WallTime(lastInstant.time_since_epoch()), .isDate = false, .isUtc = true};
  const WallTime wall = foundation::TimeZone::defaultZone()->wallTimeOf(lastInstant);
  return {.wall = start.isDate ? WallTime(std::chrono::floor<std::chrono::days>(wall)) : wall,
          .isDate = start.isDate,
          .isUtc = false};
}

Date lastInstantOf(const Until& until, const std::optional<ZonedTime>& start) {
  const auto defaultZone = foundation::TimeZone::defaultZone();
  if (start && start->isDate) return defaultZone->instantOf(lastDayOf(until));
  // UNTIL in UTC means an instant only where starts are instants, and a date means its first moment.
  const bool isFloating = start && !start->zone.zone;
  return until.isUtc && !isFloating ? Date(until.wall.time_since_epoch())
                                    : zoneOf(start, defaultZone).instantOf(until.wall);
}

std::optional<RecurrenceRule> checkedRule(RecurrenceRule wanted) {
  if (wanted.interval < 1) throw Exception("a recurrence rule needs an interval above 0");
  if (wanted.frequency == RecurrenceFrequency::daily) wanted.daysOfTheWeek.clear();
  if (wanted.frequency != RecurrenceFrequency::monthly) wanted.daysOfTheMonth.clear();
  if (wanted.frequency != RecurrenceFrequency::yearly) {
    wanted.monthsOfTheYear.clear();
    wanted.weeksOfTheYear.clear();
    wanted.daysOfTheYear.clear();
  }
  constexpr int kDays = 31, kMonths = 12, kWeeks = 53, kDaysOfTheYear = 366;
  if (!areWithin(wanted.daysOfTheMonth, kDays, true) || !areWithin(wanted.monthsOfTheYear, kMonths, false) ||
      !areWithin(wanted.weeksOfTheYear, kWeeks, true) ||
      !areWithin(wanted.daysOfTheYear, kDaysOfTheYear, true))
    return std::nullopt;
  checkWeekNumbers(wanted);
  wanted.firstDayOfTheWeek = firstDayOfTheWeek(wanted.frequency, wanted.interval);
  return wanted;
}

}  // namespace ek::embedded
