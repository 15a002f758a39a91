// Which times of day a rule names: its time parts, and what its start stands in for.
#pragma once

#include <cstdint>
#include <vector>

#include "eventkit/embedded/recurrence/rule.h"

namespace ek::recurrence {

class TimePlan {
 public:
  // `startTime` in seconds after midnight. dateOnly: midnight alone is named.
  TimePlan(const Rule& rule, std::int64_t startTime, bool dateOnly);

  // The seconds, ascending, that are named within a period of the rule: of a day, or of an hour and less.
  std::size_t size() const { return several_.empty() ? 1 : several_.size(); }
  std::int64_t first() const { return first_; }
  std::int64_t at(std::size_t index) const { return several_.empty() ? first_ : several_[index]; }

  // For periods shorter than a day: whether some are left out for their time of day, and the first that is
  // not, from `time` on; kDaySeconds when there is none before midnight.
  bool isSelective() const { return isSelective_; }
  std::int64_t firstNamedTime(std::int64_t time) const;

 private:
  std::int64_t first_ = 0;
  std::vector<std::int32_t> several_;  // empty when there is one
  bool isSelective_ = false;
  std::uint64_t hours_ = 0, minutes_ = 0, seconds_ = 0;  // of the periods, not within them
};

}  // namespace ek::recurrence
