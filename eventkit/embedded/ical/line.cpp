#include <algorithm>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/ical/source_text.h"

namespace ek::ical {

namespace {

constexpr std::size_t kLongestLine = 75;  // octets, without the line break

bool isInsideCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// How much of `rest` fits into `room` octets without cutting a character apart. Bytes that are no UTF-8 are
// cut anywhere.
std::size_t fittingPart(std::string_view rest, std::size_t room) {
  if (rest.size() <= room) return rest.size();
  std::size_t length = room;
  while (length > room - 3 && isInsideCharacter(rest[length])) --length;
  return isInsideCharacter(rest[length]) ? room : length;
}

std::string fold(std::string_view content, std::string_view lineBreak) {
  std::string folded;
  folded.reserve(content.size() + (content.size() / (kLongestLine - 4) + 1) * (lineBreak.size() + 1));
  for (std::size_t room = kLongestLine; content.size() > room; room = kLongestLine - 1) {
    const std::size_t length = fittingPart(content, room);
    folded.append(content, 0, length).append(lineBreak).append(1, ' ');
    content.remove_prefix(length);
  }
  return folded.append(content).append(lineBreak);
}

std::size_t lineBreakLength(std::string_view text) { return text.starts_with("\r\n") ? 2 : 1; }

void appendWithoutLineBreaks(std::string_view text, std::string_view replacement, std::string& out) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    out.append(text, 0, end);
    text.remove_prefix(end);
    if (text.empty()) break;
    out += replacement;
    text.remove_prefix(lineBreakLength(text));
  }
}

// RFC 6868.
std::string withCarets(std::string_view value) {
  std::string encoded;
  for (std::size_t at = 0; at < value.size(); ++at) {
    const char c = value[at];
    if (c == '^') {
      encoded += "^^";
    } else if (c == '"') {
      encoded += "^'";
    } else if (c == '\r' || c == '\n') {
      encoded += "^n";
      at += lineBreakLength(value.substr(at)) - 1;
    } else {
      encoded += c;
    }
  }
  return encoded;
}

std::string withoutCarets(std::string_view text) {
  std::string decoded;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char next = text[at] == '^' && at + 1 < text.size() ? text[at + 1] : '\0';
    if (next != '^' && next != '\'' && next != 'n') {
      decoded += text[at];
      continue;
    }
    decoded += next == '^' ? '^' : next == 'n' ? '\r' : '"';
    ++at;
  }
  return decoded;
}

void appendParameter(std::string_view name, std::string_view value, std::string& out) {
  out.append(1, ';').append(name).append(1, '=');
  const std::string encoded = withCarets(value);
  const bool needsQuotes = encoded.find_first_of(":;,") != std::string::npos;
  if (needsQuotes) out += '"';
  out += encoded;
  if (needsQuotes) out += '"';
}

std::size_t findUnquoted(std::string_view text, char wanted, std::size_t from) {
  bool isQuoted = false;
  for (std::size_t at = from; at < text.size(); ++at) {
    if (text[at] == '"') isQuoted = !isQuoted;
    if (text[at] == wanted && !isQuoted) return at;
  }
  return text.size();
}

// Takes the next ";NAME=text" off the front of `parameters`, as written.
Line::Parameter takeParameter(std::string_view& parameters, std::string_view& written) {
  const std::size_t end = findUnquoted(parameters, ';', 1);
  written = parameters.substr(0, end);
  parameters.remove_prefix(end);
  const std::string_view inner = written.substr(1);
  const std::size_t equals = inner.find('=');
  if (equals == std::string_view::npos) return {trimmed(inner), {}};
  return {trimmed(inner.substr(0, equals)), inner.substr(equals + 1)};
}

}  // namespace

Line Line::fromContent(std::string content, std::string_view lineBreak) {
  auto text = std::make_shared<SourceText>();
  const bool fits = content.size() <= kLongestLine;
  const std::size_t length = content.size();
  text->raw = fold(content, lineBreak);
  if (!fits) text->unfolded = std::move(content);
  Line line;
  line.raw_ = text->raw;
  line.content_ = fits ? line.raw_.substr(0, length) : std::string_view(text->unfolded);
  line.parts_ = partsOf(line.content_);
  line.text_ = std::move(text);
  return line;
}

Line Line::make(std::string_view name, std::string_view value,
                const std::vector<std::pair<std::string, std::string>>& parameters) {
  std::string content(name);
  content.reserve(name.size() + value.size() + 1);
  for (const auto& [parameter, parameterValue] : parameters)
    appendParameter(parameter, parameterValue, content);
  content += ':';
  appendWithoutLineBreaks(value, "\\n", content);
  return fromContent(std::move(content), "\r\n");
}

bool Line::is(std::string_view name) const {
  return parts_.nameLength == name.size() && parts_.valueBegin > 0 && equalNames(Line::name(), name);
}

std::string_view Line::value() const { return content_.substr(parts_.valueBegin); }

std::string_view Line::head() const {
  return content_.substr(0, parts_.valueBegin > 0 ? parts_.valueBegin - 1 : 0);
}

std::vector<Line::Parameter> Line::parameters() const {
  std::vector<Parameter> found;
  std::string_view rest = head().substr(parts_.nameLength);
  for (std::string_view written; !rest.empty();) {
    const Parameter parameter = takeParameter(rest, written);
    if (!parameter.name.empty()) found.push_back(parameter);
  }
  return found;
}

std::optional<std::string_view> Line::rawParameter(std::string_view name) const {
  std::string_view rest = head().substr(parts_.nameLength);
  for (std::string_view written; !rest.empty();) {
    const Parameter parameter = takeParameter(rest, written);
    if (!equalNames(parameter.name, name)) continue;
    std::string_view first = trimmed(parameter.text.substr(0, findUnquoted(parameter.text, ',', 0)));
    if (first.size() >= 2 && first.front() == '"' && first.back() == '"')
      first = first.substr(1, first.size() - 2);
    return first;
  }
  return std::nullopt;
}

std::optional<std::string> Line::parameter(std::string_view name) const {
  const std::optional<std::string_view> text = rawParameter(name);
  if (!text) return std::nullopt;
  return text->find('^') == std::string_view::npos ? std::string(*text) : withoutCarets(*text);
}

Line Line::withValue(std::string_view value) const {
  std::string content(head());
  content += ':';
  appendWithoutLineBreaks(value, "\\n", content);
  return fromContent(std::move(content), "\r\n");
}

Line Line::withParameter(std::string_view name, std::optional<std::string_view> value) const {
  std::string content(Line::name());
  std::string_view rest = head().substr(parts_.nameLength);
  for (std::string_view written; !rest.empty();) {
    const Parameter parameter = takeParameter(rest, written);
    if (!equalNames(parameter.name, name)) {
      content += written;
    } else if (value) {
      appendParameter(parameter.name, *value, content);
      value.reset();
    }
  }
  if (value) appendParameter(name, *value, content);
  content.append(1, ':').append(Line::value());
  return fromContent(std::move(content), "\r\n");
}

}  // namespace ek::ical
