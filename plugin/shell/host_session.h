#pragma once

#include <cstdint>

#include "FMWrapper/FMXCalcEngine.h"

namespace zuno {

// The host's session that a call belongs to. Where the host's library cannot tell, all calls are of one.
std::uint64_t sessionOf(const fmx::ExprEnv& environment);

}  // namespace zuno
