#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "plugin/shell/registration.h"

namespace zuno {

namespace {

struct Parameter {
  std::string_view label;
  bool isInline = true;
};

struct Step {
  short id;
  Parameter parameters[7] = {};       // up to the first without a label
  std::string_view choiceLabel = {};  // of a step that offers a choice instead
  std::string_view choices[3] = {};
};

constexpr Step kSteps[] = {
    {151, {}, "Version Type", {"Please Select", "Short", "Long"}},
    {152, {{"Type"}}},
    {153, {{"Type"}, {"Index"}}},
    {154, {{"Type"}, {"UID"}, {"Occurrence (Optional)", false}}},
    {155, {{"Type"}, {"Property"}, {"Sub-Property (Optional)", false}}},
    {156, {{"Start Date"}, {"End Date"}, {"Calendars"}, {"UID"}}},
    {157, {{"Calendars"}, {"Type"}, {"Date"}}},
    {158, {{"Title"}}},
    {159, {{"Type"}, {"Property"}, {"Value"}}},
    {160, {}, "Type (Optional)", {"Please Select", "Text", "Number"}},
    {161, {{"Type"}, {"Time Span (Optional)", false}}},
    {162,
     {{"Type"},
      {"Interval"},
      {"Days of the Week"},
      {"Days of the Month"},
      {"Months of the Year"},
      {"End Date"},
      {"End Count"}}},
    {163,
     {{"Type"}, {"Absolute Trigger"}, {"Action"}, {"Email Address"}, {"Relative Trigger"}, {"Sound Name"}}},
    {164, {{"Type"}, {"Index"}}},
    {165},
    {166, {{"Type"}}},
    {167, {{"Type"}, {"UID"}, {"Occurrence Date"}, {"Date Span"}}},
    {168, {{"Type"}}},
};

std::string attribute(std::string_view name, std::string_view value) {
  return " " + std::string(name) + "=\"" + std::string(value) + "\"";
}

std::string textParameter(const Parameter& parameter, std::size_t number) {
  return "<parameter" + attribute("type", "calc") +
         attribute("showinline", parameter.isInline ? "true" : "false") +
         attribute("label", parameter.label) + attribute("datatype", "text") +
         attribute("ID", std::to_string(number)) + "/>";
}

std::string choiceParameter(const Step& step) {
  std::string xml = "<parameter" + attribute("type", "list") + attribute("showinline", "true") +
                    attribute("label", step.choiceLabel) + attribute("default", "0") + attribute("ID", "0") +
                    ">";
  for (std::size_t number = 0; number < std::size(step.choices); ++number)
    xml += "<value" + attribute("ID", std::to_string(number)) + ">" + std::string(step.choices[number]) +
           "</value>";
  return xml + "</parameter>";
}

}  // namespace

std::string stepDefinition(short functionID) {
  const Step* step = std::find_if(std::begin(kSteps), std::end(kSteps),
                                  [functionID](const Step& row) { return row.id == functionID; });
  if (step == std::end(kSteps)) return {};
  std::string xml = R"(<pluginstep><parameter type="target" label="Results" showinline="true"/>)";
  for (std::size_t number = 0; number < std::size(step->parameters); ++number) {
    if (step->parameters[number].label.empty()) break;
    xml += textParameter(step->parameters[number], number);
  }
  if (!step->choiceLabel.empty()) xml += choiceParameter(*step);
  return xml + "</pluginstep>";
}

void GetXMLDefinition(short functionID, fmx::Text& definition) {
  definition.Assign(stepDefinition(functionID).c_str(), fmx::Text::kEncoding_UTF8);
}

}  // namespace zuno
