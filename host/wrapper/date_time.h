// Dates, times of day and timestamps as FileMaker counts and writes them (a file with US settings).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/wrapper/decimal.h"

namespace fmhost {

// absent: nothing was given, which reads as an empty text. invalid: something was given that is none, "?".
enum class Presence : std::uint8_t { absent, present, invalid };

// A day, a time, or both. The time may exceed a day or be negative, as a duration does.
struct DateTime {
  std::int64_t day = 0;  // 1 is 0001-01-01
  std::int64_t microseconds = 0;
  Presence presence = Presence::absent;

  bool isPresent() const { return presence == Presence::present; }

  // Whole days of the time moved into the day.
  DateTime normalised() const;
  // Since 0001-01-01 00:00:00.
  Decimal secondsOfEra() const;

  friend bool operator==(const DateTime&, const DateTime&) = default;
};

struct CalendarDay {
  int year = 0;
  int month = 0;
  int day = 0;
};

constexpr DateTime kInvalidDateTime{0, 0, Presence::invalid};

// Month and day carry when out of range: month 13 is January. Invalid outside the years 1 to 4000.
DateTime dateFromParts(std::int64_t year, std::int64_t month, std::int64_t day);
DateTime dateFromDayNumber(std::int64_t day);
DateTime timeFromMicroseconds(std::int64_t microseconds);
DateTime timeFromSeconds(const Decimal& seconds);
DateTime timestampFromSeconds(const Decimal& seconds);
CalendarDay calendarDay(const DateTime& date);
// Sunday is 1.
int dayOfWeek(const DateTime& date);
// Seconds with their fraction.
Decimal secondsOf(const DateTime& time);

// Month/day/year, and times with or without AM or PM. An empty text is absent. The year may be left out; two
// digits mean the year from 70 before to 29 after this one. Text of digits alone counts days or seconds.
DateTime parseDate(std::u16string_view text);
DateTime parseTime(std::u16string_view text);
DateTime parseTimestamp(std::u16string_view text);

// 11/21/2026, 14:05:00, 11/21/2026 2:05:00 PM; "?" when invalid.
std::string dateText(const DateTime& date);
std::string timeText(const DateTime& time);
std::string timestampText(const DateTime& timestamp);

// 2026-11-21, 14:05:00, 2026-11-21 14:05:00.
std::string isoDateText(const DateTime& date);
std::string isoTimeText(const DateTime& time);
std::string isoTimestampText(const DateTime& timestamp);

// Of the process's zone.
DateTime currentTimestamp();

}  // namespace fmhost
