#include "host/calc/builtins.h"

#include <algorithm>

#include "host/wrapper/text_case.h"

namespace fmhost {
namespace {

using Family = std::span<const Builtin> (*)();
constexpr Family kFamilies[] = {textFunctions, listFunctions, numberFunctions, dateFunctions,
                                conversionFunctions};
constexpr std::string_view kNamesOfTheParser[] = {"Let", "If", "Case", "While", "Get"};

constexpr Builtin kConversions[] = {
    {"GetAsText", 1, 1, [](std::span<const Value> a) { return a[0].converted(ValueType::text); }},
    {"GetAsNumber", 1, 1, [](std::span<const Value> a) { return a[0].converted(ValueType::number); }},
    {"GetAsDate", 1, 1, [](std::span<const Value> a) { return a[0].converted(ValueType::date); }},
    {"GetAsTime", 1, 1, [](std::span<const Value> a) { return a[0].converted(ValueType::time); }},
    {"GetAsTimestamp", 1, 1, [](std::span<const Value> a) { return a[0].converted(ValueType::timestamp); }},
    {"IsEmpty", 1, 1, [](std::span<const Value> a) { return Value::ofBoolean(a[0].isEmpty()); }},
    {"True", 0, 0, [](std::span<const Value>) { return Value::ofBoolean(true); }},
    {"False", 0, 0, [](std::span<const Value>) { return Value::ofBoolean(false); }},
};

}  // namespace

std::span<const Builtin> conversionFunctions() { return kConversions; }

const Builtin* builtinNamed(std::u16string_view name) {
  for (const Family family : kFamilies) {
    for (const Builtin& function : family()) {
      if (std::is_eq(compareIgnoringCase(name, widened(function.name)))) return &function;
    }
  }
  return nullptr;
}

std::vector<std::string_view> builtinNames() {
  std::vector<std::string_view> names(std::begin(kNamesOfTheParser), std::end(kNamesOfTheParser));
  for (const Family family : kFamilies) {
    for (const Builtin& function : family()) names.push_back(function.name);
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace fmhost
