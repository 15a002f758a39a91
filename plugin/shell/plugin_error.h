// The error that scripts read with Zuno_GetLastError, as a message.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zuno {

// Holds one error at most. Cleared at creation.
class zuno_PluginError {
 public:
  void clearError();
  // The message, followed by the extra text if there is one. "Success" when cleared: not the catalogue's
  // "SUCCESS", which a recorded number 0 gives.
  std::string getError() const;
  std::string getErrorNumber() const;
  // sysError is kept and never interpreted. The error recorded before is forgotten, extra text included.
  void setError(std::int32_t number, std::int32_t sysError, std::optional<std::string> extDesc);

 private:
  std::int32_t errorID = 0;
  std::int32_t sysID = 0;
  std::optional<std::string_view> strError;  // a text of the catalogue's
  std::optional<std::string> extendedError;
};

}  // namespace zuno
