// Where our code returns to the host.
#pragma once

#include <optional>

#include "plugin/shell/error_catalogue.h"
#include "plugin/shell/globals.h"
#include "plugin/shell/plugin_error.h"

namespace zuno {

// What the host's own calls raise is the host's business and leaves, as its interface has it. A host with
// another C++ runtime than ours cannot take it: built for such a one (ZUNO_CATCH_AT_HOST), an unclassified
// error is recorded instead.
template <class Work>
void atHostBoundary(Work work) {
#ifdef ZUNO_CATCH_AT_HOST
  try {
    work();
  } catch (...) {
    g_llasterror = kErrUnclassified;
    if (error) error->setError(kErrUnclassified, 0, std::nullopt);
  }
#else
  work();
#endif
}

}  // namespace zuno
