// Between the host's values and ours.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "FMWrapper/FMXCalcEngine.h"
#include "plugin/backend/keywords.h"
#include "plugin/backend/value.h"

namespace zuno {

// What a function was called with, counted from 0. An argument past the end reads like an empty one.
class Arguments {
 public:
  explicit Arguments(const fmx::DataVect& values) : values_(values), count_(values.Size()) {}

  // No text where the argument is empty.
  std::optional<std::string> text(fmx::uint32 index) const;
  // The same, for a word whose case does not matter.
  Keyword keyword(fmx::uint32 index) const;
  std::int64_t integer(fmx::uint32 index) const;
  // A timestamp, as wall-clock time in the default zone with the offset that holds there today. Nothing for
  // an empty argument and for what is no timestamp.
  std::optional<Date> date(fmx::uint32 index) const;

 private:
  const fmx::DataVect& values_;
  fmx::uint32 count_;
};

// Results. No text gives an empty one.
void AssignStringResult(TextArgument text, fmx::Data& result);
void assignNumber(std::int64_t number, fmx::Data& result);
void assignErrorMarker(fmx::Data& result);

enum class DateForm { timestamp, date };
// The date, or the date that the value's text tells, as wall-clock time in the default zone. The result stays
// as it is where there is none.
void assignDate(const Value& value, DateForm form, fmx::Data& result);

}  // namespace zuno
