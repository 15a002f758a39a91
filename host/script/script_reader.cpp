#include <algorithm>
#include <iterator>
#include <set>

#include "foundation/text.h"
#include "host/script/script.h"
#include "host/script/script_lines.h"
#include "host/wrapper/text_case.h"

namespace fmhost {
namespace {

constexpr std::size_t kNoStep = static_cast<std::size_t>(-1);

bool sameWord(std::u16string_view a, std::u16string_view b) { return std::is_eq(compareIgnoringCase(a, b)); }

// What follows "Label:", or nothing when the parameter has another label, or none.
std::optional<std::u16string_view> labelled(std::u16string_view parameter, std::u16string_view label) {
  if (!sameWord(parameter.substr(0, label.size()), label)) return std::nullopt;
  const std::u16string_view rest = withoutBlanks(parameter.substr(label.size()));
  if (!rest.starts_with(u':')) return std::nullopt;
  return withoutBlanks(rest.substr(1));
}

struct Word {
  std::u16string_view written;
  int value;
};
constexpr Word kFlagWords[] = {{u"on", 1}, {u"off", 0}, {u"true", 1}, {u"false", 0}, {u"1", 1}, {u"0", 0}};

class Reader {
 public:
  Reader(const std::string& name, const Surroundings& surroundings) : surroundings_(surroundings) {
    script_.name = name;
  }

  Script read(std::u16string_view text) {
    for (ScriptLine& line : scriptLines(script_.name, text)) {
      line_ = std::move(line);
      readStep();
    }
    if (!blocks_.empty()) {
      line_.number = blocks_.back().line;
      fail(blocks_.back().isLoop ? "this Loop has no End Loop" : "this If has no End If");
    }
    return std::move(script_);
  }

 private:
  struct Block {
    bool isLoop = false;
    std::size_t line = 0;
    std::size_t start = 0;
    std::size_t openTest = kNoStep;   // an If's or Else If's, which goes on behind its branch
    std::vector<std::size_t> leaves;  // the steps that go on behind the block
  };
  struct BuiltinStep {
    std::u16string_view name;
    void (Reader::*read)();
  };

  void readStep() {
    static constexpr BuiltinStep kSteps[] = {{u"Set Variable", &Reader::setVariable},
                                             {u"If", &Reader::beginIf},
                                             {u"Else If", &Reader::elseIf},
                                             {u"Else", &Reader::otherwise},
                                             {u"End If", &Reader::endIf},
                                             {u"Loop", &Reader::beginLoop},
                                             {u"Exit Loop If", &Reader::exitLoopIf},
                                             {u"End Loop", &Reader::endLoop},
                                             {u"Exit Script", &Reader::exitScript},
                                             {u"Show Custom Dialog", &Reader::showDialog}};
    const auto* const known = std::ranges::find_if(
        kSteps, [this](const BuiltinStep& step) { return sameWord(step.name, line_.name); });
    if (known != std::end(kSteps)) return (this->*known->read)();
    const Registration* const external = surroundings_.externalStep(line_.name);
    if (external == nullptr) fail("there is no script step " + foundation::utf8FromUtf16(line_.name));
    externalStep(*external);
  }

  void setVariable() {
    if (line_.parameters.size() != 2) fail("Set Variable needs a variable and a value");
    const auto value = labelled(line_.parameters[1], u"Value");
    if (!value) fail("Set Variable needs \"Value:\" before the value");
    ScriptStep& step = add(ScriptStep::Kind::setVariable);
    step.target = variableName(line_.parameters[0]);
    step.operands.push_back(calculated(*value));
  }

  void beginIf() {
    const std::size_t test = addTest(ScriptStep::Kind::jumpUnless);
    blocks_.push_back({.line = line_.number, .start = test, .openTest = test});
  }

  void elseIf() {
    endBranch();
    blocks_.back().openTest = addTest(ScriptStep::Kind::jumpUnless);
  }

  void otherwise() { endBranch(); }

  void endIf() {
    Block& block = innermost(false, "End If without an If");
    if (block.openTest != kNoStep) block.leaves.push_back(block.openTest);
    closeBlock();
  }

  void beginLoop() {
    blocks_.push_back({.isLoop = true, .line = line_.number, .start = script_.steps.size()});
  }

  void exitLoopIf() {
    const auto loop = std::find_if(blocks_.rbegin(), blocks_.rend(), [](const Block& b) { return b.isLoop; });
    if (loop == blocks_.rend()) fail("Exit Loop If outside a Loop");
    loop->leaves.push_back(addTest(ScriptStep::Kind::jumpIf));
  }

  void endLoop() {
    const Block& block = innermost(true, "End Loop without a Loop");
    add(ScriptStep::Kind::jump).jump = block.start;
    closeBlock();
  }

  void exitScript() {
    if (line_.parameters.size() > 1) fail("Exit Script takes one result");
    std::optional<Operand> result;
    if (!line_.parameters.empty()) {
      const std::u16string& parameter = line_.parameters.front();
      const auto text = labelled(parameter, u"Text Result");
      const auto value = text ? text : labelled(parameter, u"Result");
      if (!value) fail("Exit Script needs \"Text Result:\" before the result");
      if (!value->empty()) result = calculated(*value);
    }
    ScriptStep& step = add(ScriptStep::Kind::exit);
    if (result) step.operands.push_back(std::move(*result));
  }

  void showDialog() {
    if (line_.parameters.empty() || line_.parameters.size() > 2) {
      fail("Show Custom Dialog takes a title and a message");
    }
    std::vector<Operand> texts;
    for (std::size_t i = 0; i < line_.parameters.size(); ++i) {
      const std::u16string& parameter = line_.parameters[i];
      texts.push_back(calculated(labelled(parameter, i == 0 ? u"Title" : u"Message").value_or(parameter)));
    }
    add(ScriptStep::Kind::showDialog).operands = std::move(texts);
  }

  void externalStep(const Registration& external) {
    const StepDefinition definition = definitionOf(external);
    ScriptStep step{.kind = ScriptStep::Kind::external, .line = line_.number, .function = &external};
    step.operands.resize(definition.argumentCount());
    for (const StepParameter& parameter : definition.parameters) {
      if (parameter.kind == StepParameter::Kind::calculation) continue;
      step.operands[static_cast<std::size_t>(parameter.id)].constant = number(parameter.defaultId);
    }
    std::set<std::u16string> given;
    for (const std::u16string& written : line_.parameters) {
      const std::u16string label = readParameter(definition, written, step);
      if (!given.insert(label).second) fail(foundation::utf8FromUtf16(label) + " is given twice");
    }
    script_.steps.push_back(std::move(step));
  }

  // Returns the parameter's label.
  std::u16string readParameter(const StepDefinition& definition, std::u16string_view written,
                               ScriptStep& step) {
    if (definition.hasTarget) {
      if (const auto target = labelled(written, definition.targetLabel)) {
        step.target = variableName(*target);
        return definition.targetLabel;
      }
    }
    for (const StepParameter& parameter : definition.parameters) {
      const auto value = labelled(written, parameter.label);
      if (!value) continue;
      if (!value->empty()) step.operands[static_cast<std::size_t>(parameter.id)] = operand(parameter, *value);
      return parameter.label;
    }
    fail(foundation::utf8FromUtf16(line_.name) + " has no parameter for \"" +
         foundation::utf8FromUtf16(written) + "\"");
  }

  Operand operand(const StepParameter& parameter, std::u16string_view written) const {
    if (parameter.kind == StepParameter::Kind::calculation) {
      Operand value = calculated(written);
      value.type = parameter.type;
      return value;
    }
    const std::string unknown = foundation::utf8FromUtf16(parameter.label) + " cannot be \"" +
                                foundation::utf8FromUtf16(written) + "\"";
    if (parameter.kind == StepParameter::Kind::flag) {
      const auto* const word = std::ranges::find_if(
          kFlagWords, [written](const Word& candidate) { return sameWord(candidate.written, written); });
      if (word == std::end(kFlagWords)) fail(unknown);
      return {.constant = number(word->value)};
    }
    const auto option = std::ranges::find_if(
        parameter.options,
        [written](const StepParameter::Option& candidate) { return sameWord(candidate.label, written); });
    if (option == parameter.options.end()) fail(unknown);
    return {.constant = number(option->id)};
  }

  StepDefinition definitionOf(const Registration& external) const {
    try {
      return readStepDefinition(external.definition);
    } catch (const std::invalid_argument& fault) {
      fail("the step cannot be used: " + std::string(fault.what()));
    }
  }

  static Value number(int n) { return Value::ofNumber(Decimal(n)); }

  ScriptStep& add(ScriptStep::Kind kind) {
    return script_.steps.emplace_back(ScriptStep{.kind = kind, .line = line_.number});
  }

  std::size_t addTest(ScriptStep::Kind kind) {
    if (line_.parameters.size() != 1) fail(foundation::utf8FromUtf16(line_.name) + " needs one calculation");
    Operand test = calculated(line_.parameters.front());
    add(kind).operands.push_back(std::move(test));
    return script_.steps.size() - 1;
  }

  // Before an Else If or an Else: the branch above it goes on behind the block, its test goes on here.
  void endBranch() {
    Block& block = innermost(false, foundation::utf8FromUtf16(line_.name) + " without an If");
    if (block.openTest == kNoStep) fail(foundation::utf8FromUtf16(line_.name) + " after an Else");
    add(ScriptStep::Kind::jump);
    block.leaves.push_back(script_.steps.size() - 1);
    script_.steps[block.openTest].jump = script_.steps.size();
    block.openTest = kNoStep;
  }

  Block& innermost(bool isLoop, const std::string& otherwise) {
    if (blocks_.empty() || blocks_.back().isLoop != isLoop) fail(otherwise);
    return blocks_.back();
  }

  void closeBlock() {
    for (const std::size_t step : blocks_.back().leaves) script_.steps[step].jump = script_.steps.size();
    blocks_.pop_back();
  }

  Operand calculated(std::u16string_view text) const {
    try {
      return {.calculation = Calculation(text, surroundings_)};
    } catch (const CalculationError& fault) {
      fail(fault.what());
    }
  }

  Text variableName(std::u16string_view written) const {
    Lexer lexer(written);
    const Token token = lexer.next();
    if (token.kind != Token::Kind::variable || lexer.next().kind != Token::Kind::end) {
      fail("\"" + foundation::utf8FromUtf16(written) + "\" is no variable");
    }
    Text name = token.text;
    makeLowerCase(name);
    return name;
  }

  [[noreturn]] void fail(const std::string& reason) const {
    throw ScriptError(script_.name, line_.number, reason);
  }

  const Surroundings& surroundings_;
  Script script_;
  ScriptLine line_;
  std::vector<Block> blocks_;
};

}  // namespace

Script readScript(const std::string& name, std::u16string_view text, const Surroundings& surroundings) {
  return Reader(name, surroundings).read(text);
}

}  // namespace fmhost
