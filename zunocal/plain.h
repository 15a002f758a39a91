#pragma once

#include <algorithm>
#include <string>

namespace zunocal {

// A text for people in one line, without what a terminal would take for an order.
inline std::string plain(std::string text) {
  std::ranges::replace_if(
      text, [](char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == '\x7f'; }, ' ');
  return text;
}

}  // namespace zunocal
