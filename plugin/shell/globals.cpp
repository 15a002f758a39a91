#include "plugin/shell/globals.h"

#include "plugin/shell/plugin_error.h"

namespace zuno {

bool g_bUseEK = false;
iCalEKFunctions* g_sharedEKFunctions = nullptr;
iCalFunctions* g_sharedFunctions = nullptr;
std::unique_ptr<zuno_PluginError> error;
std::int64_t g_llasterror = 0;

void ClearError() {
  if (error) error->clearError();
  g_llasterror = 0;
}

}  // namespace zuno
