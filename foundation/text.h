// Text is UTF-8 everywhere but at the host's boundary, where it is UTF-16.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace foundation {

// A lone surrogate becomes U+FFFD.
std::string utf8FromUtf16(std::u16string_view text);
std::string utf8FromUtf16(std::span<const std::uint16_t> units);
// Bytes that are no UTF-8 become U+FFFD, one for each ill-formed sequence.
std::u16string utf16FromUtf8(std::string_view text);
// Into the caller's units, of which there are as many as the text has bytes; returns how many are written.
std::size_t utf16FromUtf8(std::string_view text, std::uint16_t* units);

// For comparing with keywords, which are ASCII: lower-cases the letters that have an ASCII lower-case form
// under Unicode's mapping without locale (A to Z and the Kelvin sign) and leaves all others alone.
std::string lowercased(std::string_view text);

// Adjacent separators give empty parts; an empty text gives one empty part.
std::vector<std::string_view> split(std::string_view text, char separator);
// At each of U+000A to U+000D, U+0085, U+2028 and U+2029, every character a separator of its own.
std::vector<std::string_view> splitAtNewlines(std::string_view text);
// At each Unicode space (category Zs) and tab, every character a separator of its own.
std::vector<std::string_view> splitAtWhitespace(std::string_view text);

// Leading white space, one optional sign, digits up to the first other character; no digits give 0; beyond
// 64 bits the limit.
std::int64_t integerValue(std::string_view text);

}  // namespace foundation
