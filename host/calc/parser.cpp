#include "host/calc/parser.h"

#include <algorithm>
#include <iterator>

#include "foundation/text.h"
#include "host/wrapper/text_case.h"

namespace fmhost {
namespace {

// Far above what is written and below what the stack holds. A pair of parentheses takes two.
constexpr int kMostDepth = 400;

// From loosest to tightest.
constexpr std::u16string_view kBinaryLevels[] = {u"=≠<>≤≥", u"&", u"+-", u"*/", u"^"};

Text lowered(Text name) {
  makeLowerCase(name);
  return name;
}

struct Question {
  std::string_view name;
  Inquiry::Answer answer;
};

DateTime today() {
  DateTime moment = currentTimestamp();
  moment.microseconds = 0;
  return moment;
}

constexpr Question kQuestions[] = {
    {"currentdate", [](const Surroundings&) { return Value::ofDateTime(ValueType::date, today()); }},
    {"currenttime",
     [](const Surroundings&) {
       return Value::ofDateTime(ValueType::time, timeFromMicroseconds(currentTimestamp().microseconds));
     }},
    {"currenttimestamp",
     [](const Surroundings&) { return Value::ofDateTime(ValueType::timestamp, currentTimestamp()); }},
    {"scriptparameter", [](const Surroundings& surroundings) { return surroundings.scriptParameter(); }},
};

template <class Chain>
ExpressionPtr chained(ExpressionPtr first, std::vector<typename Chain::Link> links) {
  if (links.empty()) return first;
  return std::make_unique<Chain>(std::move(first), std::move(links));
}

class Nesting {
 public:
  explicit Nesting(int& depth) : depth_(depth) { ++depth_; }
  ~Nesting() { --depth_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  int& depth_;
};

}  // namespace

Parser::Parser(std::u16string_view calculation, const Surroundings& surroundings)
    : text_(calculation), surroundings_(surroundings), lexer_(calculation) {
  advance();
}

ExpressionPtr Parser::parseCalculation() {
  if (token_.kind == Token::Kind::end) throw CalculationError("There is nothing to calculate");
  ExpressionPtr whole = expression();
  if (token_.kind != Token::Kind::end) failAtToken();
  return whole;
}

ExpressionPtr Parser::expression() {
  const Nesting nesting(depth_);
  if (depth_ > kMostDepth) fail("this is nested too deeply", token_.position);
  return exclusiveOrDisjunction();
}

ExpressionPtr Parser::exclusiveOrDisjunction() {
  ExpressionPtr first = conjunction();
  std::vector<LogicalChain::Link> links;
  while (atWord("or") || atWord("xor")) {
    const auto kind = atWord("or") ? LogicalChain::Kind::disjunction : LogicalChain::Kind::exclusive;
    advance();
    links.emplace_back().kind = kind;
    links.back().operand = conjunction();
  }
  return chained<LogicalChain>(std::move(first), std::move(links));
}

ExpressionPtr Parser::conjunction() {
  ExpressionPtr first = binary(0);
  std::vector<LogicalChain::Link> links;
  while (atWord("and")) {
    advance();
    links.emplace_back().kind = LogicalChain::Kind::conjunction;
    links.back().operand = binary(0);
  }
  return chained<LogicalChain>(std::move(first), std::move(links));
}

ExpressionPtr Parser::binary(std::size_t level) {
  if (level == std::size(kBinaryLevels)) return unary();
  ExpressionPtr first = binary(level + 1);
  std::vector<BinaryChain::Link> links;
  while (token_.kind == Token::Kind::symbol && isOneOf(token_.symbol, kBinaryLevels[level])) {
    const BinaryOperation operation = binaryOperation(token_.symbol);
    advance();
    links.emplace_back().operation = operation;
    links.back().operand = binary(level + 1);
  }
  return chained<BinaryChain>(std::move(first), std::move(links));
}

// Signs and not bind tighter than every operator of two operands.
ExpressionPtr Parser::unary() {
  const Nesting nesting(depth_);
  if (depth_ > kMostDepth) fail("this is nested too deeply", token_.position);
  if (take(u'-')) return std::make_unique<Negation>(unary());
  if (take(u'+')) return unary();
  if (atWord("not")) {
    advance();
    return std::make_unique<LogicalNot>(unary());
  }
  return primary();
}

ExpressionPtr Parser::primary() {
  if (take(u'(')) {
    ExpressionPtr inner = expression();
    expect(u')');
    return inner;
  }
  const Token literal = token_;
  switch (literal.kind) {
    case Token::Kind::number:
      advance();
      return std::make_unique<Literal>(Value::ofNumber(*Decimal::fromText(literal.text)));
    case Token::Kind::text:
      advance();
      return std::make_unique<Literal>(Value::ofText(literal.text));
    case Token::Kind::variable:
      advance();
      return std::make_unique<VariableReference>(lowered(literal.text));
    case Token::Kind::name:
      return nameOrCall();
    default:
      failAtToken();
  }
}

ExpressionPtr Parser::nameOrCall() {
  const Token name = token_;
  const Text lowerName = lowered(name.text);
  advance();
  const bool isCall = token_.is(u'(');
  if (!isCall && names_.contains(lowerName)) return std::make_unique<NameReference>(lowerName);
  if (isCall) {
    if (lowerName == u"let") return let();
    if (lowerName == u"if" || lowerName == u"case") return choice(name);
    if (lowerName == u"while") return whileLoop();
    if (lowerName == u"get") return inquiry();
  }
  if (const Builtin* builtin = builtinNamed(name.text)) return builtinCall(*builtin, name);
  if (const Registration* external = surroundings_.externalFunction(name.text)) {
    return externalCall(*external, name);
  }
  const std::string typed = foundation::utf8FromUtf16(name.text);
  fail(isCall ? "there is no function " + typed : "nothing has the name " + typed, name.position);
}

ExpressionPtr Parser::builtinCall(const Builtin& function, const Token& name) {
  std::vector<ExpressionPtr> arguments = optionalArguments();
  checkCount(name, arguments.size(), function.fewestArguments, function.mostArguments);
  return std::make_unique<BuiltinCall>(function, std::move(arguments));
}

ExpressionPtr Parser::externalCall(const Registration& function, const Token& name) {
  std::vector<ExpressionPtr> arguments = optionalArguments();
  checkCount(name, arguments.size(), function.fewestArguments, function.mostArguments);
  return std::make_unique<ExternalCall>(function, std::move(arguments));
}

ExpressionPtr Parser::let() {
  expect(u'(');
  const std::set<Text> outerNames = names_;
  Definitions defined = definitions();
  expect(u';');
  ExpressionPtr result = expression();
  expect(u')');
  names_ = outerNames;
  return std::make_unique<Let>(std::move(defined), std::move(result));
}

ExpressionPtr Parser::choice(const Token& name) {
  std::vector<ExpressionPtr> branches = optionalArguments();
  const bool isIf = lowered(name.text) == u"if";
  checkCount(name, branches.size(), 2, isIf ? 3 : -1);
  return std::make_unique<Choice>(std::move(branches));
}

ExpressionPtr Parser::whileLoop() {
  expect(u'(');
  const std::set<Text> outerNames = names_;
  Definitions start = definitions();
  expect(u';');
  ExpressionPtr condition = expression();
  expect(u';');
  Definitions step = definitions();
  expect(u';');
  ExpressionPtr result = expression();
  expect(u')');
  names_ = outerNames;
  return std::make_unique<While>(std::move(start), std::move(condition), std::move(step), std::move(result));
}

ExpressionPtr Parser::inquiry() {
  expect(u'(');
  const auto* const question =
      std::ranges::find_if(kQuestions, [this](const Question& row) { return atWord(row.name); });
  if (question == std::end(kQuestions)) fail("Get ( ) does not know this", token_.position);
  advance();
  expect(u')');
  return std::make_unique<Inquiry>(question->answer);
}

Definitions Parser::definitions() {
  Definitions all;
  if (!take(u'[')) {
    all.push_back(definition());
    return all;
  }
  while (!token_.is(u']')) {
    all.push_back(definition());
    if (!take(u';')) break;
  }
  expect(u']');
  return all;
}

Definition Parser::definition() {
  const Token name = token_;
  if (name.kind != Token::Kind::name && name.kind != Token::Kind::variable) failAtToken();
  advance();
  expect(u'=');
  Text lowerName = lowered(name.text);
  ExpressionPtr value = expression();
  if (name.kind == Token::Kind::name) names_.insert(lowerName);
  return {std::move(lowerName), std::move(value)};
}

std::vector<ExpressionPtr> Parser::optionalArguments() {
  std::vector<ExpressionPtr> arguments;
  if (!take(u'(')) return arguments;
  if (take(u')')) return arguments;
  do {
    argument(arguments);
  } while (take(u';'));
  expect(u')');
  return arguments;
}

void Parser::argument(std::vector<ExpressionPtr>& arguments) {
  if (!take(u'[')) {
    arguments.push_back(expression());
    return;
  }
  do {
    arguments.push_back(expression());
  } while (take(u';'));
  expect(u']');
}

void Parser::checkCount(const Token& name, std::size_t given, int fewest, int most) const {
  const auto count = static_cast<int>(given);
  if (count >= fewest && (most == -1 || count <= most)) return;
  std::string wanted = std::to_string(fewest);
  if (most == -1) wanted += " or more";
  if (most > fewest) wanted += " to " + std::to_string(most);
  fail(foundation::utf8FromUtf16(name.text) + " takes " + wanted +
           (wanted == "1" ? " argument, not " : " arguments, not ") + std::to_string(count),
       name.position);
}

bool Parser::take(char16_t symbol) {
  if (!token_.is(symbol)) return false;
  advance();
  return true;
}

void Parser::expect(char16_t symbol) {
  if (take(symbol)) return;
  const std::string wanted = foundation::utf8FromUtf16(std::u16string(1, symbol));
  fail(wanted + " is missing" + (token_.kind == Token::Kind::end ? " at the end" : " here"), token_.position);
}

bool Parser::atWord(std::string_view lowerCaseWord) const {
  return token_.kind == Token::Kind::name && lowered(token_.text) == widened(lowerCaseWord);
}

void Parser::fail(const std::string& reason, std::size_t position) const {
  throw CalculationError(placeIn(text_, position) + ": " + reason);
}

void Parser::failAtToken() const {
  if (token_.kind == Token::Kind::end) fail("the calculation ends too early", token_.position);
  fail("this is out of place", token_.position);
}

Calculation::Calculation(std::u16string_view text, const Surroundings& surroundings)
    : root_(Parser(text, surroundings).parseCalculation()) {}

Value Calculation::evaluate(Surroundings& surroundings) const {
  Evaluation evaluation{surroundings, {}};
  return root_->evaluate(evaluation);
}

}  // namespace fmhost
