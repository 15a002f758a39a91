// Bytes of the interface's text encodings, numbered as fmx::Text::Encoding numbers them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace fmhost {

void appendCodePoint(std::u16string& text, char32_t codePoint);

// The native encoding is UTF-8 here. Throws std::invalid_argument for an encoding that the stand-in has no
// table of, unless all bytes are ASCII.
std::u16string decoded(std::string_view bytes, std::int32_t encoding);
// What the encoding has no byte for becomes a question mark.
std::string encoded(std::u16string_view text, std::int32_t encoding);

}  // namespace fmhost
