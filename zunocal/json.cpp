#include "zunocal/json.h"

#include <fmt/format.h>

#include "foundation/text.h"

namespace zunocal {

std::string jsonText(std::string_view text) {
  std::string json = "\"";
  for (const char byte : foundation::utf8FromUtf16(foundation::utf16FromUtf8(text))) {
    switch (byte) {
      case '"':
      case '\\':
        json += '\\';
        json += byte;
        break;
      case '\r':
        json += "\\r";
        break;
      case '\n':
        json += "\\n";
        break;
      default:
        if (static_cast<unsigned char>(byte) < 0x20)
          json += fmt::format("\\u{:04x}", static_cast<unsigned>(byte));
        else
          json += byte;
    }
  }
  return json + '"';
}

}  // namespace zunocal
