#include "host/calc/operators.h"

#include <algorithm>
#include <compare>
#include <iterator>
#include <optional>

#include "host/wrapper/text_case.h"

namespace fmhost {
namespace {

bool isDateTime(ValueType type) { return type >= ValueType::date; }

// What is not there counts 0. Nothing for "?".
std::optional<Decimal> counted(const Value& value) {
  const Number& number = value.asNumber();
  if (number.presence == Presence::invalid) return std::nullopt;
  return number.presence == Presence::present ? number.value : Decimal();
}

template <class Operation>
Value calculated(const Value& left, const Value& right, Operation operation) {
  const auto a = counted(left);
  const auto b = counted(right);
  if (!a || !b) return Value::ofInvalid(ValueType::number);
  const std::optional<Decimal> result = operation(*a, *b);
  return result ? Value::ofNumber(*result) : Value::ofInvalid(ValueType::number);
}

Value sum(const Value& left, const Value& right) {
  const Value total = calculated(left, right, [](const Decimal& a, const Decimal& b) { return a + b; });
  const ValueType type = isDateTime(left.type()) ? left.type() : right.type();
  return isDateTime(type) ? total.converted(type) : total;
}

// Two dates, or two timestamps, are so many days or seconds apart; the difference of two times is a time.
Value difference(const Value& left, const Value& right) {
  const Value rest = calculated(left, right, [](const Decimal& a, const Decimal& b) { return a - b; });
  const bool isDistance = isDateTime(right.type()) && right.type() != ValueType::time;
  const ValueType type = isDateTime(left.type()) ? left.type() : right.type();
  return isDateTime(type) && !isDistance ? rest.converted(type) : rest;
}

Value product(const Value& left, const Value& right) {
  return calculated(left, right, [](const Decimal& a, const Decimal& b) { return a * b; });
}

Value ratio(const Value& left, const Value& right) { return calculated(left, right, Decimal::quotient); }

Value power(const Value& left, const Value& right) { return calculated(left, right, Decimal::power); }

Value concatenation(const Value& left, const Value& right) {
  return Value::ofText(left.asText() + right.asText());
}

// Whether the text is a number from end to end, as typed for comparing with one.
bool isPlainNumber(std::u16string_view text) {
  const auto rest = text.substr(text.starts_with(u'-') ? 1 : 0);
  return rest.find_first_of(u"0123456789") != std::u16string_view::npos &&
         rest.find_first_not_of(u"0123456789.") == std::u16string_view::npos &&
         std::ranges::count(rest, u'.') <= 1;
}

// A value next to one of another type, when it can be taken for one of that type.
std::optional<Value> takenFor(ValueType type, const Value& value) {
  const bool isMidnight = value.type() == ValueType::date && type == ValueType::timestamp;
  if (isMidnight) return value.converted(type);
  if (value.type() != ValueType::text) return value;
  if (type == ValueType::number && !isPlainNumber(value.asText())) return std::nullopt;
  Value taken = value.converted(type);
  if (taken.asNumber().presence != Presence::present) return std::nullopt;
  return taken;
}

std::strong_ordering compared(const Value& left, const Value& right) {
  const bool hasText = left.type() == ValueType::text || right.type() == ValueType::text;
  const bool sameType = left.type() == right.type();
  if (!(hasText && sameType) && !left.isEmpty() && !right.isEmpty()) {
    const auto a = takenFor(right.type(), left);
    const auto b = takenFor(left.type(), right);
    if (a && b && a->asNumber().presence == Presence::present &&
        b->asNumber().presence == Presence::present) {
      return a->asNumber().value <=> b->asNumber().value;
    }
  }
  return compareIgnoringCase(left.asText(), right.asText());
}

struct Row {
  char16_t symbol;
  BinaryOperation operation;
};
constexpr Row kOperations[] = {
    {u'+', sum},
    {u'-', difference},
    {u'*', product},
    {u'/', ratio},
    {u'^', power},
    {u'&', concatenation},
    {u'=', [](const Value& a, const Value& b) { return Value::ofBoolean(std::is_eq(compared(a, b))); }},
    {u'≠', [](const Value& a, const Value& b) { return Value::ofBoolean(std::is_neq(compared(a, b))); }},
    {u'<', [](const Value& a, const Value& b) { return Value::ofBoolean(std::is_lt(compared(a, b))); }},
    {u'≤', [](const Value& a, const Value& b) { return Value::ofBoolean(std::is_lteq(compared(a, b))); }},
    {u'>', [](const Value& a, const Value& b) { return Value::ofBoolean(std::is_gt(compared(a, b))); }},
    {u'≥', [](const Value& a, const Value& b) { return Value::ofBoolean(std::is_gteq(compared(a, b))); }}};

}  // namespace

BinaryOperation binaryOperation(char16_t symbol) {
  const auto* const row = std::ranges::find(kOperations, symbol, &Row::symbol);
  return row == std::end(kOperations) ? nullptr : row->operation;
}

Value negated(const Value& value) {
  const Value opposite = difference(Value::ofNumber(Decimal()), Value::ofNumber(value.asNumber()));
  return value.type() == ValueType::time ? opposite.converted(ValueType::time) : opposite;
}

}  // namespace fmhost
