// Where a store may answer otherwise than the contract says, and why. Everything else holds for each of them.
#pragma once

#include <string_view>

namespace ek::contract {

enum class Topic { severalRules, clearingRulesFromALaterOccurrence };

struct Difference {
  std::string_view store;
  Topic topic;
  std::string_view reason;
};

inline constexpr Difference kDifferences[] = {
    {"EventKit", Topic::severalRules, "an item has one rule there: adding one replaces it"},
    {"EventKit", Topic::clearingRulesFromALaterOccurrence,
     "the whole series becomes one event at its first start; a store of ours loses nothing"},
};

constexpr bool differs(std::string_view store, Topic topic) {
  for (const Difference& difference : kDifferences)
    if (difference.store == store && difference.topic == topic) return true;
  return false;
}

}  // namespace ek::contract
