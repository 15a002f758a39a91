// The text of a script, taken apart without understanding it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fmhost {

struct ScriptLine {
  std::size_t number = 0;  // of its first line, from 1
  std::u16string name;     // of the step
  bool hasBrackets = false;
  std::vector<std::u16string> parameters;  // what stands between the brackets, parted at semicolons
};

// The steps, without comments (#), steps that are switched off (//) and blank lines. Brackets that stay open
// take the next line in. Throws ScriptError.
std::vector<ScriptLine> scriptLines(const std::string& scriptName, std::u16string_view text);

std::u16string_view withoutBlanks(std::u16string_view text);

}  // namespace fmhost
