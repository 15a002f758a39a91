#include "tests/recurrence/definition.h"

#include <algorithm>
#include <set>

namespace ek::recurrence {

namespace {

using namespace std::chrono;

local_days dayOf(WallTime time) { return floor<days>(time); }
year_month_day dateOf(local_days day) { return year_month_day(day); }
local_days newYear(year y) { return local_days(y / January / 1); }
int lengthOf(year y) { return static_cast<int>((newYear(y + years(1)) - newYear(y)).count()); }
int monthLengthOf(local_days day) {
  const year_month_day date = dateOf(day);
  return static_cast<int>(static_cast<unsigned>((date.year() / date.month() / last).day()));
}
local_days weekStartOf(local_days day, unsigned weekStart) {
  return day - (weekday(day) - weekday(weekStart));
}

struct Week {
  int number, ofYear;
};
Week weekOf(local_days day, unsigned weekStart) {
  const auto numberOf = [](local_days middle) {
    return static_cast<int>((middle - newYear(dateOf(middle).year())).count()) / 7 + 1;
  };
  const local_days middle = weekStartOf(day, weekStart) + days(3);
  local_days lastMiddle = middle;
  while (dateOf(lastMiddle + days(7)).year() == dateOf(middle).year()) lastMiddle += days(7);
  return {numberOf(middle), numberOf(lastMiddle)};
}

bool has(const std::vector<int>& list, int value) { return std::ranges::find(list, value) != list.end(); }
bool admits(const std::vector<int>& list, int value) { return list.empty() || has(list, value); }
bool admits(const std::vector<int>& list, int fromStart, int fromEnd) {
  return list.empty() || has(list, fromStart) || has(list, -fromEnd);
}

bool admitsWeekday(const Rule& rule, local_days day) {
  const year_month_day date = dateOf(day);
  const bool inYear = rule.frequency == Frequency::yearly && rule.byMonth.empty();
  const int before = inYear ? static_cast<int>((day - newYear(date.year())).count())
                            : static_cast<int>(static_cast<unsigned>(date.day())) - 1;
  const int after = (inYear ? lengthOf(date.year()) : monthLengthOf(day)) - 1 - before;
  return rule.byDay.empty() || std::ranges::any_of(rule.byDay, [&](const WeekdayNum& wanted) {
           return weekday(wanted.weekday) == weekday(day) &&
                  (wanted.ordinal == 0 || wanted.ordinal == before / 7 + 1 ||
                   -wanted.ordinal == after / 7 + 1);
         });
}

bool admitsWeek(const Rule& rule, local_days day) {
  if (rule.byWeekNo.empty()) return true;
  const Week week = weekOf(day, rule.weekStart);
  return admits(rule.byWeekNo, week.number, week.ofYear - week.number + 1);
}

bool admitsDay(const Rule& rule, local_days day) {
  const year_month_day date = dateOf(day);
  const int monthDay = static_cast<int>(static_cast<unsigned>(date.day()));
  const int yearDay = static_cast<int>((day - newYear(date.year())).count()) + 1;
  return admits(rule.byMonth, static_cast<int>(static_cast<unsigned>(date.month()))) &&
         admits(rule.byMonthDay, monthDay, monthLengthOf(day) - monthDay + 1) &&
         admits(rule.byYearDay, yearDay, lengthOf(date.year()) - yearDay + 1) && admitsWeek(rule, day) &&
         admitsWeekday(rule, day);
}

// The rule with what its start stands in for written out.
Rule completed(Rule rule, WallTime start) {
  const year_month_day date = dateOf(dayOf(start));
  const auto month = static_cast<int>(static_cast<unsigned>(date.month()));
  const auto monthDay = static_cast<int>(static_cast<unsigned>(date.day()));
  const bool namesDays = !rule.byYearDay.empty() || !rule.byDay.empty();
  const unsigned startWeekday = weekday(dayOf(start)).c_encoding();
  if (rule.frequency == Frequency::yearly && !namesDays && rule.byWeekNo.empty()) {
    if (rule.byMonth.empty()) rule.byMonth = {month};
    if (rule.byMonthDay.empty()) rule.byMonthDay = {monthDay};
  } else if (rule.frequency == Frequency::yearly && !namesDays && rule.byMonthDay.empty()) {
    rule.byDay = {{0, startWeekday}};
  }
  if (rule.frequency == Frequency::monthly && rule.byMonthDay.empty() && !namesDays)
    rule.byMonthDay = {monthDay};
  if (rule.frequency == Frequency::weekly && rule.byDay.empty()) rule.byDay = {{0, startWeekday}};
  const hh_mm_ss time(start - dayOf(start));
  if (rule.frequency > Frequency::hourly && rule.byHour.empty())
    rule.byHour = {static_cast<int>(time.hours().count())};
  if (rule.frequency > Frequency::minutely && rule.byMinute.empty())
    rule.byMinute = {static_cast<int>(time.minutes().count())};
  if (rule.frequency > Frequency::secondly && rule.bySecond.empty())
    rule.bySecond = {static_cast<int>(time.seconds().count())};
  return rule;
}

struct Period {
  WallTime begin, end;
};

Period periodAt(const Rule& rule, WallTime start, std::int64_t number) {
  const year_month_day date = dateOf(dayOf(start));
  const std::int64_t steps = number * rule.interval;
  const auto length = [&](WallTime first, seconds unit) {
    return Period{first + steps * unit, first + (steps + 1) * unit};
  };
  switch (rule.frequency) {
    case Frequency::yearly: {
      const year y = date.year() + years(steps);
      return {newYear(y), newYear(y + years(1))};
    }
    case Frequency::monthly: {
      const year_month month = date.year() / date.month() + months(steps);
      return {local_days(month / 1), local_days((month + months(1)) / 1)};
    }
    case Frequency::weekly:
      return length(weekStartOf(dayOf(start), rule.weekStart), days(7));
    case Frequency::daily:
      return length(dayOf(start), days(1));
    case Frequency::hourly:
      return length(floor<hours>(start), hours(1));
    case Frequency::minutely:
      return length(floor<minutes>(start), minutes(1));
    default:
      return length(start, seconds(1));
  }
}

std::vector<seconds> timesBetween(const Rule& rule, seconds from, seconds to) {
  std::vector<seconds> times;
  for (seconds time = from; time < to;) {
    const hh_mm_ss parts(time);
    if (!admits(rule.byHour, static_cast<int>(parts.hours().count()))) {
      time = floor<hours>(time) + hours(1);
    } else if (!admits(rule.byMinute, static_cast<int>(parts.minutes().count()))) {
      time = floor<minutes>(time) + minutes(1);
    } else {
      if (admits(rule.bySecond, static_cast<int>(parts.seconds().count()))) times.push_back(time);
      time += seconds(1);
    }
  }
  return times;
}

std::vector<WallTime> namedIn(const Rule& rule, const Period& period,
                              const std::vector<seconds>& ofWholeDay) {
  std::vector<WallTime> named;
  for (local_days day = dayOf(period.begin); day < period.end; day += days(1)) {
    if (!admitsDay(rule, day)) continue;
    const bool isWhole = rule.frequency >= Frequency::daily;
    for (const seconds time : isWhole ? ofWholeDay : timesBetween(rule, period.begin - day, period.end - day))
      named.push_back(day + time);
  }
  return named;
}

std::vector<WallTime> picked(const Rule& rule, const std::vector<WallTime>& named) {
  if (rule.bySetPos.empty()) return named;
  std::set<WallTime> kept;
  for (const int position : rule.bySetPos) {
    const auto index = position > 0 ? position - 1 : static_cast<std::ptrdiff_t>(named.size()) + position;
    if (index >= 0 && index < static_cast<std::ptrdiff_t>(named.size()))
      kept.insert(named[static_cast<std::size_t>(index)]);
  }
  return {kept.begin(), kept.end()};
}

}  // namespace

std::vector<WallTime> namedByDefinition(const Rule& given, WallTime start, WallTime last, std::size_t most) {
  const Rule rule = completed(given, start);
  const std::vector<seconds> ofWholeDay = timesBetween(rule, seconds(0), days(1));
  std::vector<WallTime> found;
  for (std::int64_t number = 0;; ++number) {
    const Period period = periodAt(rule, start, number);
    if (period.begin > last) return found;
    for (const WallTime time : picked(rule, namedIn(rule, period, ofWholeDay))) {
      if (time < start || time > last) continue;
      found.push_back(time);
      if (found.size() == most) return found;
    }
  }
}

}  // namespace ek::recurrence
