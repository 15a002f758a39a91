#include "plugin/backend/value.h"

#include <utility>

#include "foundation/time_zone.h"

namespace zuno {

Value valueOf(std::optional<std::string> text) { return text ? Value(std::move(*text)) : Value(); }

Value valueOf(std::optional<Date> date) { return date ? Value(*date) : Value(); }

Value borrowed(const std::optional<std::string>& text) { return text ? Value(BorrowedText{*text}) : Value(); }

Value truthValue(bool truth) { return truth ? "True" : "False"; }

std::optional<std::string> textOf(const Value& value) {
  if (const Date* date = std::get_if<Date>(&value))
    return foundation::description(*date, *foundation::TimeZone::defaultZone());
  return owned(plainTextOf(value));
}

TextArgument plainTextOf(const Value& value) {
  if (const BorrowedText* borrowed = std::get_if<BorrowedText>(&value)) return borrowed->text;
  const std::string* text = std::get_if<std::string>(&value);
  return text ? TextArgument(*text) : TextArgument();
}

std::optional<std::string> owned(TextArgument text) {
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

std::optional<Date> dateOf(const Value& value) {
  const Date* date = std::get_if<Date>(&value);
  return date ? std::optional(*date) : std::nullopt;
}

}  // namespace zuno
