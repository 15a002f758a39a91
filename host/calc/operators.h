// Arithmetic, comparison and concatenation of values, with FileMaker's conversions.
#pragma once

#include "host/wrapper/value.h"

namespace fmhost {

// The symbols of two operands, without the ones that may leave the second unevaluated (and, or).
using BinaryOperation = Value (*)(const Value& left, const Value& right);

// Null for a symbol that is none.
BinaryOperation binaryOperation(char16_t symbol);

// A date and a number of days, a timestamp and a number of seconds keep their type.
Value negated(const Value& value);

}  // namespace fmhost
