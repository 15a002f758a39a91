// A script, read and checked, ready to run.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/calc/expression.h"
#include "host/script/step_definition.h"

namespace fmhost {

// Names the script, the line and the reason.
class ScriptError : public std::runtime_error {
 public:
  ScriptError(const std::string& script, std::size_t line, const std::string& reason)
      : std::runtime_error(script + ":" + std::to_string(line) + ": " + reason) {}
};

// What a step is given.
struct Operand {
  std::optional<Calculation> calculation;
  Value constant = Value::ofText({});     // where there is no calculation
  ValueType type = ValueType::untouched;  // what a calculated value is passed as; untouched: as it comes
};

struct ScriptStep {
  enum class Kind : std::uint8_t {
    setVariable,
    jumpUnless,  // If, Else If: to `jump` when the test does not hold
    jumpIf,      // Exit Loop If
    jump,        // over an Else, back to the Loop
    exit,
    showDialog,
    external
  };

  Kind kind = Kind::exit;
  std::size_t line = 0;
  std::size_t jump = 0;  // the step to go on with
  std::vector<Operand> operands;
  Text target;  // variable in lower case; empty: the result goes nowhere
  const Registration* function = nullptr;
};

struct Script {
  std::string name;
  std::vector<ScriptStep> steps;
};

// One step a line, as FileMaker prints scripts; a line whose brackets stay open goes on in the next. Throws
// ScriptError.
Script readScript(const std::string& name, std::u16string_view text, const Surroundings& surroundings);

}  // namespace fmhost
