// The wall-clock times that a rule names, period by period.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "eventkit/embedded/recurrence/calendar.h"
#include "eventkit/embedded/recurrence/day_plan.h"
#include "eventkit/embedded/recurrence/rule.h"
#include "eventkit/embedded/recurrence/time_plan.h"

namespace ek::recurrence {

// The starts that a rule names from `start` on, ascending, each once. Time zones play no part here, nor does
// UNTIL in UTC; COUNT is turned into a limit by lastOfCount. A start that does not fit the rule is not among
// them. Ends by itself, and quickly, for a rule that never matches again; no year after 9999 is looked at.
class Expansion {
 public:
  // dateOnly: the rule's time parts are ignored. `rule` must outlive this.
  Expansion(const Rule& rule, WallTime start, bool dateOnly);

  // Nothing after `last` is named any more. Before the first next().
  void limit(WallTime last);
  // Goes on with the first one not before `from`, in time that does not grow with the distance.
  void seek(WallTime from);
  std::optional<WallTime> next() {
    if (at_ == size_ && !fill()) return std::nullopt;
    return WallTime(std::chrono::seconds(place(at_++)));
  }

  // Passes over the next ones, at most `most`. isComplete is false when it took too long and was left.
  struct Passed {
    std::int64_t count = 0;
    std::optional<WallTime> last;
    bool isComplete = true;
  };
  Passed pass(std::int64_t most);

 private:
  // A period is what the frequency counts: a year, a month, a week, a day, or so many seconds. Its number is
  // the year, the month since year 0, the day on which the week begins, the day, or the second.
  std::int64_t periodOf(std::int64_t wall) const;
  bool fill();
  bool generate();
  bool generateYear();
  bool generateMonth();
  bool generateWeek();
  bool generateDay();
  bool generateWithinDay();
  bool isPickable() const;
  bool isReachable() const;
  bool pick();
  bool trim();
  std::int64_t alignedFrom(std::int64_t second) const;
  void setDays(std::uint64_t word, int firstDay);

  std::int64_t place(std::size_t index) const {
    const std::size_t item = picks_.empty() ? index : picks_[index];
    if (timePlan_.size() == 1) return base_ + days_[item] * kDaySeconds + timePlan_.first();
    return base_ + days_[item / timePlan_.size()] * kDaySeconds + timePlan_.at(item % timePlan_.size());
  }

  const Rule* rule_;
  DayPlan dayPlan_;
  TimePlan timePlan_;
  bool isUniform_ = false;  // every period names the same
  bool isSilent_ = false;   // names nothing, whatever is asked
  bool dateOnly_ = false;
  std::int64_t from_ = 0;
  std::int64_t last_ = std::numeric_limits<std::int64_t>::max();
  std::int64_t period_ = 1;  // to be generated next; beyond lastPeriod_ there is nothing
  std::int64_t step_ = 1;
  std::int64_t firstPeriod_ = 0;
  std::int64_t lastPeriod_ = 0;

  // The period at hand: days since base_, each with all times, of which BYSETPOS picks some.
  std::int64_t base_ = 0;
  std::size_t dayCount_ = 0;
  std::array<std::int16_t, 366> days_;
  std::vector<std::uint32_t> picks_;
  std::size_t at_ = 0, size_ = 0;
};

// The start of the last occurrence of a rule with COUNT. The series' start counts as the first although the
// rule may not name it; when the rule ends before the count is reached, the last one there is. Nothing when
// the end is too far to be looked for.
std::optional<WallTime> lastOfCount(const Rule& rule, WallTime start, bool dateOnly);

// How many occurrences lie before `before`, counted as COUNT counts them.
std::int64_t countOfRuleBefore(const Rule& rule, WallTime start, bool dateOnly, WallTime before);

}  // namespace ek::recurrence
