// Walks a whole iCalendar stream without building anything: for importing files of any size.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ek::ical {

// A part of a VCALENDAR: one property line, or one inner component from BEGIN to END.
struct Piece {
  std::string_view text;  // raw, line breaks included, as it stands in the stream
  std::string_view name;  // of the property or component, as written
  std::size_t line = 0;   // 1-based line at which it begins
  bool isComponent = false;
};

struct Problem {
  std::size_t line = 0;
  std::string reason;
};

// What a walk reports, in the stream's order. Views live as long as the text.
struct StreamHandler {
  std::function<void()> beginCalendar = {};
  std::function<void(const Piece&)> piece = {};
  std::function<void()> endCalendar = {};
  std::function<void(const Problem&)> problem = {};  // what had to be skipped, and why
};

// Accepts CRLF, LF and CR line ends, a byte-order mark, several VCALENDARs, bare components without one, a
// missing END at the end of the text, and Latin-1 bytes. Whatever is no iCalendar is reported as a problem.
void walkStream(std::string_view text, const StreamHandler& handler);

}  // namespace ek::ical
