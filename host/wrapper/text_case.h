// Letter case of UTF-16 text under Unicode's simple mappings, whatever the process's locale is.
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace fmhost {

char16_t upperCased(char16_t c);
char16_t lowerCased(char16_t c);
void makeUpperCase(std::u16string& text);
void makeLowerCase(std::u16string& text);

// As FileMaker compares texts: letter case makes no difference.
std::strong_ordering compareIgnoringCase(std::u16string_view a, std::u16string_view b);
// The position of `what` at or after `from`; npos when there is none.
std::size_t findIgnoringCase(std::u16string_view text, std::u16string_view what, std::size_t from = 0);
std::size_t findLastIgnoringCase(std::u16string_view text, std::u16string_view what,
                                 std::size_t from = std::u16string_view::npos);

}  // namespace fmhost
