#include "foundation/date.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "foundation/time_zone.h"

namespace foundation {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

// Reads digits from the front of `text`, at least `fewest`, and moves past them.
std::optional<int> takeNumber(std::string_view& text, std::size_t fewest, std::size_t most) {
  std::size_t length = 0;
  while (length < most && length < text.size() && text[length] >= '0' && text[length] <= '9') ++length;
  if (length < fewest) return std::nullopt;
  int value = 0;
  std::from_chars(text.data(), text.data() + length, value);
  text.remove_prefix(length);
  return value;
}

bool takeChar(std::string_view& text, char expected) {
  if (text.empty() || text.front() != expected) return false;
  text.remove_prefix(1);
  return true;
}

// "+0200", or hours and four digits of seconds: "+051800".
std::optional<seconds> takeOffset(std::string_view text) {
  if (text.size() != 5 && text.size() != 7) return std::nullopt;
  const bool west = text.front() == '-';
  if (!west && text.front() != '+') return std::nullopt;
  const bool inSeconds = text.size() == 7;
  text.remove_prefix(1);
  const std::optional<int> hours = takeNumber(text, 2, 2);
  const std::optional<int> rest = takeNumber(text, inSeconds ? 4 : 2, 4);
  if (!hours || !rest) return std::nullopt;
  const int offset = *hours * 3600 + (inSeconds ? *rest : *rest * 60);
  return seconds(west ? -offset : offset);
}

}  // namespace

Date distantPast() {
  using namespace std::chrono;
  return sys_days(year(1) / January / 1);
}

Date distantFuture() {
  using namespace std::chrono;
  return sys_days(year(4001) / January / 1);
}

Date now() { return floor<seconds>(std::chrono::system_clock::now()); }

WallFields fieldsOf(WallTime wall) {
  const auto day = floor<days>(wall);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(wall - day);
  return {static_cast<int>(date.year()),
          static_cast<unsigned>(date.month()),
          static_cast<unsigned>(date.day()),
          static_cast<unsigned>(time.hours().count()),
          static_cast<unsigned>(time.minutes().count()),
          static_cast<unsigned>(time.seconds().count())};
}

WallTime wallTimeFrom(const WallFields& fields) {
  const std::chrono::year_month_day date(std::chrono::year(fields.year), std::chrono::month(fields.month),
                                         std::chrono::day(fields.day));
  return std::chrono::local_days(date) + std::chrono::hours(fields.hour) +
         std::chrono::minutes(fields.minute) + seconds(fields.second);
}

std::optional<Date> dateWithString(std::string_view text) {
  const auto year = takeNumber(text, 4, 4);
  if (!year || !takeChar(text, '-')) return std::nullopt;
  const auto month = takeNumber(text, 2, 2);
  if (!month || !takeChar(text, '-')) return std::nullopt;
  const auto day = takeNumber(text, 2, 2);
  if (!day || !takeChar(text, ' ')) return std::nullopt;
  const auto hour = takeNumber(text, 2, 2);
  if (!hour || !takeChar(text, ':')) return std::nullopt;
  const auto minute = takeNumber(text, 2, 2);
  if (!minute || !takeChar(text, ':')) return std::nullopt;
  const auto second = takeNumber(text, 2, 2);
  if (!second || !takeChar(text, ' ')) return std::nullopt;
  const auto offset = takeOffset(text);
  if (!offset || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day)));
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days(date) + std::chrono::hours(*hour) + std::chrono::minutes(*minute) +
         seconds(*second) - *offset;
}

std::string description(Date date, const TimeZone& zone) {
  const seconds offset = zone.offsetAt(date);
  const WallFields wall = fieldsOf(WallTime(date.time_since_epoch() + offset));
  const long away = std::abs(static_cast<long>(offset.count()));
  std::array<char, 64> buffer{};
  int length = std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02u %02u:%02u:%02u %c%02ld%02ld",
                             wall.year, wall.month, wall.day, wall.hour, wall.minute, wall.second,
                             offset.count() < 0 ? '-' : '+', away / 3600, away / 60 % 60);
  if (away % 60 != 0)
    length += std::snprintf(buffer.data() + length, buffer.size() - static_cast<std::size_t>(length), "%02ld",
                            away % 60);
  return {buffer.data(), static_cast<std::size_t>(length)};
}

}  // namespace foundation
