#include "plugin/functions/host_values.h"

#include <array>
#include <type_traits>
#include <vector>

#include "foundation/text.h"

namespace zuno {

namespace {

// Keywords and most texts are shorter, and then need no memory of their own on the way.
constexpr std::size_t kShortText = 256;

// Copies unit by unit; true when all were ASCII, and the copy is the same text then.
template <class From, class To>
bool copyAscii(const From* from, std::size_t count, To* to) {
  unsigned seen = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto unit = static_cast<std::make_unsigned_t<From>>(from[i]);
    to[i] = static_cast<To>(unit);
    seen |= unit;
  }
  return seen < 0x80;
}

std::string utf8From(const fmx::Text& text, fmx::uint32 size) {
  if (size > kShortText) {
    std::vector<fmx::uint16> units(size);
    text.GetUnicode(units.data(), 0, size);
    return foundation::utf8FromUtf16(std::u16string(units.begin(), units.end()));
  }
  std::array<fmx::uint16, kShortText> units;
  std::array<char, kShortText> narrow;
  text.GetUnicode(units.data(), 0, size);
  if (copyAscii(units.data(), size, narrow.data())) return {narrow.data(), size};
  return foundation::utf8FromUtf16(std::u16string(units.begin(), units.begin() + size));
}

void assignUnits(const fmx::uint16* terminated, fmx::Data& result) {
  const fmx::TextUniquePtr text;
  text->AssignUnicode(terminated);
  result.SetAsText(*text, result.GetLocale());
}

}  // namespace

std::optional<std::string> Arguments::text(fmx::uint32 index) const {
  if (index >= count_) return std::nullopt;
  const fmx::Text& text = values_.AtAsText(index);
  const fmx::uint32 size = text.GetSize();
  return size == 0 ? std::nullopt : std::optional(utf8From(text, size));
}

std::int64_t Arguments::integer(fmx::uint32 index) const {
  return index < count_ ? values_.AtAsNumber(index).AsLong() : 0;
}

void AssignStringResult(TextArgument text, fmx::Data& result) {
  const std::string_view bytes = text.value_or("");
  if (bytes.size() < kShortText) {
    std::array<fmx::uint16, kShortText> units;
    units[bytes.size()] = 0;
    if (copyAscii(bytes.data(), bytes.size(), units.data())) return assignUnits(units.data(), result);
  }
  const std::u16string wide = foundation::utf16FromUtf8(bytes);
  std::vector<fmx::uint16> units(wide.begin(), wide.end());
  units.push_back(0);
  assignUnits(units.data(), result);
}

void assignNumber(std::int64_t number, fmx::Data& result) {
  const fmx::FixPtUniquePtr value(0, fmx::FixPt::kDefltFixedPrecision);
  value->AssignInt(static_cast<fmx::int32>(number));
  result.SetAsNumber(*value);
}

void assignErrorMarker(fmx::Data& result) {
  const fmx::TextUniquePtr marker;
  marker->Assign("!!ERROR!!", fmx::Text::kEncoding_ASCII_Mac);
  result.SetAsText(*marker, result.GetLocale());
}

}  // namespace zuno
