// What passes between the functions and the backend.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "foundation/date.h"

namespace zuno {

using foundation::Date;

// A text that a caller may leave out. Borrowed for the call. Two words, so that it passes in registers.
class TextArgument {
 public:
  constexpr TextArgument() = default;
  constexpr TextArgument(std::nullopt_t) {}
  constexpr TextArgument(std::string_view text) : text_(text.data() == nullptr ? "" : text) {}
  constexpr TextArgument(const char* text) : text_(text) {}
  TextArgument(const std::string& text) : text_(text) {}
  TextArgument(const std::optional<std::string>& text) : text_(text ? *text : std::string_view()) {}

  constexpr bool has_value() const { return text_.data() != nullptr; }
  constexpr explicit operator bool() const { return has_value(); }
  constexpr std::string_view operator*() const { return text_; }
  friend constexpr bool operator==(TextArgument text, std::string_view other) {
    return text.has_value() && *text == other;
  }
  constexpr std::string_view value_or(std::string_view other) const { return has_value() ? text_ : other; }

 private:
  std::string_view text_;  // null data for none
};

// A text that lies elsewhere, and stays there for longer than this is used.
struct BorrowedText {
  std::string_view text;
};

// A property's value: none, a text, or a date. A date reads as text in the default time zone, in the form
// "2024-05-01 09:00:00 +0200".
using Value = std::variant<std::monostate, std::string, BorrowedText, Date>;

Value valueOf(std::optional<std::string> text);
Value borrowed(const std::optional<std::string>& text);
Value borrowed(std::optional<std::string>&&) = delete;
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
