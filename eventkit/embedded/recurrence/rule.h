// A recurrence rule as RFC 5545 3.3.10 has it, and the wall-clock times that it names.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/date.h"

namespace ek::recurrence {

using foundation::WallTime;

enum class Frequency { secondly, minutely, hourly, daily, weekly, monthly, yearly };

// 0 is every such weekday of the period, n the n-th, -n the n-th from its end.
struct WeekdayNum {
  int ordinal = 0;
  unsigned weekday = 0;  // 0 Sunday to 6 Saturday
  bool operator==(const WeekdayNum&) const = default;
};

struct Until {
  WallTime wall{};      // as written; with isUtc an instant's UTC wall-clock time
  bool isDate = false;  // its 00:00: a timed series ends before that day, as every program has it
  bool isUtc = false;
  bool operator==(const Until&) const = default;
};

// The BY lists as written, without order or duplicates changed; empty when absent.
struct Rule {
  Frequency frequency = Frequency::daily;
  std::int64_t interval = 1;
  std::optional<std::int64_t> count;
  std::optional<Until> until;
  unsigned weekStart = 1;  // Monday
  bool hasWeekStart = false;
  std::vector<int> bySecond, byMinute, byHour, byMonthDay, byYearDay, byWeekNo, byMonth, bySetPos;
  std::vector<WeekdayNum> byDay;
  bool operator==(const Rule&) const = default;
};

// What in a rule breaks the standard, in plain words; null for a legal one.
const char* faultIn(const Rule& rule);

// The value of an RRULE. Nothing for one that breaks the standard (the reason goes to `why` when given):
// unknown or repeated parts, values out of range, no or two FREQ, COUNT beside UNTIL, numbered weekdays
// where they have no meaning, BYWEEKNO outside yearly rules, and so on. Tolerated, because programs write
// them: lower case, blanks around, a trailing ";", X- parts. COUNT=0 and INTERVAL=0 are refused.
std::optional<Rule> parseRule(std::string_view text, std::string* why = nullptr);
std::string formatRule(const Rule& rule);

}  // namespace ek::recurrence
