#pragma once

#include <cstdint>

#include "FMWrapper/FMXCalcEngine.h"

// A library without sessions is no reason not to run. Asked for here alone, or the reference would not be
// weak.
#pragma weak FM_ExprEnv_SessionID

namespace zuno {

// The host's session that a call belongs to. Where the host's library cannot tell, all calls are of one.
inline std::uint64_t sessionOf(const fmx::ExprEnv& environment) {
  return &FM_ExprEnv_SessionID == nullptr ? 0 : environment.SessionID();
}

}  // namespace zuno
