#include "plugin/functions/host_values.h"

#include <memory>
#include <span>
#include <string>

#include "foundation/text.h"
#include "plugin/shell/kept_objects.h"

namespace zuno {

namespace {

// Keywords and most texts are shorter, and then need no memory of their own on the way.
constexpr std::size_t kShortText = 256;

// Copies unit by unit; false for a text that is not ASCII, whose copy is none.
bool copyAscii(const fmx::uint16* from, std::size_t count, char* to) {
  unsigned seen = 0;
  for (std::size_t i = 0; i < count; ++i) {
    to[i] = static_cast<char>(from[i]);
    seen |= from[i];
  }
  return seen < 0x80;
}

void assignUtf8(const fmx::uint16* units, std::size_t count, std::string& text) {
  text.resize(count);
  if (!copyAscii(units, count, text.data())) text = foundation::utf8FromUtf16(std::span(units, count));
}

// Memory for so many units.
class Units {
 public:
  explicit Units(std::size_t count) : large_(count > kShortText ? new fmx::uint16[count] : nullptr) {}
  fmx::uint16* data() { return large_ ? large_.get() : small_; }

 private:
  std::unique_ptr<fmx::uint16[]> large_;
  fmx::uint16 small_[kShortText];
};

}  // namespace

std::optional<std::string> Arguments::text(fmx::uint32 index) const {
  std::optional<std::string> result;
  if (index >= count_) return result;
  const fmx::Text& text = values_.AtAsText(index);
  if (const fmx::uint32 size = text.GetSize()) {
    Units units(size);
    text.GetUnicode(units.data(), 0, size);
    assignUtf8(units.data(), size, result.emplace());
  }
  return result;
}

Keyword Arguments::keyword(fmx::uint32 index) const {
  if (index >= count_) return {};
  const fmx::Text& text = values_.AtAsText(index);
  const fmx::uint32 size = text.GetSize();
  if (size == 0) return {};
  Keyword::Units units{};
  if (size <= units.size()) text.GetUnicode(units.data(), 0, size);
  return {units, size};
}

std::int64_t Arguments::integer(fmx::uint32 index) const {
  return index < count_ ? values_.AtAsNumber(index).AsLong() : 0;
}

void AssignStringResult(TextArgument text, fmx::Data& result) {
  const std::string_view bytes = text.value_or("");
  Units units(bytes.size() + 1);
  const std::size_t count = foundation::utf16FromUtf8(bytes, units.data());
  units.data()[count] = 0;
  fmx::Text& wide = textForResult(count);
  wide.AssignUnicode(units.data());
  result.SetAsText(wide, result.GetLocale());
}

void assignNumber(std::int64_t number, fmx::Data& result) {
  fmx::FixPt& value = numberForResult();
  value.AssignInt(static_cast<fmx::int32>(number));
  result.SetAsNumber(value);
}

void assignErrorMarker(fmx::Data& result) {
  const fmx::TextUniquePtr marker;
  marker->Assign("!!ERROR!!", fmx::Text::kEncoding_ASCII_Mac);
  result.SetAsText(*marker, result.GetLocale());
}

}  // namespace zuno
