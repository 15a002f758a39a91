// Where our code returns to the host.
#pragma once

#include <optional>

#include "plugin/shell/error_catalogue.h"
#include "plugin/shell/globals.h"
#include "plugin/shell/plugin_error.h"
#include "plugin/shell/sessions.h"

namespace zuno {

// What the host's own calls raise is the host's business and leaves, as its interface has it. A host with
// another C++ runtime than ours cannot take it: built for such a one (ZUNO_CATCH_AT_HOST), an unclassified
// error is recorded for the current session instead, and `afterFailure` is run, which may fail as well.
template <class Work, class AfterFailure>
void atHostBoundary(Work work, [[maybe_unused]] AfterFailure afterFailure) {
#ifdef ZUNO_CATCH_AT_HOST
  try {
    work();
  } catch (...) {
    const SessionLock lock;
    g_llasterror = kErrUnclassified;
    if (error) error->setError(kErrUnclassified, 0, std::nullopt);
    try {
      afterFailure();
    } catch (...) {
      return;  // the error is recorded, and there is nobody else to tell
    }
  }
#else
  work();
#endif
}

}  // namespace zuno
