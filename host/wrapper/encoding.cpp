#include "host/wrapper/encoding.h"

#include <algorithm>
#include <stdexcept>

#include "FMWrapper/FMXText.h"
#include "foundation/text.h"

namespace fmhost {
namespace {

// Mac Roman from 0x80 on.
constexpr std::u16string_view kMacRoman =
    u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
    u"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
static_assert(kMacRoman.size() == 128);

bool isUtf8(std::int32_t encoding) {
  return encoding == fmx::Text::kEncoding_Native || encoding == fmx::Text::kEncoding_UTF8;
}

char16_t characterOf(unsigned char byte, std::int32_t encoding) {
  if (byte < 0x80 || encoding == fmx::Text::kEncoding_ISO_8859_1) return byte;
  if (encoding == fmx::Text::kEncoding_ASCII_Mac) return kMacRoman[byte - 0x80U];
  throw std::invalid_argument("no table for this text encoding");
}

char byteOf(char16_t character, std::int32_t encoding) {
  constexpr char kNone = '?';
  if (character < 0x80) return static_cast<char>(character);
  if (encoding == fmx::Text::kEncoding_ISO_8859_1)
    return character < 0x100 ? static_cast<char>(character) : kNone;
  if (encoding != fmx::Text::kEncoding_ASCII_Mac)
    throw std::invalid_argument("no table for this text encoding");
  const std::size_t position = kMacRoman.find(character);
  return position == std::u16string_view::npos ? kNone : static_cast<char>(0x80 + position);
}

}  // namespace

void appendCodePoint(std::u16string& text, char32_t codePoint) {
  if (codePoint < 0x10000) {
    text += static_cast<char16_t>(codePoint);
    return;
  }
  text += static_cast<char16_t>(0xD7C0 + (codePoint >> 10));
  text += static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF));
}

std::u16string decoded(std::string_view bytes, std::int32_t encoding) {
  if (isUtf8(encoding)) return foundation::utf16FromUtf8(bytes);
  std::u16string text(bytes.size(), u'\0');
  std::ranges::transform(bytes, text.begin(),
                         [&](char byte) { return characterOf(static_cast<unsigned char>(byte), encoding); });
  return text;
}

std::string encoded(std::u16string_view text, std::int32_t encoding) {
  if (isUtf8(encoding)) return foundation::utf8FromUtf16(text);
  std::string bytes(text.size(), '\0');
  std::ranges::transform(text, bytes.begin(),
                         [&](char16_t character) { return byteOf(character, encoding); });
  return bytes;
}

}  // namespace fmhost
