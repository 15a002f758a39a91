#include "host/calc/lexer.h"

#include <algorithm>

namespace fmhost {
namespace {

constexpr char16_t kPilcrow = u'¶';
constexpr std::u16string_view kSymbols = u"()[];,&+-*/^=<>≠≤≥×÷¶";
constexpr std::u16string_view kBlanks = u" \t\r\n\u00A0\uFEFF";
constexpr std::u16string_view kPunctuationInNames = u"_.#@~";

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

bool isLetter(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

bool belongsToName(char16_t c) {
  if (c < 0x80) return isLetter(c) || isDigit(c) || isOneOf(c, kPunctuationInNames);
  return !isOneOf(c, kSymbols) && !isOneOf(c, kBlanks);
}

struct Spelling {
  std::u16string_view written;
  char16_t symbol;
};
constexpr Spelling kOtherSpellings[] = {{u"<>", u'≠'}, {u"<=", u'≤'}, {u">=", u'≥'},
                                        {u"×", u'*'},  {u"÷", u'/'},  {u",", u';'}};

}  // namespace

Token Lexer::next() {
  skipBlanksAndComments();
  if (position_ >= text_.size()) return {.position = text_.size()};
  const char16_t c = at(position_);
  if (c == u'"') return textLiteral();
  if (isDigit(c) || (c == u'.' && isDigit(at(position_ + 1)))) return number();
  if (c == u'$' || belongsToName(c)) return name();
  return symbol();
}

void Lexer::skipBlanksAndComments() {
  while (position_ < text_.size()) {
    const std::u16string_view rest = text_.substr(position_);
    if (isOneOf(rest.front(), kBlanks)) {
      ++position_;
    } else if (rest.starts_with(u"//")) {
      position_ = std::min(text_.find_first_of(u"\r\n", position_), text_.size());
    } else if (rest.starts_with(u"/*")) {
      const std::size_t end = text_.find(u"*/", position_ + 2);
      if (end == std::u16string_view::npos) {
        throw CalculationError(placeIn(text_, position_) + ": the comment has no end");
      }
      position_ = end + 2;
    } else {
      return;
    }
  }
}

Token Lexer::textLiteral() {
  Token token{.kind = Token::Kind::text, .position = position_};
  for (std::size_t i = position_ + 1; i < text_.size(); ++i) {
    const char16_t c = text_[i];
    const char16_t following = at(i + 1);
    if (c == u'"') {
      position_ = i + 1;
      return token;
    }
    if (c == u'\\' && (following == u'"' || following == u'\\' || following == kPilcrow)) {
      token.text += following;
      ++i;
    } else if (c == u'\r' && following == u'\n') {
      continue;
    } else {
      token.text += c == kPilcrow || c == u'\n' ? u'\r' : c;
    }
  }
  throw CalculationError(placeIn(text_, token.position) + ": the text has no closing quotation mark");
}

Token Lexer::number() {
  const std::size_t start = position_;
  const auto skipDigits = [&] {
    while (isDigit(at(position_))) ++position_;
  };
  skipDigits();
  if (at(position_) == u'.') ++position_;
  skipDigits();
  if (at(position_) == u'e' || at(position_) == u'E') {
    const bool isSigned = at(position_ + 1) == u'-' || at(position_ + 1) == u'+';
    const std::size_t digits = position_ + (isSigned ? 2 : 1);
    if (isDigit(at(digits))) {
      position_ = digits;
      skipDigits();
    }
  }
  return {
      .kind = Token::Kind::number, .text = Text(text_.substr(start, position_ - start)), .position = start};
}

Token Lexer::name() {
  const std::size_t start = position_;
  while (at(position_) == u'$' && position_ - start < 2) ++position_;
  const bool isVariable = position_ > start;
  const std::size_t firstLetter = position_;
  while (belongsToName(at(position_))) ++position_;
  if (position_ == firstLetter) throw CalculationError(placeIn(text_, start) + ": a variable has no name");
  return {.kind = isVariable ? Token::Kind::variable : Token::Kind::name,
          .text = Text(text_.substr(start, position_ - start)),
          .position = start};
}

Token Lexer::symbol() {
  Token token{.kind = Token::Kind::symbol, .symbol = text_[position_], .position = position_};
  std::size_t length = 1;
  for (const auto& [written, symbol] : kOtherSpellings) {
    if (!text_.substr(position_).starts_with(written)) continue;
    token.symbol = symbol;
    length = written.size();
    break;
  }
  if (!isOneOf(token.symbol, kSymbols)) {
    throw CalculationError(placeIn(text_, position_) + ": this character means nothing here");
  }
  position_ += length;
  if (token.symbol == kPilcrow) return {.kind = Token::Kind::text, .text = u"\r", .position = token.position};
  return token;
}

std::string placeIn(std::u16string_view calculation, std::size_t position) {
  const std::u16string_view before = calculation.substr(0, position);
  const auto isLineEnd = [&](std::size_t i) {
    return before[i] == u'\n' || (before[i] == u'\r' && calculation.substr(i, 2) != u"\r\n");
  };
  std::size_t line = 1;
  std::size_t lineStart = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (!isLineEnd(i)) continue;
    ++line;
    lineStart = i + 1;
  }
  const std::string character = "character " + std::to_string(position - lineStart + 1);
  if (calculation.find_first_of(u"\r\n") == std::u16string_view::npos) return "C" + character.substr(1);
  return "Line " + std::to_string(line) + ", " + character;
}

}  // namespace fmhost
