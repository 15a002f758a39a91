// What the reader of components and the walker over whole streams share: where lines end, where a line's name
// and value are, and which BEGIN an END belongs to.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace ek::ical {

// Without regard to the case of ASCII letters, as iCalendar compares names.
bool equalNames(std::string_view left, std::string_view right);

std::string_view trimmed(std::string_view text);  // without blanks and tabs around it

// One line of content: a physical line and the folded ones that continue it.
struct RawLine {
  std::string_view raw;      // line breaks included
  std::string_view content;  // of the first physical line, without its line break
  std::size_t number = 0;    // 1-based physical line at which it begins
  bool isFolded = false;     // content is not all there is: see unfold
  bool isBlank() const { return content.empty() && !isFolded; }
};

// Goes through a text line by line. CRLF, LF, CR and the doubled CR of careless conversions (CR CR LF) end a
// line; a line that begins with a blank or a tab continues the one before.
class LineScanner {
 public:
  explicit LineScanner(std::string_view text);  // skips a byte-order mark
  bool next(RawLine& line);

 private:
  struct Break {
    std::size_t contentEnd, end;
  };
  Break findBreak(std::size_t from);
  bool continues(std::size_t at) const;

  std::string_view text_;
  std::size_t position_ = 0;
  std::size_t number_ = 1;
  std::size_t lineFeed_ = 0;  // the first one not before position_, text_.size() when there is none
  bool lineFeedIsKnown_ = false;
};

// Appends the whole content of a folded line.
void unfold(std::string_view raw, std::string& out);
// What ends a line's first physical line; empty for the last line of a text that ends without one.
std::string_view lineBreakOf(std::string_view raw);

// Where name and value lie in a line's whole content. A line without a name or a colon is broken: both are 0.
// A colon in quotes belongs to a parameter, unless the quotes never close.
struct LineParts {
  std::size_t nameLength = 0;
  std::size_t valueBegin = 0;
};
LineParts partsOf(std::string_view content);

// What stands in a calendar and never in one of its like: VEVENT, VTODO and so on.
bool standsAlone(std::string_view name);

enum class Marker { none, begin, end };
// Whether a line is BEGIN:name or END:name; then `name` is set. A name that is folded does not count.
Marker markerOf(const RawLine& line, std::string_view& name);

// The components that are open at a place of a text. Knows how to go on where an END is missing, misspelt or
// too many, and follows no nesting deeper than any calendar has, so that nobody's stack overflows.
class Nesting {
 public:
  static constexpr std::size_t kDeepest = 32;

  std::size_t depth() const { return depth_; }
  std::string_view innermost() const { return open_[depth_ - 1]; }

  // How many of the innermost open components a BEGIN of that name ends, because it cannot stand in them: an
  // event in an event, a calendar in anything.
  std::size_t endedByBegin(std::string_view name) const;
  // False when that would be too deep: the BEGIN, and the END that belongs to it, are lines like any other.
  bool open(std::string_view name);
  // How many of the innermost open components an END of that name ends. 0: it is a line like any other.
  std::size_t endedByEnd(std::string_view name);
  void close(std::size_t count);

 private:
  std::array<std::string_view, kDeepest> open_;
  std::size_t depth_ = 0;
  std::size_t tooDeep_ = 0;
};

}  // namespace ek::ical
