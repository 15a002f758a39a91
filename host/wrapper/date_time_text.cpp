// Dates and times as typed, and as shown.
#include <array>
#include <cstdlib>
#include <optional>

#include "host/wrapper/date_time.h"

namespace fmhost {
namespace {

constexpr std::int64_t kMicrosecondsPerSecond = 1'000'000;
constexpr std::int64_t kNoonHour = 12;

class Scanner {
 public:
  explicit Scanner(std::u16string_view text) : rest_(text) {}

  bool atEnd() const { return rest_.empty(); }

  void skipBlanks() {
    while (!rest_.empty() && rest_.front() == u' ') rest_.remove_prefix(1);
  }
  bool take(char16_t wanted) {
    if (rest_.empty() || rest_.front() != wanted) return false;
    rest_.remove_prefix(1);
    return true;
  }
  bool takeDateSeparator() { return take(u'/') || take(u'-') || take(u'.'); }
  bool takeIgnoringCase(std::u16string_view upperCase) {
    if (rest_.size() < upperCase.size()) return false;
    for (std::size_t i = 0; i < upperCase.size(); ++i) {
      const char16_t c = rest_[i];
      if ((c >= u'a' && c <= u'z' ? c - u'a' + u'A' : c) != upperCase[i]) return false;
    }
    rest_.remove_prefix(upperCase.size());
    return true;
  }
  // Nothing without digits, or with more than a date or time can need.
  std::optional<std::int64_t> takeNumber(std::size_t* digitCount = nullptr) {
    std::int64_t number = 0;
    std::size_t count = 0;
    while (!rest_.empty() && rest_.front() >= u'0' && rest_.front() <= u'9') {
      if (++count > 12) return std::nullopt;
      number = number * 10 + (rest_.front() - u'0');
      rest_.remove_prefix(1);
    }
    if (digitCount != nullptr) *digitCount = count;
    return count == 0 ? std::nullopt : std::optional(number);
  }

 private:
  std::u16string_view rest_;
};

std::u16string_view trimmed(std::u16string_view text) {
  while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
  return text;
}

bool isDigitsOnly(std::u16string_view text) {
  return text.find_first_not_of(u"0123456789") == std::u16string_view::npos;
}

std::int64_t withCentury(std::int64_t year) {
  const std::int64_t thisYear = calendarDay(currentTimestamp()).year;
  const std::int64_t candidate = thisYear - thisYear % 100 + year;
  if (candidate >= thisYear + 30) return candidate - 100;
  return candidate < thisYear - 70 ? candidate + 100 : candidate;
}

// A day that carries into another month is a typing mistake here, unlike in Date ( ).
DateTime takeDate(Scanner& scanner) {
  const auto month = scanner.takeNumber();
  if (!month || !scanner.takeDateSeparator()) return kInvalidDateTime;
  const auto day = scanner.takeNumber();
  if (!day) return kInvalidDateTime;
  std::int64_t year = calendarDay(currentTimestamp()).year;
  if (scanner.takeDateSeparator()) {
    std::size_t digits = 0;
    const auto typed = scanner.takeNumber(&digits);
    if (!typed) return kInvalidDateTime;
    year = digits <= 2 ? withCentury(*typed) : *typed;
  }
  const DateTime date = dateFromParts(year, *month, *day);
  const CalendarDay parts = calendarDay(date);
  return parts.month == *month && parts.day == *day ? date : kInvalidDateTime;
}

// The digits behind the decimal point of the seconds, as microseconds.
std::int64_t takeFraction(Scanner& scanner) {
  std::size_t digits = 0;
  const auto fraction = scanner.takeNumber(&digits);
  if (!fraction) return 0;
  std::int64_t microseconds = *fraction;
  for (std::size_t i = digits; i < 6; ++i) microseconds *= 10;
  for (std::size_t i = 6; i < digits; ++i) microseconds /= 10;
  return microseconds;
}

std::optional<std::int64_t> hourOfHalfDay(Scanner& scanner, std::int64_t hour) {
  scanner.skipBlanks();
  const bool morning = scanner.takeIgnoringCase(u"AM");
  const bool evening = !morning && scanner.takeIgnoringCase(u"PM");
  if (!morning && !evening) return hour;
  if (hour == 0 || hour > kNoonHour) return hour == 0 || evening ? std::optional(hour) : std::nullopt;
  return hour % kNoonHour + (evening ? kNoonHour : 0);
}

DateTime takeTime(Scanner& scanner) {
  const bool negative = scanner.take(u'-');
  const auto hour = scanner.takeNumber();
  if (!hour) return kInvalidDateTime;
  std::array<std::int64_t, 2> minuteAndSecond{};
  std::int64_t fraction = 0;
  for (std::int64_t& part : minuteAndSecond) {
    if (!scanner.take(u':')) break;
    const auto number = scanner.takeNumber();
    if (!number) return kInvalidDateTime;
    part = *number;
  }
  if (scanner.take(u'.')) fraction = takeFraction(scanner);
  const auto hourOfDay = hourOfHalfDay(scanner, *hour);
  constexpr std::int64_t kMostHours = 100'000'000;
  if (!hourOfDay || *hourOfDay > kMostHours) return kInvalidDateTime;
  const auto [minute, second] = minuteAndSecond;
  const std::int64_t microseconds =
      ((*hourOfDay * 60 + minute) * 60 + second) * kMicrosecondsPerSecond + fraction;
  return timeFromMicroseconds(negative ? -microseconds : microseconds);
}

DateTime unlessMoreFollows(const DateTime& moment, Scanner& scanner) {
  scanner.skipBlanks();
  return scanner.atEnd() ? moment : kInvalidDateTime;
}

std::string padded(std::int64_t number, std::size_t width) {
  std::string text = std::to_string(number);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

struct ClockParts {
  bool negative;
  std::int64_t hour, minute, second, microseconds;
};

ClockParts clockParts(const DateTime& time) {
  const std::int64_t magnitude = std::llabs(time.microseconds);
  const std::int64_t seconds = magnitude / kMicrosecondsPerSecond;
  return {time.microseconds < 0, seconds / 3600, seconds / 60 % 60, seconds % 60,
          magnitude % kMicrosecondsPerSecond};
}

std::string minutesAndSeconds(const ClockParts& clock) {
  std::string text = ":" + padded(clock.minute, 2) + ":" + padded(clock.second, 2);
  if (clock.microseconds == 0) return text;
  std::string fraction = padded(clock.microseconds, 6);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  return text + "." + fraction;
}

std::string clockText(const DateTime& time, std::size_t hourWidth) {
  const ClockParts clock = clockParts(time);
  return (clock.negative ? "-" : "") + padded(clock.hour, hourWidth) + minutesAndSeconds(clock);
}

// What stands for a value that is not there, or nothing when it is.
std::optional<std::string> standIn(const DateTime& moment) {
  if (moment.isPresent()) return std::nullopt;
  return moment.presence == Presence::absent ? "" : "?";
}

}  // namespace

DateTime parseDate(std::u16string_view text) {
  text = trimmed(text);
  if (text.empty()) return {};
  if (isDigitsOnly(text)) return dateFromDayNumber(Decimal::fromText(text)->truncated());
  Scanner scanner(text);
  const DateTime date = takeDate(scanner);
  scanner.skipBlanks();
  // A timestamp's day counts, whatever its time.
  if (date.isPresent() && !scanner.atEnd() && !takeTime(scanner).isPresent()) return kInvalidDateTime;
  return unlessMoreFollows(date, scanner);
}

DateTime parseTime(std::u16string_view text) {
  text = trimmed(text);
  if (text.empty()) return {};
  Scanner scanner(text);
  const DateTime time = takeTime(scanner);
  if (time.isPresent() && scanner.atEnd()) return time;
  const DateTime timestamp = parseTimestamp(text);
  return timestamp.isPresent() ? timeFromMicroseconds(timestamp.microseconds) : kInvalidDateTime;
}

DateTime parseTimestamp(std::u16string_view text) {
  text = trimmed(text);
  if (text.empty()) return {};
  if (isDigitsOnly(text)) return timestampFromSeconds(*Decimal::fromText(text));
  Scanner scanner(text);
  DateTime timestamp = takeDate(scanner);
  scanner.skipBlanks();
  if (!timestamp.isPresent() || scanner.atEnd()) return timestamp;
  const DateTime time = takeTime(scanner);
  if (!time.isPresent()) return kInvalidDateTime;
  timestamp.microseconds = time.microseconds;
  return unlessMoreFollows(timestamp.normalised(), scanner);
}

std::string dateText(const DateTime& date) {
  if (auto other = standIn(date)) return *other;
  const CalendarDay parts = calendarDay(date);
  return std::to_string(parts.month) + "/" + std::to_string(parts.day) + "/" + padded(parts.year, 4);
}

std::string timeText(const DateTime& time) {
  if (auto other = standIn(time)) return *other;
  return clockText(time, 1);
}

std::string timestampText(const DateTime& timestamp) {
  if (auto other = standIn(timestamp)) return *other;
  const ClockParts clock = clockParts(timestamp);
  const std::int64_t hour = clock.hour % kNoonHour == 0 ? kNoonHour : clock.hour % kNoonHour;
  return dateText(timestamp) + " " + std::to_string(hour) + minutesAndSeconds(clock) +
         (clock.hour < kNoonHour ? " AM" : " PM");
}

std::string isoDateText(const DateTime& date) {
  if (auto other = standIn(date)) return *other;
  const CalendarDay parts = calendarDay(date);
  return padded(parts.year, 4) + "-" + padded(parts.month, 2) + "-" + padded(parts.day, 2);
}

std::string isoTimeText(const DateTime& time) {
  if (auto other = standIn(time)) return *other;
  return clockText(time, 2);
}

std::string isoTimestampText(const DateTime& timestamp) {
  if (auto other = standIn(timestamp)) return *other;
  return isoDateText(timestamp) + " " + isoTimeText(timestamp);
}

}  // namespace fmhost
