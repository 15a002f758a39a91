// What the whole plug-in shares. Set up by Do_PluginInit; read and written under the lock of the call that
// is running (sessions.h). The host's call record, gFMX_ExternCallPtr, is declared by the host's headers.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zuno {

class iCalEKFunctions;
class zuno_PluginError;

// The backend over the older calendar framework, as far as the functions name it. None is built: readers
// meet null, and whatever is asked of null does nothing and gives nothing.
class iCalFunctions {
 public:
  virtual ~iCalFunctions() = default;
  virtual int resetLastErrorString() = 0;
  virtual std::optional<std::string> getLastErrorString() const = 0;
};

extern bool g_bUseEK;  // which of the two backends works; always the first
extern iCalEKFunctions* g_sharedEKFunctions;
extern iCalFunctions* g_sharedFunctions;
extern std::unique_ptr<zuno_PluginError> error;  // null before Do_PluginInit
extern std::int64_t g_llasterror;                // 0: no error; else a number of the catalogue or 9999

// Forgets the last error, number and message.
void ClearError();

}  // namespace zuno
