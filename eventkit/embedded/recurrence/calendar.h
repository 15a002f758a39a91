// Days as numbers: days since 1970-01-01, weekdays from Sunday, 0.
#pragma once

#include <chrono>
#include <cstdint>

namespace ek::recurrence {

constexpr std::int64_t kDaySeconds = 86400;
constexpr int kFirstYear = 1, kLastYear = 9999;

constexpr std::int64_t floorDiv(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

struct Civil {
  int year;
  unsigned month, day;
};

inline Civil civilOf(std::int64_t day) {
  const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(day))};
  return {static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
          static_cast<unsigned>(date.day())};
}

inline std::int64_t dayNumber(int year, unsigned month, unsigned day) {
  return std::chrono::sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day))
      .time_since_epoch()
      .count();
}

constexpr bool isLeap(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

constexpr int yearLength(int year) { return isLeap(year) ? 366 : 365; }

constexpr unsigned monthLength(int year, unsigned month) {
  constexpr unsigned char lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeap(year) ? 29 : lengths[month - 1];
}

constexpr unsigned weekdayOf(std::int64_t day) {
  constexpr std::int64_t kThursday = 4;  // 1970-01-01
  const std::int64_t rest = (day + kThursday) % 7;
  return static_cast<unsigned>(rest < 0 ? rest + 7 : rest);
}

}  // namespace ek::recurrence
