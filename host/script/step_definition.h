// A plug-in step's parameters, read from the definition that it was registered with.
#pragma once

#include <cstdint>
#include <vector>

#include "host/wrapper/value.h"

namespace fmhost {

struct StepParameter {
  enum class Kind : std::uint8_t { calculation, choice, flag };

  struct Option {
    int id = 0;
    Text label;
  };

  Kind kind = Kind::calculation;
  int id = 0;  // the argument's position
  Text label;
  ValueType type = ValueType::text;  // calculations only
  std::vector<Option> options;       // choices only
  int defaultId = 0;                 // what a choice or flag passes when it is left out
};

struct StepDefinition {
  std::vector<StepParameter> parameters;
  // Without a target the result goes nowhere.
  bool hasTarget = false;
  Text targetLabel;

  std::size_t argumentCount() const;
};

// As the host reads it: letter case makes no difference, and a parameter of another type, or whose ID is
// repeated or not 0 to 9, does not exist. Throws std::invalid_argument for what is no step at all.
StepDefinition readStepDefinition(const Text& xml);

}  // namespace fmhost
