#include "plugin/functions/host_values.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "foundation/text.h"

namespace zuno {

namespace {

// Keywords and most texts are shorter, and then need no memory of their own on the way.
constexpr std::size_t kShortText = 256;

template <class Unit>
bool isAscii(const Unit* units, std::size_t count) {
  return std::all_of(units, units + count, [](Unit unit) { return static_cast<unsigned>(unit) < 0x80; });
}

std::string utf8From(const fmx::uint16* units, std::size_t count) {
  if (isAscii(units, count)) return {units, units + count};
  return foundation::utf8FromUtf16(std::u16string(units, units + count));
}

void assignUnits(const fmx::uint16* terminated, fmx::Data& result) {
  const fmx::TextUniquePtr text;
  text->AssignUnicode(terminated);
  result.SetAsText(*text, result.GetLocale());
}

}  // namespace

std::string utf8From(const fmx::Text& text) {
  const fmx::uint32 size = text.GetSize();
  if (size == 0) return {};
  if (size <= kShortText) {
    std::array<fmx::uint16, kShortText> units;
    text.GetUnicode(units.data(), 0, size);
    return utf8From(units.data(), size);
  }
  std::vector<fmx::uint16> units(size);
  text.GetUnicode(units.data(), 0, size);
  return utf8From(units.data(), size);
}

std::optional<std::string> textArgument(const fmx::DataVect& arguments, fmx::uint32 index) {
  if (index >= arguments.Size()) return std::nullopt;
  std::string text = utf8From(arguments.AtAsText(index));
  return text.empty() ? std::nullopt : std::optional(std::move(text));
}

std::int64_t integerArgument(const fmx::DataVect& arguments, fmx::uint32 index) {
  return index < arguments.Size() ? arguments.AtAsNumber(index).AsLong() : 0;
}

void AssignStringResult(TextArgument text, fmx::Data& result) {
  const std::string_view bytes = text.value_or("");
  if (bytes.size() < kShortText && isAscii(bytes.data(), bytes.size())) {
    std::array<fmx::uint16, kShortText> units;
    *std::copy(bytes.begin(), bytes.end(), units.begin()) = 0;
    return assignUnits(units.data(), result);
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
