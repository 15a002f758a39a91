#include "host/wrapper/date_time.h"

#include <chrono>
#include <ctime>

namespace fmhost {
namespace {

constexpr std::int64_t kMicrosecondsPerSecond = 1'000'000;
constexpr std::int64_t kMicrosecondsPerDay = 86400 * kMicrosecondsPerSecond;
constexpr std::int64_t kUnixEpochDay = 719163;
constexpr std::int64_t kLastDay = 1460970;  // 4000-12-31

std::int64_t floorQuotient(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

std::int64_t microsecondsFrom(const Decimal& seconds) {
  return (seconds * Decimal(kMicrosecondsPerSecond)).rounded(0).truncated();
}

}  // namespace

DateTime DateTime::normalised() const {
  if (!isPresent()) return *this;
  const std::int64_t days = floorQuotient(microseconds, kMicrosecondsPerDay);
  const std::int64_t newDay = day + days;
  if (newDay < 1 || newDay > kLastDay) return kInvalidDateTime;
  return {newDay, microseconds - days * kMicrosecondsPerDay, Presence::present};
}

Decimal DateTime::secondsOfEra() const { return Decimal((day - 1) * 86400) + secondsOf(*this); }

DateTime dateFromParts(std::int64_t year, std::int64_t month, std::int64_t day) {
  constexpr std::int64_t kFarthest = 4'000'000;  // beyond every valid day, and far from overflow
  if (year < -kFarthest || year > kFarthest || month < -kFarthest || month > kFarthest || day < -kFarthest ||
      day > kFarthest) {
    return kInvalidDateTime;
  }
  const std::int64_t years = floorQuotient(month - 1, 12);
  const std::int64_t carriedYear = year + years;
  if (carriedYear < -30000 || carriedYear > 30000) return kInvalidDateTime;
  const std::chrono::year_month_day first{std::chrono::year(static_cast<int>(carriedYear)),
                                          std::chrono::month(static_cast<unsigned>(month - years * 12)),
                                          std::chrono::day(1)};
  return dateFromDayNumber(std::chrono::sys_days(first).time_since_epoch().count() + kUnixEpochDay + day - 1);
}

DateTime dateFromDayNumber(std::int64_t day) {
  return day < 1 || day > kLastDay ? kInvalidDateTime : DateTime{day, 0, Presence::present};
}

DateTime timeFromMicroseconds(std::int64_t microseconds) { return {1, microseconds, Presence::present}; }

DateTime timeFromSeconds(const Decimal& seconds) {
  const Decimal mostSeconds(kLastDay * 86400);
  if (seconds > mostSeconds || -seconds > mostSeconds) return kInvalidDateTime;
  return timeFromMicroseconds(microsecondsFrom(seconds));
}

DateTime timestampFromSeconds(const Decimal& seconds) { return timeFromSeconds(seconds).normalised(); }

CalendarDay calendarDay(const DateTime& date) {
  if (!date.isPresent() || date.day == 0) return {};
  const std::chrono::year_month_day parts{
      std::chrono::sys_days(std::chrono::days(static_cast<int>(date.day - kUnixEpochDay)))};
  return {static_cast<int>(parts.year()), static_cast<int>(static_cast<unsigned>(parts.month())),
          static_cast<int>(static_cast<unsigned>(parts.day()))};
}

int dayOfWeek(const DateTime& date) { return static_cast<int>(date.day % 7) + 1; }

Decimal secondsOf(const DateTime& time) {
  const Decimal whole(time.microseconds / kMicrosecondsPerSecond);
  const std::int64_t fraction = time.microseconds % kMicrosecondsPerSecond;
  if (fraction == 0) return whole;
  return whole + *Decimal::quotient(Decimal(fraction), Decimal(kMicrosecondsPerSecond));
}

DateTime currentTimestamp() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  DateTime moment = dateFromParts(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
  moment.microseconds = ((local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec) * kMicrosecondsPerSecond;
  return moment;
}

}  // namespace fmhost
