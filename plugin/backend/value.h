// What passes between the functions and the backend.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "foundation/date.h"

namespace zuno {

using foundation::Date;

// A text that a caller may leave out. Borrowed for the call.
using TextArgument = std::optional<std::string_view>;

// A property's value: none, a text, or a date. A date reads as text in the default time zone, in the form
// "2024-05-01 09:00:00 +0200".
using Value = std::variant<std::monostate, std::string, Date>;

Value valueOf(std::optional<std::string> text);
Value valueOf(std::optional<Date> date);
// "True" or "False".
Value truthValue(bool truth);

// As text, dates in the form above; nothing for no value.
std::optional<std::string> textOf(const Value& value);
// The text of a value that is one, without the detour for dates.
TextArgument plainTextOf(const Value& value);
std::optional<std::string> owned(TextArgument text);
std::optional<Date> dateOf(const Value& value);

}  // namespace zuno
