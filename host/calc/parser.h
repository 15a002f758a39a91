// Reads a calculation by recursive descent.
#pragma once

#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "host/calc/nodes.h"

namespace fmhost {

class Parser {
 public:
  Parser(std::u16string_view calculation, const Surroundings& surroundings);

  // The whole text. Throws CalculationError.
  ExpressionPtr parseCalculation();

 private:
  ExpressionPtr expression();
  ExpressionPtr exclusiveOrDisjunction();
  ExpressionPtr conjunction();
  ExpressionPtr binary(std::size_t level);
  ExpressionPtr unary();
  ExpressionPtr primary();
  ExpressionPtr nameOrCall();
  ExpressionPtr builtinCall(const Builtin& function, const Token& name);
  ExpressionPtr externalCall(const Registration& function, const Token& name);

  ExpressionPtr let();
  ExpressionPtr choice(const Token& name);
  ExpressionPtr whileLoop();
  ExpressionPtr inquiry();
  // One definition, or several in brackets. Their names are known from then on.
  Definitions definitions();
  Definition definition();

  // What stands in the parentheses, which may be left out when nothing does. Brackets may group arguments.
  std::vector<ExpressionPtr> optionalArguments();
  void argument(std::vector<ExpressionPtr>& arguments);
  void checkCount(const Token& name, std::size_t given, int fewest, int most) const;

  void advance() { token_ = lexer_.next(); }
  bool take(char16_t symbol);
  void expect(char16_t symbol);
  bool atWord(std::string_view lowerCaseWord) const;
  [[noreturn]] void fail(const std::string& reason, std::size_t position) const;
  [[noreturn]] void failAtToken() const;

  std::u16string_view text_;
  const Surroundings& surroundings_;
  Lexer lexer_;
  Token token_;
  std::set<Text> names_;  // of the Lets and Whiles around, in lower case
  int depth_ = 0;
};

}  // namespace fmhost
