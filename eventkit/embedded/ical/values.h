// The value types of RFC 5545 3.3 that the store reads and writes.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/recurrence/series.h"
#include "foundation/date.h"

namespace ek::ical {

struct DateTime {
  foundation::WallTime wall{};  // dates at 00:00
  bool isDate = false;
  bool isUtc = false;  // written with Z
  bool operator==(const DateTime&) const = default;
};
// "19970714", "19970714T133000", "19970714T133000Z"; a leap second becomes :59. Years 0001 to 9999.
std::optional<DateTime> parseDateTime(std::string_view text);
std::string formatDateTime(const DateTime& value);

// "P15DT5H0M20S", "P7W", with a sign. Weeks and days are nominal, the rest exact.
std::optional<recurrence::Duration> parseDuration(std::string_view text);
std::string formatDuration(const recurrence::Duration& duration);

// "+0100", "-053012" (also without a sign, as some programs write).
std::optional<std::chrono::seconds> parseUtcOffset(std::string_view text);
std::string formatUtcOffset(std::chrono::seconds offset);

// TEXT: `\n` is read as a carriage return, as FileMaker has it; CR, LF, CRLF, vertical tabs and form feeds
// are written as `\n`. Other control characters but tabs have no place in a TEXT and are left out.
std::string decodeText(std::string_view escaped);
std::string encodeText(std::string_view text);

// A text without escapes, a parameter's say. Bytes that are no UTF-8 are taken for Windows-1252, as
// decodeText does.
std::string decodeBytes(std::string_view bytes);

// The byte that two hexadecimal digits mean.
std::optional<char> hexByte(std::string_view digits);

// At unescaped separators (COMMA lists of values).
std::vector<std::string_view> splitList(std::string_view value, char separator = ',');

}  // namespace ek::ical
