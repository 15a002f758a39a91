// What a rule names, straight from its definition: every day of a period is held against every part. Slow,
// and written without a look at how the engine does it.
#pragma once

#include <vector>

#include "eventkit/embedded/recurrence/rule.h"

namespace ek::recurrence {

// The starts up to `last`, at most `most`.
std::vector<WallTime> namedByDefinition(const Rule& rule, WallTime start, WallTime last, std::size_t most);

}  // namespace ek::recurrence
