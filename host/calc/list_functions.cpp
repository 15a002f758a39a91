#include "host/calc/builtins.h"

namespace fmhost {
namespace {

using Values = std::span<const Value>;

constexpr char16_t kReturn = u'\r';

// The return behind the last value does not begin another one.
std::int64_t valueCountOf(const Text& list) {
  std::int64_t count = 0;
  for (const char16_t c : list) count += c == kReturn ? 1 : 0;
  return count + (list.empty() || list.back() == kReturn ? 0 : 1);
}

Value valueCount(Values a) { return Value::ofNumber(Decimal(valueCountOf(a[0].asText()))); }

Value getValue(Values a) {
  const Text& list = a[0].asText();
  const std::int64_t wanted = a[1].asNumber().value.truncated();
  if (wanted < 1 || wanted > valueCountOf(list)) return Value::ofText({});
  std::size_t start = 0;
  for (std::int64_t i = 1; i < wanted; ++i) start = list.find(kReturn, start) + 1;
  return Value::ofText(list.substr(start, list.find(kReturn, start) - start));
}

// Without the empty ones.
Value list(Values a) {
  Text text;
  for (const Value& value : a) {
    if (value.isEmpty()) continue;
    if (!text.empty()) text += kReturn;
    text += value.asText();
  }
  return Value::ofText(std::move(text));
}

constexpr Builtin kFunctions[] = {
    {"List", 1, -1, list}, {"GetValue", 2, 2, getValue}, {"ValueCount", 1, 1, valueCount}};

}  // namespace

std::span<const Builtin> listFunctions() { return kFunctions; }

}  // namespace fmhost
