#include "host/output.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

#include "foundation/text.h"

namespace fmhost {
namespace {

constexpr std::array<std::string_view, 6> kTypeNames = {"empty", "text", "number",
                                                        "date",  "time", "timestamp"};

struct Escape {
  char16_t character;
  std::string_view written;
};
constexpr Escape kEscapes[] = {
    {u'"', "\\\""}, {u'\\', "\\\\"}, {u'\r', "\\r"}, {u'\n', "\\n"}, {u'\t', "\\t"}};

bool isHighSurrogate(char16_t c) { return c >= 0xD800 && c < 0xDC00; }
bool isLowSurrogate(char16_t c) { return c >= 0xDC00 && c < 0xE000; }

// Text without a special meaning in JSON, from the start of this one.
std::size_t plainLength(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    const bool isPair = isHighSurrogate(c) && i + 1 < text.size() && isLowSurrogate(text[i + 1]);
    if (isPair) {
      ++i;
    } else if (c < 0x20 || c == u'"' || c == u'\\' || isHighSurrogate(c) || isLowSurrogate(c)) {
      return i;
    }
  }
  return text.size();
}

std::string escaped(char16_t c) {
  const auto* const known = std::ranges::find(kEscapes, c, &Escape::character);
  if (known != std::end(kEscapes)) return std::string(known->written);
  return fmt::format("\\u{:04x}", static_cast<unsigned>(c));
}

std::string interchangeText(const Value& value) {
  switch (value.type()) {
    case ValueType::date:
      return isoDateText(value.asDate());
    case ValueType::time:
      return isoTimeText(value.asTime());
    case ValueType::timestamp:
      return isoTimestampText(value.asTimestamp());
    default:
      return {};
  }
}

}  // namespace

std::string shown(const Value& value) {
  std::string text = foundation::utf8FromUtf16(value.asText());
  std::ranges::replace(text, '\r', '\n');
  return text;
}

std::string jsonText(std::u16string_view text) {
  std::string json = "\"";
  while (!text.empty()) {
    const std::size_t plain = plainLength(text);
    json += foundation::utf8FromUtf16(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) break;
    json += escaped(text.front());
    text.remove_prefix(1);
  }
  return json + "\"";
}

std::string asJson(const Value& value) {
  const std::string interchange = interchangeText(value);
  return fmt::format("{{\"type\":\"{}\",\"value\":{}}}", kTypeNames[static_cast<std::size_t>(value.type())],
                     interchange.empty() ? jsonText(value.asText()) : jsonText(widened(interchange)));
}

std::string errorAsJson(std::string_view message) {
  return fmt::format("{{\"type\":\"error\",\"value\":{}}}", jsonText(foundation::utf16FromUtf8(message)));
}

}  // namespace fmhost
