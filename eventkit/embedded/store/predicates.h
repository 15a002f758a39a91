// The conditions of queries. Calendars are named by identifier, sorted; no name at all means every calendar.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "eventkit/types.h"

namespace ek::embedded {

struct EventConditions {
  Date start, end;
  std::vector<std::string> calendars;
  bool operator==(const EventConditions&) const = default;
};

struct ReminderConditions {
  enum class State { any, incomplete, completed };
  State state = State::any;
  // Bounds of the due date of incomplete ones, and of the completion date of completed ones.
  std::optional<Date> from, to;
  std::vector<std::string> calendars;
  bool operator==(const ReminderConditions&) const = default;
};

template <class Conditions>
class ConditionsPredicate final : public Predicate {
 public:
  ConditionsPredicate(const void* store, Conditions conditions)
      : store_(store), conditions_(std::move(conditions)) {}
  bool isOf(const void* store) const { return store_ == store; }
  const Conditions& conditions() const { return conditions_; }

 private:
  const void* store_;  // that made it
  Conditions conditions_;
};

}  // namespace ek::embedded
