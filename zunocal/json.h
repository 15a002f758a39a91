#pragma once

#include <string>
#include <string_view>

namespace zunocal {

// With its quotes. Bytes that are no UTF-8 become U+FFFD.
std::string jsonText(std::string_view text);

}  // namespace zunocal
