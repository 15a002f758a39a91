// Words of FileMaker's calculation language.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "host/wrapper/value.h"

namespace fmhost {

// A calculation that cannot be read or has no answer; the message is for the person who wrote it.
class CalculationError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Token {
  enum class Kind : std::uint8_t { end, number, text, name, variable, symbol };

  Kind kind = Kind::end;
  Text text;                // of a text literal: what it stands for; of a name or variable: the name as typed
  char16_t symbol = u'\0';  // ≠ ≤ ≥ for <> <= >= too, * and / for × and ÷
  std::size_t position = 0;  // of its first unit in the calculation

  bool is(char16_t wanted) const { return kind == Kind::symbol && symbol == wanted; }
};

inline bool isOneOf(char16_t c, std::u16string_view characters) {
  return characters.find(c) != std::u16string_view::npos;
}

class Lexer {
 public:
  explicit Lexer(std::u16string_view calculation) : text_(calculation) {}

  // Skips blanks and comments. At the end it goes on answering with the end.
  Token next();

 private:
  char16_t at(std::size_t position) const { return position < text_.size() ? text_[position] : u'\0'; }
  void skipBlanksAndComments();
  Token textLiteral();
  Token number();
  Token name();
  Token symbol();

  std::u16string_view text_;
  std::size_t position_ = 0;
};

// "Line 2, character 5"; the line is named only where there are several.
std::string placeIn(std::u16string_view calculation, std::size_t position);

}  // namespace fmhost
