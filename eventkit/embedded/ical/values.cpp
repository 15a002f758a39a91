#include "eventkit/embedded/ical/values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>

#include "eventkit/embedded/ical/content_lines.h"

namespace ek::ical {

namespace {

using std::chrono::seconds;

constexpr std::int64_t kSecondsOfDay = 86400;
// Ten thousand years: what is longer ends beyond every date there is.
constexpr std::int64_t kLongestDays = 3'660'000;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

// Exactly `count` digits off the front.
std::optional<unsigned> takeDigits(std::string_view& text, std::size_t count) {
  if (text.size() < count) return std::nullopt;
  unsigned value = 0;
  for (const char c : text.substr(0, count)) {
    if (!isDigit(c)) return std::nullopt;
    value = value * 10 + static_cast<unsigned>(c - '0');
  }
  text.remove_prefix(count);
  return value;
}

// +1 or -1; without a sign +1.
int takeSign(std::string_view& text) {
  if (text.empty() || (text.front() != '+' && text.front() != '-')) return 1;
  const int sign = text.front() == '-' ? -1 : 1;
  text.remove_prefix(1);
  return sign;
}

bool takeTime(std::string_view& text, foundation::WallTime& wall) {
  const auto hour = takeDigits(text, 2), minute = takeDigits(text, 2), second = takeDigits(text, 2);
  if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 60) return false;
  wall += std::chrono::hours(*hour) + std::chrono::minutes(*minute) + seconds(std::min(*second, 59U));
  return true;
}

template <class... Numbers>
std::string formatted(const char* format, Numbers... numbers) {
  std::array<char, 64> buffer{};
  const int length = std::snprintf(buffer.data(), buffer.size(), format, numbers...);
  return {buffer.data(), static_cast<std::size_t>(length)};
}

// The units of a duration in the order in which they may follow each other.
constexpr struct {
  char letter;
  bool isTime;
  std::int64_t days, seconds;
} kUnits[] = {
    {'W', false, 7, 0}, {'D', false, 1, 0}, {'H', true, 0, 3600}, {'M', true, 0, 60}, {'S', true, 0, 1}};

}  // namespace

std::optional<DateTime> parseDateTime(std::string_view text) {
  text = trimmed(text);
  const auto year = takeDigits(text, 4), month = takeDigits(text, 2), day = takeDigits(text, 2);
  if (!year || !month || !day || *year == 0) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(static_cast<int>(*year)),
                                         std::chrono::month(*month), std::chrono::day(*day));
  if (!date.ok()) return std::nullopt;
  DateTime value{.wall = std::chrono::local_days(date), .isDate = text.empty()};
  if (value.isDate) return value;
  if (upper(text.front()) != 'T') return std::nullopt;
  text.remove_prefix(1);
  if (!takeTime(text, value.wall)) return std::nullopt;
  value.isUtc = !text.empty() && upper(text.front()) == 'Z';
  if (value.isUtc) text.remove_prefix(1);
  return text.empty() ? std::optional(value) : std::nullopt;
}

std::string formatDateTime(const DateTime& value) {
  const foundation::WallFields fields = foundation::fieldsOf(value.wall);
  if (value.isDate) return formatted("%04d%02u%02u", fields.year, fields.month, fields.day);
  return formatted("%04d%02u%02uT%02u%02u%02u%s", fields.year, fields.month, fields.day, fields.hour,
                   fields.minute, fields.second, value.isUtc ? "Z" : "");
}

std::optional<recurrence::Duration> parseDuration(std::string_view text) {
  text = trimmed(text);
  const int sign = takeSign(text);
  if (text.empty() || upper(text.front()) != 'P') return std::nullopt;
  text.remove_prefix(1);
  recurrence::Duration duration;
  bool isInTime = false, hasUnit = false;
  auto unit = std::begin(kUnits);
  while (!text.empty()) {
    if (upper(text.front()) == 'T' && !isInTime) {
      isInTime = true;
      text.remove_prefix(1);
      continue;
    }
    std::int64_t amount = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), amount);
    if (error != std::errc() || !isDigit(text.front())) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
    if (text.empty() || amount > kLongestDays * kSecondsOfDay) return std::nullopt;
    const char letter = upper(text.front());
    while (unit != std::end(kUnits) && (unit->letter != letter || unit->isTime != isInTime)) ++unit;
    if (unit == std::end(kUnits)) return std::nullopt;
    text.remove_prefix(1);
    duration.days += amount * unit->days;
    duration.seconds += amount * unit->seconds;
    if (duration.days > kLongestDays || duration.seconds > kLongestDays * kSecondsOfDay) return std::nullopt;
    hasUnit = true;
    ++unit;
  }
  if (!hasUnit) return std::nullopt;
  return recurrence::Duration{duration.days * sign, duration.seconds * sign};
}

std::string formatDuration(const recurrence::Duration& duration) {
  const bool isMixed =
      (duration.days < 0 && duration.seconds > 0) || (duration.days > 0 && duration.seconds < 0);
  const std::int64_t days = isMixed ? 0 : duration.days;
  std::int64_t rest = isMixed ? duration.days * kSecondsOfDay + duration.seconds : duration.seconds;
  std::string text = days < 0 || rest < 0 ? "-P" : "P";
  rest = std::abs(rest);
  if (days != 0) text += std::to_string(std::abs(days)) + "D";
  if (days != 0 && rest == 0) return text;
  text += "T";
  const std::int64_t hours = rest / 3600, minutes = rest / 60 % 60, remaining = rest % 60;
  if (hours != 0) text += std::to_string(hours) + "H";
  // RFC 5545 has no hours with seconds and without minutes.
  if (minutes != 0 || (hours != 0 && remaining != 0)) text += std::to_string(minutes) + "M";
  if (remaining != 0 || rest == 0) text += std::to_string(remaining) + "S";
  return text;
}

std::optional<std::chrono::seconds> parseUtcOffset(std::string_view text) {
  text = trimmed(text);
  const int sign = takeSign(text);
  const auto hours = takeDigits(text, 2), minutes = takeDigits(text, 2);
  const auto rest = text.empty() ? std::optional(0U) : takeDigits(text, 2);
  if (!hours || !minutes || !rest || !text.empty() || *hours > 23 || *minutes > 59 || *rest > 59)
    return std::nullopt;
  return sign * seconds(*hours * 3600 + *minutes * 60 + *rest);
}

std::string formatUtcOffset(std::chrono::seconds offset) {
  const long away = std::abs(static_cast<long>(offset.count()));
  const char sign = offset.count() < 0 ? '-' : '+';
  return away % 60 == 0 ? formatted("%c%02ld%02ld", sign, away / 3600, away / 60 % 60)
                        : formatted("%c%02ld%02ld%02ld", sign, away / 3600, away / 60 % 60, away % 60);
}

}  // namespace ek::ical
