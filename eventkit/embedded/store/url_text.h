#pragma once

#include <string_view>

namespace ek::embedded {

// Whether a text is a URI reference as RFC 3986 has it, relative ones included; an empty text is none.
bool isUrl(std::string_view text);

}  // namespace ek::embedded
