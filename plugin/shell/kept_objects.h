// The host's objects that results are handed over in. Each costs an allocation when it is made, a text
// another one for its letters, and nearly every call hands over a result: so they are made when first needed
// and kept. Used under the lock of the call that is running; what is in them counts for one result alone.
#pragma once

#include <cstddef>

#include "FMWrapper/FMXDateTime.h"
#include "FMWrapper/FMXFixPt.h"
#include "FMWrapper/FMXText.h"

namespace zuno {

// For a text of so many UTF-16 units. The memory for a long one is not kept for short ones.
fmx::Text& textForResult(std::size_t units);
fmx::FixPt& numberForResult();
fmx::DateTime& dateTimeForResult();

// Gives them back to the host, which is about to unload the plug-in.
void releaseKeptObjects();

}  // namespace zuno
