#include "foundation/date.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/time_zone.h"

namespace foundation {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

// "YYYY-MM-DD HH:MM:SS " and the offset: four digits, or six.
constexpr std::string_view kShape = "dddd-dd-dd dd:dd:dd ";
constexpr std::size_t kShortOffset = 5, kLongOffset = 7;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool hasShape(std::string_view text) {
  for (std::size_t i = 0; i < kShape.size(); ++i)
    if (kShape[i] == 'd' ? !isDigit(text[i]) : text[i] != kShape[i]) return false;
  const char sign = text[kShape.size()];
  return (sign == '+' || sign == '-') && std::all_of(text.begin() + kShape.size() + 1, text.end(), isDigit);
}

// Two digits, unchecked.
int pair(std::string_view text, std::size_t at) { return (text[at] - '0') * 10 + (text[at + 1] - '0'); }

// "+0200", or hours and four digits of seconds: "+051800".
seconds readOffset(std::string_view text) {
  const int hours = pair(text, 1);
  const int rest = text.size() == kLongOffset ? pair(text, 3) * 100 + pair(text, 5) : pair(text, 3) * 60;
  const int offset = hours * 3600 + rest;
  return seconds(text.front() == '-' ? -offset : offset);
}

void appendPair(std::string& out, unsigned value, char after = '\0') {
  out += static_cast<char>('0' + value / 10);
  out += static_cast<char>('0' + value % 10);
  if (after != '\0') out += after;
}

// At least four digits.
void appendYear(std::string& out, int year) {
  if (year >= 0 && year <= 9999) {
    appendPair(out, static_cast<unsigned>(year) / 100);
    appendPair(out, static_cast<unsigned>(year) % 100);
    return;
  }
  const std::string digits = std::to_string(std::abs(year));
  if (year < 0) out += '-';
  if (digits.size() < 4) out.append(4 - digits.size(), '0');
  out += digits;
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
  const auto second = static_cast<unsigned>((wall - day).count());
  return {static_cast<int>(date.year()),
          static_cast<unsigned>(date.month()),
          static_cast<unsigned>(date.day()),
          second / 3600,
          second / 60 % 60,
          second % 60};
}

WallTime wallTimeFrom(const WallFields& fields) {
  const std::chrono::year_month_day date(std::chrono::year(fields.year), std::chrono::month(fields.month),
                                         std::chrono::day(fields.day));
  return std::chrono::local_days(date) + std::chrono::hours(fields.hour) +
         std::chrono::minutes(fields.minute) + seconds(fields.second);
}

std::optional<Date> dateWithString(std::string_view text) {
  const std::size_t offsetSize = text.size() < kShape.size() ? 0 : text.size() - kShape.size();
  if ((offsetSize != kShortOffset && offsetSize != kLongOffset) || !hasShape(text)) return std::nullopt;
  const int hour = pair(text, 11), minute = pair(text, 14), second = pair(text, 17);
  if (hour > 23 || minute > 59 || second > 59) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(pair(text, 0) * 100 + pair(text, 2)),
                                         std::chrono::month(static_cast<unsigned>(pair(text, 5))),
                                         std::chrono::day(static_cast<unsigned>(pair(text, 8))));
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days(date) + seconds(hour * 3600 + minute * 60 + second) -
         readOffset(text.substr(kShape.size()));
}

std::string description(Date date, const TimeZone& zone) {
  const seconds offset = zone.offsetAt(date);
  const WallFields wall = fieldsOf(WallTime(date.time_since_epoch() + offset));
  std::string out;
  out.reserve(kShape.size() + kLongOffset + 1);
  appendYear(out, wall.year);
  out += '-';
  appendPair(out, wall.month, '-');
  appendPair(out, wall.day, ' ');
  appendPair(out, wall.hour, ':');
  appendPair(out, wall.minute, ':');
  appendPair(out, wall.second, ' ');
  const auto away = static_cast<unsigned>(std::abs(offset.count()));
  out += offset.count() < 0 ? '-' : '+';
  appendPair(out, away / 3600);
  appendPair(out, away / 60 % 60);
  if (away % 60 != 0) appendPair(out, away % 60);
  return out;
}

}  // namespace foundation
