#include "plugin/functions/call.h"

#include "plugin/shell/plugin_error.h"

namespace zuno {

void Call::recordFailure() {
  if (error) error->setError(static_cast<std::int32_t>(g_llasterror), 0, std::nullopt);
  assignErrorMarker(result_);
}

}  // namespace zuno
