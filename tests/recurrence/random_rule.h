// Legal rules at random, the same for the same seed.
#pragma once

#include <algorithm>
#include <random>

#include "eventkit/embedded/recurrence/rule.h"
#include "tests/recurrence/vocabulary.h"

namespace ek::recurrence {

class RandomRules {
 public:
  explicit RandomRules(unsigned seed) : random_(seed) {}

  int number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }
  bool oneIn(int of) { return number(1, of) == 1; }

  WallTime start() {
    return foundation::wallTimeFrom(
        {number(1960, 2040), static_cast<unsigned>(number(1, 12)), static_cast<unsigned>(number(1, 28)),
         static_cast<unsigned>(number(0, 23)), static_cast<unsigned>(number(0, 59)),
         static_cast<unsigned>(number(0, 59))});
  }

  Rule rule(Frequency least = Frequency::secondly) {
    while (true) {
      Rule made = anyRule(
          static_cast<Frequency>(number(static_cast<int>(least), static_cast<int>(Frequency::yearly))));
      if (faultIn(made) == nullptr) return made;
    }
  }

 private:
  std::vector<int> some(int most, int from, int to, bool alsoFromEnd) {
    std::vector<int> values;
    for (int left = number(1, most); left > 0; --left)
      values.push_back(number(from, to) * (alsoFromEnd && oneIn(3) ? -1 : 1));
    return values;
  }

  std::vector<WeekdayNum> weekdays(int highest) {
    std::vector<WeekdayNum> days;
    for (int left = number(1, 4); left > 0; --left) {
      const int ordinal = highest > 0 && oneIn(2) ? number(1, highest) * (oneIn(3) ? -1 : 1) : 0;
      days.push_back({ordinal, static_cast<unsigned>(number(0, 6))});
    }
    return days;
  }

  Rule anyRule(Frequency frequency) {
    Rule made;
    made.frequency = frequency;
    const bool isYearly = frequency == Frequency::yearly, isSubDaily = frequency < Frequency::daily;
    constexpr int intervals[] = {1, 1, 1, 2, 3, 4, 5, 7, 12, 13, 24, 25, 45, 61, 90, 3601};
    made.interval = intervals[number(0, isSubDaily ? 15 : 9)];
    if (oneIn(3)) made.byMonth = some(4, 1, 12, false);
    if (isYearly && oneIn(4)) made.byWeekNo = some(3, 1, 53, true);
    if ((isYearly || isSubDaily) && oneIn(6)) made.byYearDay = some(12, 1, 366, true);
    if (frequency != Frequency::weekly && oneIn(3)) made.byMonthDay = some(6, 1, 31, true);
    if (oneIn(2)) made.byDay = weekdays(frequency == Frequency::monthly ? 5 : isYearly ? 53 : 0);
    if (oneIn(4)) made.byHour = some(3, 0, 23, false);
    if (oneIn(4)) made.byMinute = some(3, 0, 59, false);
    if (oneIn(5)) made.bySecond = some(3, 0, 59, false);
    if (oneIn(4)) made.bySetPos = some(3, 1, 8, true);
    if (oneIn(3)) made.weekStart = static_cast<unsigned>(number(0, 6));
    return made;
  }

  std::mt19937 random_;
};

}  // namespace ek::recurrence
