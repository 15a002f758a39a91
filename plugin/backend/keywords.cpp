#include "plugin/backend/keywords.h"

#include <vector>

#include "foundation/text.h"

namespace zuno {

namespace {

constexpr KeywordSignature kTooLong = 0xFFFFFFFF;
constexpr std::uint16_t kKelvinSign = 0x212A;  // the one letter outside ASCII whose lower case is inside
constexpr char kForeign = '\x80';              // any other one: it is in no word

constexpr auto kAsciiLowered = [] {
  std::array<char, 0x80> letters{};
  for (std::size_t c = 0; c < letters.size(); ++c)
    letters[c] = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return letters;
}();

char letterOf(std::uint16_t unit) {
  if (unit < kAsciiLowered.size()) [[likely]]
    return kAsciiLowered[unit];
  return unit == kKelvinSign ? 'k' : kForeign;
}

}  // namespace

Keyword::Keyword(std::span<const std::uint16_t> utf16) : signature_(kTooLong), isNone_(false) {
  if (utf16.size() > kLongest) return;
  std::transform(utf16.begin(), utf16.end(), letters_.begin(), letterOf);
  signature_ = signatureOf({letters_.data(), utf16.size()});
}

Keyword::Keyword(TextArgument text) {
  if (!text) return;
  std::vector<std::uint16_t> units((*text).size());
  units.resize(foundation::utf16FromUtf8(*text, units.data()));
  *this = Keyword(units);
}

bool isTrue(const Value& value) { return Keyword(plainTextOf(value)) == "true"; }

}  // namespace zuno
