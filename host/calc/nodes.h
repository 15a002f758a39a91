// The kinds of expressions that a calculation is made of.
#pragma once

#include <utility>
#include <vector>

#include "host/calc/builtins.h"
#include "host/calc/expression.h"
#include "host/calc/operators.h"

namespace fmhost {

class Literal : public Expression {
 public:
  explicit Literal(Value value) : value_(std::move(value)) {}
  Value evaluate(Evaluation&) const override { return value_; }

 private:
  Value value_;
};

// A name that Let or While defines.
class NameReference : public Expression {
 public:
  explicit NameReference(Text name) : name_(std::move(name)) {}
  Value evaluate(Evaluation& evaluation) const override;

 private:
  Text name_;
};

class VariableReference : public Expression {
 public:
  explicit VariableReference(Text name) : name_(std::move(name)) {}
  Value evaluate(Evaluation& evaluation) const override { return evaluation.surroundings.variable(name_); }

 private:
  Text name_;
};

class Negation : public Expression {
 public:
  explicit Negation(ExpressionPtr operand) : operand_(std::move(operand)) {}
  Value evaluate(Evaluation& evaluation) const override { return negated(operand_->evaluate(evaluation)); }

 private:
  ExpressionPtr operand_;
};

class LogicalNot : public Expression {
 public:
  explicit LogicalNot(ExpressionPtr operand) : operand_(std::move(operand)) {}
  Value evaluate(Evaluation& evaluation) const override {
    return Value::ofBoolean(!operand_->evaluate(evaluation).asBoolean());
  }

 private:
  ExpressionPtr operand_;
};

// Operations of one precedence, from left to right. However many there are, they are not nested.
class BinaryChain : public Expression {
 public:
  struct Link {
    BinaryOperation operation;
    ExpressionPtr operand;
  };

  BinaryChain(ExpressionPtr first, std::vector<Link> links)
      : first_(std::move(first)), links_(std::move(links)) {}
  Value evaluate(Evaluation& evaluation) const override;

 private:
  ExpressionPtr first_;
  std::vector<Link> links_;
};

// The same for truths. Leaves an operand alone once what is before it decides (but for exclusive).
class LogicalChain : public Expression {
 public:
  enum class Kind : std::uint8_t { conjunction, disjunction, exclusive };
  struct Link {
    Kind kind;
    ExpressionPtr operand;
  };

  LogicalChain(ExpressionPtr first, std::vector<Link> links)
      : first_(std::move(first)), links_(std::move(links)) {}
  Value evaluate(Evaluation& evaluation) const override;

 private:
  ExpressionPtr first_;
  std::vector<Link> links_;
};

class BuiltinCall : public Expression {
 public:
  BuiltinCall(const Builtin& function, std::vector<ExpressionPtr> arguments)
      : function_(function), arguments_(std::move(arguments)) {}
  Value evaluate(Evaluation& evaluation) const override;

 private:
  const Builtin& function_;
  std::vector<ExpressionPtr> arguments_;
};

class ExternalCall : public Expression {
 public:
  ExternalCall(const Registration& function, std::vector<ExpressionPtr> arguments)
      : function_(function), arguments_(std::move(arguments)) {}
  Value evaluate(Evaluation& evaluation) const override;

 private:
  const Registration& function_;
  std::vector<ExpressionPtr> arguments_;
};

// What Get ( ) asks for.
class Inquiry : public Expression {
 public:
  using Answer = Value (*)(const Surroundings&);

  explicit Inquiry(Answer answer) : answer_(answer) {}
  Value evaluate(Evaluation& evaluation) const override { return answer_(evaluation.surroundings); }

 private:
  Answer answer_;
};

// Pairs of a test and what it leads to; a lone expression at the end is for when no test holds.
class Choice : public Expression {
 public:
  explicit Choice(std::vector<ExpressionPtr> branches) : branches_(std::move(branches)) {}
  Value evaluate(Evaluation& evaluation) const override;

 private:
  std::vector<ExpressionPtr> branches_;
};

struct Definition {
  Text name;  // with its $ or $$ when it is a variable
  ExpressionPtr expression;
};
using Definitions = std::vector<Definition>;

class Let : public Expression {
 public:
  Let(Definitions definitions, ExpressionPtr result)
      : definitions_(std::move(definitions)), result_(std::move(result)) {}
  Value evaluate(Evaluation& evaluation) const override;

 private:
  Definitions definitions_;
  ExpressionPtr result_;
};

class While : public Expression {
 public:
  While(Definitions start, ExpressionPtr condition, Definitions step, ExpressionPtr result)
      : start_(std::move(start)),
        condition_(std::move(condition)),
        step_(std::move(step)),
        result_(std::move(result)) {}
  Value evaluate(Evaluation& evaluation) const override;

 private:
  Definitions start_;
  ExpressionPtr condition_;
  Definitions step_;
  ExpressionPtr result_;
};

}  // namespace fmhost
