#include "eventkit/embedded/recurrence/day_plan.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

#include "eventkit/embedded/recurrence/calendar.h"

namespace ek::recurrence {

namespace {

constexpr std::uint32_t kAllMonths = 0x1FFE;
constexpr std::uint32_t kAllMonthDays = 0x7FFFFFFF;
constexpr int kLongestMonth = 31;
constexpr int kMostWeeks = 53;
// 29 February falls on a given weekday every 28 years, or 40 over a century without leap day. What has not
// come in this time never will.
constexpr std::int64_t kRarestDay = std::int64_t{41} * 366;
constexpr int kDaysOfFirstWeek = 4;  // a week belongs to the year that has four of its days

void setBit(YearDays& set, int day) {
  set[static_cast<std::size_t>(day) / 64] |= std::uint64_t{1} << (static_cast<unsigned>(day) % 64);
}

// Up to 31 days into the year's set.
void addDays(YearDays& set, std::uint32_t days, int at) {
  const auto word = static_cast<std::size_t>(at) / 64;
  const auto shift = static_cast<unsigned>(at) % 64;
  set[word] |= std::uint64_t{days} << shift;
  if (shift > 32 && word + 1 < set.size()) set[word + 1] |= std::uint64_t{days} >> (64 - shift);
}

void keepOnly(YearDays& set, const YearDays& kept) {
  for (std::size_t i = 0; i < set.size(); ++i) set[i] &= kept[i];
}

// The weekdays as they come from `firstWeekday` on, for 35 days.
std::uint64_t fiveWeeks(std::uint32_t weekdays, unsigned firstWeekday) {
  const std::uint64_t week = (weekdays >> firstWeekday | weekdays << (7 - firstWeekday)) & 0x7F;
  return week * 0x10204081;
}

struct WeekYear {
  int firstWeek;  // days from 1 January to the beginning of week 1; may be negative
  int weeks;
};

WeekYear weekYearOf(unsigned firstWeekday, int length, unsigned weekStart) {
  const int into = static_cast<int>((firstWeekday + 7 - weekStart) % 7);
  const int first = into <= 7 - kDaysOfFirstWeek ? -into : 7 - into;
  return {first, (length - first + 7 - kDaysOfFirstWeek) / 7};
}

}  // namespace

DayPlan::DayPlan(const Rule& rule, std::int64_t startDay) : weekStart_(rule.weekStart % 7) {
  const Frequency frequency = rule.frequency;
  const bool isYearly = frequency == Frequency::yearly, isMonthly = frequency == Frequency::monthly;
  const bool isSubDaily = frequency < Frequency::daily;

  restrictsMonths_ = !rule.byMonth.empty();
  if (!restrictsMonths_) months_ = kAllMonths;
  for (const int month : rule.byMonth)
    if (month >= 1 && month <= 12) months_ |= 1U << month;

  if (frequency != Frequency::weekly) {
    hasMonthDays_ = !rule.byMonthDay.empty();
    for (const int day : rule.byMonthDay) {
      if (day >= 1 && day <= kLongestMonth) monthDays_ |= 1U << (day - 1);
      if (day <= -1 && day >= -kLongestMonth) monthDaysFromEnd_ |= 1U << (kLongestMonth + day);
    }
  }
  if (isYearly || isSubDaily) {
    hasYearDays_ = !rule.byYearDay.empty();
    for (const int day : rule.byYearDay) {
      if (day >= 1 && day <= 366) setBit(yearDays_, day - 1);
      if (day <= -1 && day >= -366) setBit(yearDaysFromEnd_, -day - 1);
    }
  }
  if (isYearly) {
    hasWeekNumbers_ = !rule.byWeekNo.empty();
    for (const int week : rule.byWeekNo) {
      if (week >= 1 && week <= kMostWeeks) weekNumbers_ |= std::uint64_t{1} << week;
      if (week <= -1 && week >= -kMostWeeks) weekNumbersFromEnd_ |= std::uint64_t{1} << -week;
    }
  }
  hasWeekdays_ = !rule.byDay.empty();
  numbersCountInYear_ = isYearly && !restrictsMonths_;
  for (const WeekdayNum& day : rule.byDay) {
    if (day.ordinal != 0 && (isYearly || isMonthly))
      addNumbered(day);
    else
      weekdays_ |= 1U << day.weekday % 7;
  }
  standInFor(rule, startDay);
}

void DayPlan::addNumbered(const WeekdayNum& day) {
  hasNumbered_ = true;
  if (day.ordinal < -kMostWeeks || day.ordinal > kMostWeeks) return;
  auto& bits = day.ordinal > 0 ? numbered_.fromStart : numbered_.fromEnd;
  bits[day.weekday % 7] |= std::uint64_t{1} << std::abs(day.ordinal);
}

// What the rule leaves open is taken from the start.
void DayPlan::standInFor(const Rule& rule, std::int64_t startDay) {
  const Civil start = civilOf(startDay);
  const auto useWeekday = [&] {
    hasWeekdays_ = true;
    weekdays_ |= 1U << weekdayOf(startDay);
  };
  const auto useMonthDay = [&] {
    hasMonthDays_ = true;
    monthDays_ |= 1U << (start.day - 1);
  };
  switch (rule.frequency) {
    case Frequency::yearly:
      if (hasYearDays_ || hasWeekdays_) break;
      if (hasWeekNumbers_) {
        if (!hasMonthDays_) useWeekday();
        break;
      }
      if (!restrictsMonths_) months_ = 1U << start.month;
      restrictsMonths_ = true;
      if (!hasMonthDays_) useMonthDay();
      break;
    case Frequency::monthly:
      if (!hasMonthDays_ && !hasWeekdays_) useMonthDay();
      break;
    case Frequency::weekly:
      if (!hasWeekdays_) useWeekday();
      break;
    default:
      break;
  }
}

std::uint32_t DayPlan::monthDaysOf(unsigned length) const {
  const std::uint32_t all = kAllMonthDays >> (kLongestMonth - length);
  if (!hasMonthDays_) return all;
  return (monthDays_ | monthDaysFromEnd_ >> (kLongestMonth - length)) & all;
}

template <typename Add>
void DayPlan::forEachNumbered(unsigned firstWeekday, int length, Add add) const {
  for (unsigned weekday = 0; weekday < 7; ++weekday) {
    const int first = static_cast<int>((weekday + 7 - firstWeekday) % 7);
    const int last = first + (length - 1 - first) / 7 * 7;
    for (std::uint64_t bits = numbered_.fromStart[weekday]; bits != 0; bits &= bits - 1) {
      const int day = first + 7 * (std::countr_zero(bits) - 1);
      if (day < length) add(day);
    }
    for (std::uint64_t bits = numbered_.fromEnd[weekday]; bits != 0; bits &= bits - 1) {
      const int day = last - 7 * (std::countr_zero(bits) - 1);
      if (day >= 0) add(day);
    }
  }
}

std::uint32_t DayPlan::daysOfMonth(int year, unsigned month, std::int64_t firstDay) const {
  if (!namesMonth(month)) return 0;
  const unsigned length = monthLength(year, month);
  std::uint32_t days = monthDaysOf(length);
  if (!hasWeekdays_ || (hasNumbered_ && numbersCountInYear_)) return days;
  const unsigned firstWeekday = weekdayOf(firstDay);
  auto named = static_cast<std::uint32_t>(fiveWeeks(weekdays_, firstWeekday));
  if (hasNumbered_)
    forEachNumbered(firstWeekday, static_cast<int>(length), [&](int day) { named |= 1U << day; });
  return days & named;
}

std::uint32_t DayPlan::daysOfWeek(std::int64_t firstDay) const {
  const std::uint32_t days = (weekdays_ >> weekStart_ | weekdays_ << (7 - weekStart_)) & 0x7F;
  if (!restrictsMonths_) return days;
  const Civil first = civilOf(firstDay);
  const unsigned left = monthLength(first.year, first.month) - first.day + 1;
  const std::uint32_t inFirstMonth = left >= 7 ? 0x7F : (1U << left) - 1;
  std::uint32_t named = namesMonth(first.month) ? inFirstMonth : 0;
  if (namesMonth(first.month % 12 + 1)) named |= 0x7F & ~inFirstMonth;
  return days & named;
}

YearDays DayPlan::daysOfYear(int year, std::int64_t firstDay) const {
  YearDays set{};
  int before = 0;
  for (unsigned month = 1; month <= 12; ++month) {
    if (namesMonth(month)) addDays(set, daysOfMonth(year, month, firstDay + before), before);
    before += static_cast<int>(monthLength(year, month));
  }
  const int length = yearLength(year);
  const unsigned firstWeekday = weekdayOf(firstDay);
  if (hasNumbered_ && numbersCountInYear_) keepWeekdaysOfYear(set, firstWeekday, length);
  if (hasYearDays_) keepYearDays(set, length);
  if (hasWeekNumbers_) keepWeeks(set, year, firstWeekday);
  return set;
}

void DayPlan::keepWeekdaysOfYear(YearDays& set, unsigned firstWeekday, int length) const {
  YearDays named{};
  const auto fourWeeks = static_cast<std::uint32_t>(fiveWeeks(weekdays_, firstWeekday) & 0xFFFFFFF);
  for (int day = 0; day < length; day += 28) addDays(named, fourWeeks, day);
  forEachNumbered(firstWeekday, length, [&](int day) { setBit(named, day); });
  keepOnly(set, named);
}

void DayPlan::keepYearDays(YearDays& set, int length) const {
  YearDays named = yearDays_;
  for (std::size_t i = 0; i < yearDaysFromEnd_.size(); ++i)
    for (std::uint64_t bits = yearDaysFromEnd_[i]; bits != 0; bits &= bits - 1) {
      const int day = length - 1 - static_cast<int>(i * 64) - std::countr_zero(bits);
      if (day >= 0) setBit(named, day);
    }
  keepOnly(set, named);
}

// Days at the year's edges may lie in a week of the year before or after; they count with its number.
void DayPlan::keepWeeks(YearDays& set, int year, unsigned firstWeekday) const {
  const int length = yearLength(year), lengthBefore = yearLength(year - 1);
  const WeekYear weeks = weekYearOf(firstWeekday, length, weekStart_);
  const auto weekdayBefore = (firstWeekday + 7U * 53 - static_cast<unsigned>(lengthBefore)) % 7;
  const int weeksBefore = weekYearOf(weekdayBefore, lengthBefore, weekStart_).weeks;
  const auto weekdayAfter = (firstWeekday + static_cast<unsigned>(length)) % 7;
  const int weeksAfter = weekYearOf(weekdayAfter, yearLength(year + 1), weekStart_).weeks;

  YearDays named{};
  const auto addWeek = [&](int firstDay, int number, int weeksOfYear) {
    if ((weekNumbers_ >> number & 1) == 0 && (weekNumbersFromEnd_ >> (weeksOfYear + 1 - number) & 1) == 0)
      return;
    for (int day = std::max(firstDay, 0); day < std::min(firstDay + 7, length); ++day) setBit(named, day);
  };
  addWeek(weeks.firstWeek - 7, weeksBefore, weeksBefore);
  for (int week = 0; week < weeks.weeks; ++week) addWeek(weeks.firstWeek + 7 * week, week + 1, weeks.weeks);
  addWeek(weeks.firstWeek + 7 * weeks.weeks, 1, weeksAfter);
  keepOnly(set, named);
}

bool DayPlan::namesDay(std::int64_t day) const {
  if (!namesWeekday(weekdayOf(day))) return false;
  if (!restrictsMonths_ && !hasMonthDays_ && !hasYearDays_) return true;
  const Civil date = civilOf(day);
  if (!namesMonth(date.month)) return false;
  if (hasMonthDays_ && (monthDaysOf(monthLength(date.year, date.month)) >> (date.day - 1) & 1) == 0)
    return false;
  if (!hasYearDays_) return true;
  const auto fromStart = static_cast<std::size_t>(day - dayNumber(date.year, 1, 1));
  const std::size_t fromEnd = static_cast<std::size_t>(yearLength(date.year)) - 1 - fromStart;
  return (yearDays_[fromStart / 64] >> fromStart % 64 & 1) != 0 ||
         (yearDaysFromEnd_[fromEnd / 64] >> fromEnd % 64 & 1) != 0;
}

std::int64_t DayPlan::firstNamedDay(std::int64_t day, std::int64_t lastDay) const {
  const std::int64_t lastSought = std::min(lastDay, day + kRarestDay);
  while (day <= lastSought && !namesDay(day)) {
    const Civil date = civilOf(day);
    day += namesMonth(date.month) ? 1 : monthLength(date.year, date.month) - date.day + 1;
  }
  return day <= lastSought ? day : lastDay + 1;
}

}  // namespace ek::recurrence
