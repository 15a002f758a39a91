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
  bool isDate = false;  // the whole day is included
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

// The value of an RRULE. Nothing for one that breaks the standard (the reason goes to `why` when given):
// unknown or repeated parts, values out of range, no or two FREQ, COUNT beside UNTIL, numbered weekdays
// where they have no meaning, BYWEEKNO outside yearly rules, and so on. Tolerated, because programs write
// them: lower case, blanks around, a trailing ";", X- parts, INTERVAL=0 is refused.
std::optional<Rule> parseRule(std::string_view text, std::string* why = nullptr);
std::string formatRule(const Rule& rule);

// The wall-clock starts that a rule names from `start` on, ascending, each once. Time zones play no part
// here, nor does UNTIL in UTC. A start that does not fit the rule is not among them. Ends by itself for a
// rule that never matches again (no calendar year after 9999 is looked at), and quickly.
class Expansion {
 public:
  // dateOnly: the rule's time parts are ignored. `rule` must outlive this.
  Expansion(const Rule& rule, WallTime start, bool dateOnly);
  // Goes on with the first one not before `from`, in time that does not grow with the distance. Rules with
  // COUNT are not cut off here: the caller knows the last one (see lastOfCount).
  void seek(WallTime from);
  std::optional<WallTime> next();
};

// The wall-clock start of the last occurrence of a rule with COUNT. startCounts: the series' start is an
// occurrence and counts as the first although the rule may not name it. Nothing when the rule ends before
// the count is reached (the last there is in `lastReached`) .
std::optional<WallTime> lastOfCount(const Rule& rule, WallTime start, bool dateOnly);

}  // namespace ek::recurrence
