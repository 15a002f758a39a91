// FileMaker's own functions, as far as scripts around a plug-in use them. Let, If, Case, While and Get have a
// syntax of their own and are the parser's.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "host/wrapper/value.h"

namespace fmhost {

struct Builtin {
  std::string_view name;
  int fewestArguments;
  int mostArguments;  // -1: any number
  Value (*function)(std::span<const Value> arguments);
};

// Null when there is none of that name, in any letter case.
const Builtin* builtinNamed(std::u16string_view name);
// Of all functions, the parser's included, for completing what is typed.
std::vector<std::string_view> builtinNames();

std::span<const Builtin> textFunctions();
std::span<const Builtin> listFunctions();
std::span<const Builtin> numberFunctions();
std::span<const Builtin> dateFunctions();
std::span<const Builtin> conversionFunctions();

}  // namespace fmhost
