#include <algorithm>
#include <optional>

#include "host/calc/builtins.h"

namespace fmhost {
namespace {

using Values = std::span<const Value>;

constexpr std::int64_t kMostPlaces = 400;

// The function of the numbers that the values are; an empty value stays empty, "?" stays "?".
template <class Function>
Value ofNumbers(Values a, Function function) {
  for (const Value& value : a) {
    if (value.asNumber().presence != Presence::present) return Value::ofNumber(value.asNumber());
  }
  const std::optional<Decimal> result = function();
  return result ? Value::ofNumber(*result) : Value::ofInvalid(ValueType::number);
}

Value absolute(Values a) {
  return ofNumbers(a, [&] {
    const Decimal& number = a[0].asNumber().value;
    return number.isNegative() ? -number : number;
  });
}

Value integer(Values a) {
  return ofNumbers(a, [&] {
    const Decimal& number = a[0].asNumber().value;
    return number.isNegative() ? -(-number).floor() : number.floor();
  });
}

Value modulo(Values a) {
  return ofNumbers(a, [&] { return Decimal::modulo(a[0].asNumber().value, a[1].asNumber().value); });
}

Value round(Values a) {
  return ofNumbers(a, [&] {
    const std::int64_t places = a[1].asNumber().value.truncated();
    return a[0].asNumber().value.rounded(static_cast<int>(std::clamp(places, -kMostPlaces, kMostPlaces)));
  });
}

constexpr Builtin kFunctions[] = {
    {"Abs", 1, 1, absolute}, {"Int", 1, 1, integer}, {"Mod", 2, 2, modulo}, {"Round", 2, 2, round}};

}  // namespace

std::span<const Builtin> numberFunctions() { return kFunctions; }

}  // namespace fmhost
