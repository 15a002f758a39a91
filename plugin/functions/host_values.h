// Between the host's values and ours.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "FMWrapper/FMXCalcEngine.h"
#include "plugin/backend/value.h"

namespace zuno {

// Arguments, counted from 0. One past the end reads like an empty one.
std::optional<std::string> textArgument(const fmx::DataVect& arguments, fmx::uint32 index);
std::int64_t integerArgument(const fmx::DataVect& arguments, fmx::uint32 index);
// A timestamp, as wall-clock time in the default zone with the offset that holds there today. Nothing for an
// empty argument and for what is no timestamp.
std::optional<Date> dateArgument(const fmx::DataVect& arguments, fmx::uint32 index);

std::string utf8From(const fmx::Text& text);

// Results. No text gives an empty one.
void AssignStringResult(TextArgument text, fmx::Data& result);
void assignNumber(std::int64_t number, fmx::Data& result);
void assignErrorMarker(fmx::Data& result);

enum class DateForm { timestamp, date };
// The date, or the date that the value's text tells, as wall-clock time in the default zone. The result stays
// as it is where there is none.
void assignDate(const Value& value, DateForm form, fmx::Data& result);

}  // namespace zuno
