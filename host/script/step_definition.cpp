#include "host/script/step_definition.h"

#include <algorithm>
#include <iterator>
#include <pugixml.hpp>
#include <stdexcept>

#include "foundation/text.h"

namespace fmhost {
namespace {

constexpr int kMostParameters = 10;

std::string lowered(std::string_view text) { return foundation::lowercased(text); }

std::string attribute(const pugi::xml_node& node, std::string_view lowerCaseName) {
  for (const pugi::xml_attribute& candidate : node.attributes()) {
    if (lowered(candidate.name()) == lowerCaseName) return candidate.value();
  }
  return {};
}

std::vector<pugi::xml_node> children(const pugi::xml_node& node, std::string_view lowerCaseName) {
  std::vector<pugi::xml_node> found;
  for (const pugi::xml_node& child : node.children()) {
    if (lowered(child.name()) == lowerCaseName) found.push_back(child);
  }
  return found;
}

struct TypeRow {
  std::string_view word;
  ValueType type;
};
constexpr TypeRow kDataTypes[] = {{"text", ValueType::text},
                                  {"number", ValueType::number},
                                  {"date", ValueType::date},
                                  {"time", ValueType::time},
                                  {"timestamp", ValueType::timestamp}};

ValueType dataType(const std::string& word) {
  const auto* const row = std::ranges::find(kDataTypes, lowered(word), &TypeRow::word);
  return row == std::end(kDataTypes) ? ValueType::text : row->type;
}

std::vector<StepParameter::Option> options(const pugi::xml_node& list) {
  std::vector<StepParameter::Option> all;
  for (const pugi::xml_node& value : children(list, "value")) {
    const std::string id = attribute(value, "id");
    const int following = all.empty() ? 0 : all.back().id + 1;
    all.push_back({id.empty() ? following : static_cast<int>(foundation::integerValue(id)),
                   foundation::utf16FromUtf8(value.text().get())});
  }
  return all;
}

StepParameter parameterFrom(const pugi::xml_node& node, const std::string& type) {
  StepParameter parameter;
  const std::string id = attribute(node, "id");
  parameter.id = id.empty() ? -1 : static_cast<int>(foundation::integerValue(id));
  parameter.label = foundation::utf16FromUtf8(attribute(node, "label"));
  const std::string standard = lowered(attribute(node, "default"));
  if (type == "list") {
    parameter.kind = StepParameter::Kind::choice;
    parameter.options = options(node);
    parameter.defaultId = static_cast<int>(foundation::integerValue(standard));
  } else if (type == "bool") {
    parameter.kind = StepParameter::Kind::flag;
    parameter.defaultId = standard == "true" ? 1 : 0;
  } else {
    parameter.type = dataType(attribute(node, "datatype"));
  }
  return parameter;
}

bool isUsable(const StepParameter& parameter, const std::vector<StepParameter>& others) {
  return parameter.id >= 0 && parameter.id < kMostParameters &&
         std::ranges::find(others, parameter.id, &StepParameter::id) == others.end();
}

}  // namespace

std::size_t StepDefinition::argumentCount() const {
  int highest = -1;
  for (const StepParameter& parameter : parameters) highest = std::max(highest, parameter.id);
  return static_cast<std::size_t>(highest) + 1;
}

StepDefinition readStepDefinition(const Text& xml) {
  pugi::xml_document document;
  const std::string utf8 = foundation::utf8FromUtf16(xml);
  const pugi::xml_parse_result read =
      document.load_buffer(utf8.data(), utf8.size(), pugi::parse_default, pugi::encoding_utf8);
  if (!read) throw std::invalid_argument(std::string("its definition is no XML: ") + read.description());
  const pugi::xml_node step = document.document_element();
  if (lowered(step.name()) != "pluginstep") throw std::invalid_argument("its definition is no PluginStep");
  StepDefinition definition;
  for (const pugi::xml_node& node : children(step, "parameter")) {
    const std::string type = lowered(attribute(node, "type"));
    if (type == "target" && !definition.hasTarget) {
      definition.hasTarget = true;
      definition.targetLabel = foundation::utf16FromUtf8(attribute(node, "label"));
    } else if (type == "calc" || type == "bool" || type == "list") {
      StepParameter parameter = parameterFrom(node, type);
      if (isUsable(parameter, definition.parameters)) definition.parameters.push_back(std::move(parameter));
    }
  }
  return definition;
}

}  // namespace fmhost
