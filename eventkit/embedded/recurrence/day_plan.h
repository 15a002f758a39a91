// Which days a rule names: its day parts, and what its start stands in for, as bit masks.
#pragma once

#include <array>
#include <cstdint>

#include "eventkit/embedded/recurrence/rule.h"

namespace ek::recurrence {

// Bit i is the i-th day of a year, from 0.
using YearDays = std::array<std::uint64_t, 6>;

class DayPlan {
 public:
  // `startDay` in days since 1970. Parts that have no meaning at the rule's frequency are left out.
  DayPlan(const Rule& rule, std::int64_t startDay);

  // Whether a period of days (or less) may be left out.
  bool isSelective() const { return restrictsMonths_ || hasMonthDays_ || hasYearDays_ || hasWeekdays_; }
  bool restrictsMonths() const { return restrictsMonths_; }
  unsigned weekStart() const { return weekStart_; }

  bool namesMonth(unsigned month) const { return (months_ >> month & 1) != 0; }
  bool namesWeekday(unsigned weekday) const { return !hasWeekdays_ || (weekdays_ >> weekday & 1) != 0; }
  bool namesDay(std::int64_t day) const;
  // The first day from `day` on that is named; one beyond `lastDay` when there is none up to it.
  std::int64_t firstNamedDay(std::int64_t day, std::int64_t lastDay) const;
  // Bit i is the i-th day from the first of the week, or of the month.
  std::uint32_t daysOfWeek(std::int64_t firstDay) const;
  std::uint32_t daysOfMonth(int year, unsigned month, std::int64_t firstDay) const;
  YearDays daysOfYear(int year, std::int64_t firstDay) const;

 private:
  // Numbered weekdays: bit n is the n-th of the period, from its beginning or from its end.
  struct Numbered {
    std::array<std::uint64_t, 7> fromStart{}, fromEnd{};
  };
  void addNumbered(const WeekdayNum& day);
  void standInFor(const Rule& rule, std::int64_t startDay);
  std::uint32_t monthDaysOf(unsigned length) const;
  void keepWeekdaysOfYear(YearDays& set, unsigned firstWeekday, int length) const;
  void keepYearDays(YearDays& set, int length) const;
  void keepWeeks(YearDays& set, int year, unsigned firstWeekday) const;
  template <typename Add>
  void forEachNumbered(unsigned firstWeekday, int length, Add add) const;

  unsigned weekStart_;
  bool restrictsMonths_ = false, hasMonthDays_ = false, hasYearDays_ = false, hasWeekNumbers_ = false;
  bool hasWeekdays_ = false, hasNumbered_ = false;
  bool numbersCountInYear_ = false;
  std::uint32_t months_ = 0;                                // bits 1 to 12
  std::uint32_t monthDays_ = 0;                             // bit 0 is the first
  std::uint32_t monthDaysFromEnd_ = 0;                      // bit 30 is the last, 29 the one before it
  std::uint32_t weekdays_ = 0;                              // bit 0 Sunday
  std::uint64_t weekNumbers_ = 0, weekNumbersFromEnd_ = 0;  // bits 1 to 53
  YearDays yearDays_{}, yearDaysFromEnd_{};                 // bit 0 is the first, or the last
  Numbered numbered_;
};

}  // namespace ek::recurrence
