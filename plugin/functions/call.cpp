#include "plugin/functions/call.h"

#include "plugin/shell/plugin_error.h"

namespace zuno {

void Call::begin() {
  g_llasterror = 0;
  if (g_sharedFunctions != nullptr) g_sharedFunctions->resetLastErrorString();
}

void Call::finish() {
  if (!failed()) return;
  if (error) error->setError(static_cast<std::int32_t>(g_llasterror), 0, std::nullopt);
  assignErrorMarker(result_);
}

}  // namespace zuno
