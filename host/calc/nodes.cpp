#include "host/calc/nodes.h"

#include <algorithm>
#include <ranges>

namespace fmhost {
namespace {

std::vector<Value> evaluateAll(const std::vector<ExpressionPtr>& expressions, Evaluation& evaluation) {
  std::vector<Value> values;
  values.reserve(expressions.size());
  for (const ExpressionPtr& expression : expressions) values.push_back(expression->evaluate(evaluation));
  return values;
}

// In order: a definition sees the ones before it.
void define(const Definitions& definitions, Evaluation& evaluation) {
  for (const auto& [name, expression] : definitions) {
    Value value = expression->evaluate(evaluation);
    if (name.starts_with(u'$')) {
      evaluation.surroundings.setVariable(name, std::move(value));
    } else {
      evaluation.names.set(name, std::move(value));
    }
  }
}

}  // namespace

const Value* Scopes::find(const Text& name) const {
  const auto found = std::find_if(entries_.rbegin(), entries_.rend(),
                                  [&](const Entry& entry) { return entry.name == name; });
  return found == entries_.rend() ? nullptr : &found->value;
}

void Scopes::set(const Text& name, Value value) {
  const auto first = entries_.begin() + static_cast<std::ptrdiff_t>(start_);
  const auto known =
      std::find_if(first, entries_.end(), [&](const Entry& entry) { return entry.name == name; });
  if (known == entries_.end()) {
    entries_.push_back({name, std::move(value)});
  } else {
    known->value = std::move(value);
  }
}

// A name that While defines in its body is empty before its first turn.
Value NameReference::evaluate(Evaluation& evaluation) const {
  const Value* value = evaluation.names.find(name_);
  return value != nullptr ? *value : Value::ofText({});
}

Value BinaryChain::evaluate(Evaluation& evaluation) const {
  Value value = first_->evaluate(evaluation);
  for (const auto& [operation, operand] : links_) value = operation(value, operand->evaluate(evaluation));
  return value;
}

Value LogicalChain::evaluate(Evaluation& evaluation) const {
  bool truth = first_->evaluate(evaluation).asBoolean();
  for (const auto& [kind, operand] : links_) {
    const bool isDecided = kind == Kind::conjunction ? !truth : kind == Kind::disjunction && truth;
    if (isDecided) continue;
    const bool other = operand->evaluate(evaluation).asBoolean();
    truth = kind == Kind::exclusive ? truth != other : other;
  }
  return Value::ofBoolean(truth);
}

Value BuiltinCall::evaluate(Evaluation& evaluation) const {
  return function_.function(evaluateAll(arguments_, evaluation));
}

Value ExternalCall::evaluate(Evaluation& evaluation) const {
  return evaluation.surroundings.call(function_, evaluateAll(arguments_, evaluation));
}

Value Choice::evaluate(Evaluation& evaluation) const {
  for (std::size_t i = 0; i + 1 < branches_.size(); i += 2) {
    if (branches_[i]->evaluate(evaluation).asBoolean()) return branches_[i + 1]->evaluate(evaluation);
  }
  return branches_.size() % 2 == 1 ? branches_.back()->evaluate(evaluation) : Value::ofText({});
}

Value Let::evaluate(Evaluation& evaluation) const {
  const Scopes::Inner scope(evaluation.names);
  define(definitions_, evaluation);
  return result_->evaluate(evaluation);
}

Value While::evaluate(Evaluation& evaluation) const {
  const Scopes::Inner scope(evaluation.names);
  define(start_, evaluation);
  while (condition_->evaluate(evaluation).asBoolean()) define(step_, evaluation);
  return result_->evaluate(evaluation);
}

}  // namespace fmhost
