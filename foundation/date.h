// Instants and wall-clock times. An instant is a whole second of UTC in the proleptic Gregorian calendar;
// wall-clock time is a std::chrono::local_seconds and means nothing without a zone.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace foundation {

class TimeZone;

using Date = std::chrono::sys_seconds;
using WallTime = std::chrono::local_seconds;

// 0001-01-01T00:00:00Z and 4001-01-01T00:00:00Z: the open ends of a date range.
Date distantPast();
Date distantFuture();
Date now();

// A wall-clock time taken apart; year may be any, the other fields are in their calendar ranges.
struct WallFields {
  int year = 1970;
  unsigned month = 1;
  unsigned day = 1;
  unsigned hour = 0;
  unsigned minute = 0;
  unsigned second = 0;
  bool operator==(const WallFields&) const = default;
};
WallFields fieldsOf(WallTime wall);
WallTime wallTimeFrom(const WallFields& fields);

// Reads "YYYY-MM-DD HH:MM:SS +HHMM", every part required. Also the six-digit offset that the plug-in's own
// date template produces in zones off the whole hour ("+051800": five hours and 1800 seconds). Any other
// text, and a date that no calendar has, gives nothing.
std::optional<Date> dateWithString(std::string_view text);

// "2024-05-01 09:00:00 +0200", with the offset that holds in the zone at that date. A historic offset off
// the whole minute is written "+HHMMSS".
std::string description(Date date, const TimeZone& zone);

}  // namespace foundation
