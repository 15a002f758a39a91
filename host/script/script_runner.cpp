#include "host/script/script_runner.h"

#include "host/output.h"

namespace fmhost {
namespace {

Value valueOf(const Operand& operand, Session& session) {
  if (!operand.calculation) return operand.constant;
  Value value = session.evaluate(*operand.calculation);
  const bool convert = operand.type != ValueType::untouched && operand.type != value.type();
  return convert ? value.converted(operand.type) : value;
}

Arguments valuesOf(const std::vector<Operand>& operands, Session& session) {
  Arguments values;
  values.reserve(operands.size());
  for (const Operand& operand : operands) values.push_back(valueOf(operand, session));
  return values;
}

class Runner {
 public:
  Runner(const Script& script, Session& session, const ShowDialog& showDialog)
      : script_(script), session_(session), showDialog_(showDialog) {}

  Value run() {
    while (next_ < script_.steps.size()) {
      const ScriptStep& step = script_.steps[next_++];
      try {
        perform(step);
      } catch (const CalculationError& fault) {
        throw ScriptError(script_.name, step.line, fault.what());
      }
    }
    return result_;
  }

 private:
  void perform(const ScriptStep& step) {
    switch (step.kind) {
      case ScriptStep::Kind::setVariable:
        session_.setVariable(step.target, valueOf(step.operands[0], session_));
        break;
      case ScriptStep::Kind::jumpUnless:
        if (!valueOf(step.operands[0], session_).asBoolean()) next_ = step.jump;
        break;
      case ScriptStep::Kind::jumpIf:
        if (valueOf(step.operands[0], session_).asBoolean()) next_ = step.jump;
        break;
      case ScriptStep::Kind::jump:
        next_ = step.jump;
        break;
      case ScriptStep::Kind::exit:
        if (!step.operands.empty()) result_ = valueOf(step.operands[0], session_);
        next_ = script_.steps.size();
        break;
      case ScriptStep::Kind::showDialog:
        show(step);
        break;
      case ScriptStep::Kind::external:
        callExternal(step);
        break;
    }
  }

  void show(const ScriptStep& step) {
    const std::string title = shown(valueOf(step.operands[0], session_));
    showDialog_(title, step.operands.size() > 1 ? shown(valueOf(step.operands[1], session_)) : "");
  }

  void callExternal(const ScriptStep& step) {
    Value result = session_.call(*step.function, valuesOf(step.operands, session_));
    if (!step.target.empty()) session_.setVariable(step.target, std::move(result));
  }

  const Script& script_;
  Session& session_;
  const ShowDialog& showDialog_;
  std::size_t next_ = 0;
  Value result_ = Value::ofText({});
};

}  // namespace

Value runScript(const Script& script, Session& session, Value parameter, const ShowDialog& showDialog) {
  const Session::Script scope(session, std::move(parameter));
  return Runner(script, session, showDialog).run();
}

}  // namespace fmhost
