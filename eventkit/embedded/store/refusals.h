#pragma once

#include <optional>

#include "eventkit/types.h"

namespace ek::embedded {

// Says why and answers false, as a save or removal does.
bool refuse(std::optional<Error>& error, ErrorCode code);

}  // namespace ek::embedded
