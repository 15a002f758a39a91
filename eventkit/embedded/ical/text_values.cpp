// TEXT values and lists.
#include <algorithm>
#include <charconv>

#include "eventkit/embedded/ical/values.h"

namespace ek::ical {

namespace {

// What the bytes 0x80 to 0x9F mean in texts that are no UTF-8: Windows-1252 has characters there where
// Latin-1 has none. 0: undefined.
constexpr char16_t kWindows1252[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                       0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                       0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                       0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// Of the character at the front; 0 when it is no well-formed UTF-8.
std::size_t characterLength(std::string_view text) {
  const auto byte = [&](std::size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
  };
  const auto isNext = [&](std::size_t at) { return (byte(at) & 0xC0U) == 0x80U; };
  const unsigned first = byte(0), second = byte(1);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0 && isNext(1)) return 2;
  if (first >= 0xE0 && first < 0xF0 && isNext(1) && isNext(2)) {
    const bool isOverlong = first == 0xE0 && second < 0xA0;
    const bool isSurrogate = first == 0xED && second >= 0xA0;
    return isOverlong || isSurrogate ? 0 : 3;
  }
  if (first >= 0xF0 && first < 0xF5 && isNext(1) && isNext(2) && isNext(3)) {
    const bool isOverlong = first == 0xF0 && second < 0x90;
    const bool isBeyondUnicode = first == 0xF4 && second >= 0x90;
    return isOverlong || isBeyondUnicode ? 0 : 4;
  }
  return 0;
}

void appendFromWindows1252(unsigned char byte, std::string& out) {
  unsigned code = byte;
  if (byte < 0xA0) code = kWindows1252[byte - 0x80];
  if (code == 0) code = 0xFFFD;
  if (code < 0x800) {
    out += static_cast<char>(0xC0U | code >> 6U);
  } else {
    out += static_cast<char>(0xE0U | code >> 12U);
    out += static_cast<char>(0x80U | (code >> 6U & 0x3FU));
  }
  out += static_cast<char>(0x80U | (code & 0x3FU));
}

// The character at `at`, which is then behind it.
void appendCharacter(std::string_view text, std::size_t& at, std::string& out) {
  const std::size_t length = characterLength(text.substr(at));
  if (length > 0)
    out.append(text, at, length);
  else
    appendFromWindows1252(static_cast<unsigned char>(text[at]), out);
  at += std::max<std::size_t>(length, 1);
}

// The character that a backslash and `c` stand for; '\0' where the backslash is only a backslash.
char unescaped(char c) {
  if (c == 'n' || c == 'N') return '\r';
  constexpr std::string_view kEscaped = "\\;,:\"";
  return kEscaped.find(c) != std::string_view::npos ? c : '\0';
}

// What a TEXT may not hold.
bool isControl(char c) {
  const auto code = static_cast<unsigned char>(c);
  return (code < 0x20 && c != '\t') || code == 0x7F;
}

bool isPlain(char c) { return c != '\\' && static_cast<unsigned char>(c) < 0x80; }

}  // namespace

std::string decodeText(std::string_view escaped) {
  std::string text;
  text.reserve(escaped.size());
  for (std::size_t at = 0; at < escaped.size();) {
    std::size_t plainEnd = at;
    while (plainEnd < escaped.size() && isPlain(escaped[plainEnd])) ++plainEnd;
    text.append(escaped, at, plainEnd - at);
    at = plainEnd;
    if (at == escaped.size()) break;
    if (escaped[at] == '\\') {
      const char meant = at + 1 < escaped.size() ? unescaped(escaped[at + 1]) : '\0';
      text += meant == '\0' ? '\\' : meant;
      at += meant == '\0' ? 1 : 2;
    } else {
      appendCharacter(escaped, at, text);
    }
  }
  return text;
}

std::string decodeBytes(std::string_view bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) appendCharacter(bytes, at, text);
  return text;
}

std::string encodeText(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size() + text.size() / 16);
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '\r' || c == '\n') {
      escaped += "\\n";
      if (text.substr(at).starts_with("\r\n")) ++at;
      continue;
    }
    if (isControl(c)) {
      if (c == '\v' || c == '\f') escaped += "\\n";
      continue;
    }
    if (c == '\\' || c == ';' || c == ',') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

std::optional<char> hexByte(std::string_view digits) {
  unsigned value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (digits.size() != 2 || error != std::errc() || end != digits.data() + 2) return std::nullopt;
  return static_cast<char>(value);
}

std::vector<std::string_view> splitList(std::string_view value, char separator) {
  std::vector<std::string_view> parts;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (value[at] == '\\') {
      ++at;
    } else if (value[at] == separator) {
      parts.push_back(value.substr(begin, at - begin));
      begin = at + 1;
    }
  }
  parts.push_back(value.substr(begin));
  return parts;
}

}  // namespace ek::ical
