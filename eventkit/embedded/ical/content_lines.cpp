#include "eventkit/embedded/ical/content_lines.h"

#include <algorithm>
#include <cstring>

namespace ek::ical {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool isBlankOrTab(char c) { return c == ' ' || c == '\t'; }

std::size_t findFrom(std::string_view text, char wanted, std::size_t from, std::size_t to) {
  const void* found = std::memchr(text.data() + from, wanted, to - from);
  return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data()) : to;
}

// The first carriage return or line feed, or the end. Goes by pieces, since either may be far away.
std::size_t firstBreak(std::string_view text) {
  constexpr std::size_t kPiece = 256;
  for (std::size_t at = 0; at < text.size(); at += kPiece) {
    const std::size_t end = std::min(at + kPiece, text.size());
    const std::size_t lineFeed = findFrom(text, '\n', at, end);
    const std::size_t found = findFrom(text, '\r', at, lineFeed);
    if (found < end) return found;
  }
  return text.size();
}

bool isCalendar(std::string_view name) { return equalNames(name, "VCALENDAR"); }

}  // namespace

bool equalNames(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(),
                    [](char a, char b) { return a == b || lowered(a) == lowered(b); });
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlankOrTab(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlankOrTab(text.back())) text.remove_suffix(1);
  return text;
}

LineScanner::LineScanner(std::string_view text) : text_(text) {
  if (text_.starts_with(kByteOrderMark)) position_ = kByteOrderMark.size();
}

LineScanner::Break LineScanner::findBreak(std::size_t from) {
  if (!lineFeedIsKnown_ || lineFeed_ < from) {
    lineFeed_ = findFrom(text_, '\n', from, text_.size());
    lineFeedIsKnown_ = true;
  }
  const std::size_t afterLineFeed = std::min(lineFeed_ + 1, text_.size());
  const std::size_t carriageReturn = findFrom(text_, '\r', from, lineFeed_);
  if (carriageReturn == lineFeed_) return {lineFeed_, afterLineFeed};
  const bool belongsToLineFeed =
      lineFeed_ < text_.size() &&
      (carriageReturn + 1 == lineFeed_ || (carriageReturn + 2 == lineFeed_ && text_[lineFeed_ - 1] == '\r'));
  return {carriageReturn, belongsToLineFeed ? afterLineFeed : carriageReturn + 1};
}

bool LineScanner::continues(std::size_t at) const { return at < text_.size() && isBlankOrTab(text_[at]); }

bool LineScanner::next(RawLine& line) {
  if (position_ >= text_.size()) return false;
  const std::size_t begin = position_;
  Break lineBreak = findBreak(begin);
  line.number = number_++;
  line.content = text_.substr(begin, lineBreak.contentEnd - begin);
  line.isFolded = continues(lineBreak.end);
  while (continues(lineBreak.end)) {
    lineBreak = findBreak(lineBreak.end);
    ++number_;
  }
  line.raw = text_.substr(begin, lineBreak.end - begin);
  position_ = lineBreak.end;
  return true;
}

void unfold(std::string_view raw, std::string& out) {
  for (bool isFirst = true; !raw.empty(); isFirst = false) {
    if (!isFirst) raw.remove_prefix(1);
    const std::size_t end = firstBreak(raw);
    out.append(raw, 0, end);
    raw.remove_prefix(end);
    raw.remove_prefix(lineBreakOf(raw).size());
  }
}

std::string_view lineBreakOf(std::string_view raw) {
  const std::size_t begin = firstBreak(raw);
  std::size_t end = begin;
  for (const std::string_view known : {"\r\n", "\r\r\n", "\n", "\r"}) {
    if (!raw.substr(begin).starts_with(known)) continue;
    end = begin + known.size();
    break;
  }
  return raw.substr(begin, end - begin);
}

LineParts partsOf(std::string_view content) {
  std::size_t nameLength = 0;
  while (nameLength < content.size() && content[nameLength] != ':' && content[nameLength] != ';')
    ++nameLength;
  if (nameLength == 0 || nameLength == content.size()) return {};
  bool isQuoted = false;
  for (std::size_t at = nameLength; at < content.size(); ++at) {
    if (content[at] == ':' && !isQuoted) return {nameLength, at + 1};
    if (content[at] == '"') isQuoted = !isQuoted;
  }
  const std::size_t colon = content.find(':', nameLength);
  return colon == std::string_view::npos ? LineParts{} : LineParts{nameLength, colon + 1};
}

bool standsAlone(std::string_view name) {
  constexpr std::string_view kNames[] = {"VEVENT", "VTODO", "VJOURNAL", "VFREEBUSY", "VTIMEZONE"};
  return std::ranges::any_of(kNames, [&](std::string_view known) { return equalNames(name, known); });
}

Marker markerOf(const RawLine& line, std::string_view& name) {
  const std::string_view content = line.content;
  if (content.empty() || (lowered(content.front()) != 'b' && lowered(content.front()) != 'e'))
    return Marker::none;
  const std::size_t colon = content.find(':');
  if (colon == std::string_view::npos) return Marker::none;
  const std::string_view word = trimmed(content.substr(0, colon));
  const Marker marker = equalNames(word, "BEGIN") ? Marker::begin
                        : equalNames(word, "END") ? Marker::end
                                                  : Marker::none;
  if (marker == Marker::none) return marker;
  name = trimmed(content.substr(colon + 1));
  if (!line.isFolded) return marker;
  // A line of blanks after BEGIN or END looks like folding and is none.
  std::string whole;
  unfold(line.raw, whole);
  return trimmed(whole).size() == trimmed(content).size() ? marker : Marker::none;
}

std::size_t Nesting::endedByBegin(std::string_view name) const {
  if (isCalendar(name)) return depth_;
  if (!standsAlone(name)) return 0;
  for (std::size_t at = depth_; at-- > 0;)
    if (standsAlone(open_[at])) return depth_ - at;
  return 0;
}

bool Nesting::open(std::string_view name) {
  if (depth_ == kDeepest) {
    ++tooDeep_;
    return false;
  }
  open_[depth_++] = name;
  return true;
}

std::size_t Nesting::endedByEnd(std::string_view name) {
  if (tooDeep_ > 0) {
    --tooDeep_;
    return 0;
  }
  for (std::size_t at = depth_; at-- > 0;)
    if (equalNames(name, open_[at])) return depth_ - at;
  // Misspelt, most likely; but one stray END should not take the whole calendar away.
  return depth_ > 0 && !isCalendar(innermost()) ? 1 : 0;
}

void Nesting::close(std::size_t count) {
  depth_ -= count;
  if (count > 0) tooDeep_ = 0;
}

}  // namespace ek::ical
