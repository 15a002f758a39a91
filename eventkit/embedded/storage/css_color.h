#pragma once

#include <optional>
#include <string_view>

#include "eventkit/types.h"

namespace ek::embedded {

// "#ff2d55", "#FF2D55FF" (alpha is left out), or a colour name of CSS3 as RFC 7986 uses them.
std::optional<Color> colorFrom(std::string_view text);

}  // namespace ek::embedded
