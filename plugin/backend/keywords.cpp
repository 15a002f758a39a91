#include "plugin/backend/keywords.h"

#include <bit>
#include <cstring>
#include <vector>

#include "foundation/text.h"

namespace zuno {

namespace {

constexpr std::uint16_t kKelvinSign = 0x212A;  // the one letter outside ASCII whose lower case is inside
constexpr std::uint64_t kForeign = 0x80;       // any other one: it is in no word

std::uint64_t letterOf(std::uint16_t unit) {
  if (unit >= 'A' && unit <= 'Z') return std::uint64_t{unit} - 'A' + 'a';
  if (unit < 0x80) return unit;
  return unit == kKelvinSign ? 'k' : kForeign;
}

// The lanes of one number are four units or eight letters, the first one lowest.
static_assert(std::endian::native == std::endian::little);
constexpr std::uint64_t kEachUnit = 0x0001'0001'0001'0001;
constexpr std::uint64_t kEachLetter = 0x0101'0101'0101'0101;

std::uint64_t narrowed(std::uint64_t units) {
  const std::uint64_t pairs = (units | units >> 8) & 0x0000'FFFF'0000'FFFF;
  return (pairs | pairs >> 16) & 0xFFFF'FFFF;
}

std::uint64_t lowered(std::uint64_t ascii) {
  const std::uint64_t reachesA = ascii + (0x80 - 'A') * kEachLetter;
  const std::uint64_t passesZ = ascii + (0x7F - 'Z') * kEachLetter;
  return ascii | ((reachesA ^ passesZ) & 0x80 * kEachLetter) >> 2;
}

// Of the eight units from there.
std::uint64_t letters(const std::uint16_t* units) {
  std::uint64_t first = 0, second = 0;
  std::memcpy(&first, units, sizeof first);
  std::memcpy(&second, units + sizeof first / sizeof *units, sizeof second);
  if (((first | second) & 0xFF80 * kEachUnit) == 0) [[likely]]
    return lowered(narrowed(first) | narrowed(second) << 32);
  std::uint64_t all = 0;
  for (unsigned i = 0; i < PackedWord::kPerPart; ++i) all |= letterOf(units[i]) << i * 8;
  return all;
}

}  // namespace

Keyword::Keyword(const Units& utf16, std::size_t count) : isNone_(false) {
  const bool isWord = count <= utf16.size() && (count == 0 || utf16[count - 1] != 0);
  if (!isWord) word_.parts[0] = kForeign;
  for (std::size_t at = 0; isWord && at < count; at += PackedWord::kPerPart)
    word_.parts[at / PackedWord::kPerPart] = letters(&utf16[at]);
}

Keyword::Keyword(TextArgument text) {
  if (!text) return;
  std::vector<std::uint16_t> all((*text).size());
  const std::size_t count = foundation::utf16FromUtf8(*text, all.data());
  Units units{};
  std::copy_n(all.begin(), std::min(count, units.size()), units.begin());
  *this = Keyword(units, count);
}

bool isTrue(const Value& value) { return Keyword(plainTextOf(value)) == "true"; }

}  // namespace zuno
