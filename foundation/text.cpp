#include "foundation/text.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

namespace foundation {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::string_view kKelvinSign = "\xE2\x84\xAA";

void appendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | c >> 6);
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | c >> 12);
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | c >> 18);
    out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

struct Decoded {
  char32_t character;
  std::size_t length;
};

// The well-formed sequences of Unicode's table 3-7: how many bytes follow the first, and what the second
// may be. An ill-formed sequence is as long as its part that could have begun a well-formed one.
constexpr struct {
  unsigned char first, last, followers, secondFrom, secondTo, bits;
} kLeads[] = {{0xC2, 0xDF, 1, 0x80, 0xBF, 0x1F}, {0xE0, 0xE0, 2, 0xA0, 0xBF, 0x0F},
              {0xE1, 0xEC, 2, 0x80, 0xBF, 0x0F}, {0xED, 0xED, 2, 0x80, 0x9F, 0x0F},
              {0xEE, 0xEF, 2, 0x80, 0xBF, 0x0F}, {0xF0, 0xF0, 3, 0x90, 0xBF, 0x07},
              {0xF1, 0xF3, 3, 0x80, 0xBF, 0x07}, {0xF4, 0xF4, 3, 0x80, 0x8F, 0x07}};

Decoded decodeUtf8(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) return {first, 1};
  const auto* const lead =
      std::ranges::find_if(kLeads, [first](const auto& l) { return first >= l.first && first <= l.last; });
  if (lead == std::end(kLeads)) return {kReplacement, 1};
  char32_t character = first & lead->bits;
  unsigned char from = lead->secondFrom, to = lead->secondTo;
  for (std::size_t i = 1; i <= lead->followers; ++i, from = 0x80, to = 0xBF) {
    if (i >= text.size()) return {kReplacement, i};
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < from || byte > to) return {kReplacement, i};
    character = character << 6 | (byte & 0x3F);
  }
  return {character, lead->followers + std::size_t{1}};
}

bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

bool isNewline(char32_t c) { return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029; }

bool isBlank(char32_t c) {
  return c == ' ' || c == '\t' || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x202F ||
         c == 0x205F || c == 0x3000;
}

template <typename IsSeparator>
std::vector<std::string_view> splitAt(std::string_view text, IsSeparator isSeparator) {
  std::vector<std::string_view> parts;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size();) {
    const Decoded next = decodeUtf8(text.substr(i));
    if (isSeparator(next.character)) {
      parts.push_back(text.substr(begin, i - begin));
      begin = i + next.length;
    }
    i += next.length;
  }
  parts.push_back(text.substr(begin));
  return parts;
}

template <typename Unit>
std::string utf8From(std::span<const Unit> text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (isHighSurrogate(unit) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
      appendUtf8(out, 0x10000 + ((unit & 0x3FFU) << 10) + (text[i + 1] & 0x3FFU));
      ++i;
    } else {
      appendUtf8(out, isHighSurrogate(unit) || isLowSurrogate(unit) ? kReplacement : unit);
    }
  }
  return out;
}

// Spreads so many bytes over as many units; false, and nothing done, when not all of them are ASCII.
constexpr std::size_t kAsciiAtOnce = sizeof(std::uint32_t);

template <typename Unit>
bool putAscii(const char* from, Unit* to) {
  static_assert(std::endian::native == std::endian::little);
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, from, sizeof bytes);
  if ((bytes & 0x8080'8080) != 0) return false;
  const std::uint64_t pairs = (bytes | std::uint64_t{bytes} << 16) & 0x0000'FFFF'0000'FFFF;
  const std::uint64_t units = (pairs | pairs << 8) & 0x00FF'00FF'00FF'00FF;
  std::memcpy(to, &units, sizeof units);
  return true;
}

// No character has more units than bytes.
template <typename Unit>
std::size_t putUtf16(std::string_view text, Unit* units) {
  Unit* end = units;
  for (std::size_t i = 0; i < text.size();) {
    if (i + kAsciiAtOnce <= text.size() && putAscii(text.data() + i, end)) {
      i += kAsciiAtOnce;
      end += kAsciiAtOnce;
      continue;
    }
    if (const auto byte = static_cast<unsigned char>(text[i]); byte < 0x80) {
      *end++ = byte;
      ++i;
      continue;
    }
    const auto [character, length] = decodeUtf8(text.substr(i));
    i += length;
    if (character < 0x10000) {
      *end++ = static_cast<Unit>(character);
    } else {
      *end++ = static_cast<Unit>(0xD800 + ((character - 0x10000) >> 10));
      *end++ = static_cast<Unit>(0xDC00 + (character & 0x3FF));
    }
  }
  return static_cast<std::size_t>(end - units);
}

}  // namespace

std::string utf8FromUtf16(std::u16string_view text) { return utf8From(std::span(text)); }

std::string utf8FromUtf16(std::span<const std::uint16_t> units) { return utf8From(units); }

std::u16string utf16FromUtf8(std::string_view text) {
  std::u16string out(text.size(), u'\0');
  out.resize(putUtf16(text, out.data()));
  return out;
}

std::size_t utf16FromUtf8(std::string_view text, std::uint16_t* units) { return putUtf16(text, units); }

// Byte by byte: no byte of a longer sequence is a letter, and no sequence contains another.
std::string lowercased(std::string_view text) {
  std::string out(text);
  bool isAscii = true;
  for (char& c : out) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    isAscii = isAscii && static_cast<unsigned char>(c) < 0x80;
  }
  if (isAscii) return out;
  for (std::size_t at = 0; (at = out.find(kKelvinSign, at)) != std::string::npos;)
    out.replace(at, kKelvinSign.size(), 1, 'k');
  return out;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string_view::npos; begin = end + 1)
    parts.push_back(text.substr(begin, end - begin));
  parts.push_back(text.substr(begin));
  return parts;
}

std::vector<std::string_view> splitAtNewlines(std::string_view text) { return splitAt(text, isNewline); }

std::vector<std::string_view> splitAtWhitespace(std::string_view text) { return splitAt(text, isBlank); }

std::int64_t integerValue(std::string_view text) {
  while (!text.empty()) {
    const Decoded next = decodeUtf8(text);
    if (!isBlank(next.character) && !isNewline(next.character)) break;
    text.remove_prefix(next.length);
  }
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // Counted downwards: the smallest value has no positive counterpart.
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  std::int64_t value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    const int digit = c - '0';
    if (value < (least + digit) / 10) {
      value = least;
      break;
    }
    value = value * 10 - digit;
  }
  if (negative) return value;
  return value == least ? std::numeric_limits<std::int64_t>::max() : -value;
}

}  // namespace foundation
