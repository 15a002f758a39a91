#include <algorithm>

#include "eventkit/embedded/recurrence/rule.h"

namespace ek::recurrence {

namespace {

// A list's values lie between least and most, or, where they may count from the end, between the negatives.
constexpr struct {
  std::vector<int> Rule::*values;
  int least, most;
  bool fromEnd;
  const char* fault;
} kRanges[] = {
    {&Rule::bySecond, 0, 60, false, "BYSECOND out of range"},
    {&Rule::byMinute, 0, 59, false, "BYMINUTE out of range"},
    {&Rule::byHour, 0, 23, false, "BYHOUR out of range"},
    {&Rule::byMonthDay, 1, 31, true, "BYMONTHDAY out of range"},
    {&Rule::byYearDay, 1, 366, true, "BYYEARDAY out of range"},
    {&Rule::byWeekNo, 1, 53, true, "BYWEEKNO out of range"},
    {&Rule::byMonth, 1, 12, false, "BYMONTH out of range"},
    {&Rule::bySetPos, 1, 366, true, "BYSETPOS out of range"},
};

constexpr int kMostWeekdayOrdinal = 53;

bool isNumbered(const WeekdayNum& day) { return day.ordinal != 0; }

const char* faultInRanges(const Rule& rule) {
  for (const auto& range : kRanges)
    for (const int value : rule.*range.values) {
      const bool isInRange = value >= range.least && value <= range.most;
      const bool isFromEnd = range.fromEnd && value <= -range.least && value >= -range.most;
      if (!isInRange && !isFromEnd) return range.fault;
    }
  for (const WeekdayNum& day : rule.byDay)
    if (day.weekday > 6 || day.ordinal < -kMostWeekdayOrdinal || day.ordinal > kMostWeekdayOrdinal)
      return "BYDAY out of range";
  return nullptr;
}

}  // namespace

const char* faultIn(const Rule& rule) {
  const Frequency frequency = rule.frequency;
  if (rule.interval < 1) return "INTERVAL is not positive";
  if (rule.count && *rule.count < 1) return "COUNT is not positive";
  if (rule.count && rule.until) return "COUNT and UNTIL together";
  if (rule.weekStart > 6) return "WKST out of range";
  if (const char* fault = faultInRanges(rule)) return fault;

  if (!rule.byWeekNo.empty() && frequency != Frequency::yearly)
    return "BYWEEKNO in a rule that is not yearly";
  if (!rule.byYearDay.empty() && frequency >= Frequency::daily && frequency <= Frequency::monthly)
    return "BYYEARDAY in a daily, weekly or monthly rule";
  if (!rule.byMonthDay.empty() && frequency == Frequency::weekly) return "BYMONTHDAY in a weekly rule";
  if (std::ranges::any_of(rule.byDay, isNumbered)) {
    if (frequency < Frequency::monthly) return "numbered weekday in a rule that is not monthly or yearly";
    if (!rule.byWeekNo.empty()) return "numbered weekday beside BYWEEKNO";
  }
  const bool hasOther = !rule.byDay.empty() || std::ranges::any_of(kRanges, [&](const auto& range) {
    return range.values != &Rule::bySetPos && !(rule.*range.values).empty();
  });
  if (!rule.bySetPos.empty() && !hasOther) return "BYSETPOS alone";
  return nullptr;
}

}  // namespace ek::recurrence
