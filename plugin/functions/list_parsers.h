// List arguments of the recurrence functions: pieces separated by a carriage return, the host's separator of
// value lists. No text gives no list. Ranges of days of the month and months are not checked.
#pragma once

#include <optional>
#include <vector>

#include "eventkit/types.h"
#include "plugin/backend/value.h"

namespace zuno {

// Weekday numbers, 1 Sunday to 7 Saturday. A piece that is none is left out and leaves a line in the system's
// log.
std::optional<std::vector<ek::DayOfWeek>> NSStringToNSArrayDOW(TextArgument text);
// Whole numbers; a piece that is none is left out.
std::optional<std::vector<int>> NSStringToNSArrayInts(TextArgument text);

}  // namespace zuno
