#include "plugin/shell/plugin_error.h"

#include <utility>

#include "plugin/shell/error_catalogue.h"

namespace zuno {

void zuno_PluginError::clearError() {
  errorID = 0;
  sysID = 0;
  strError.reset();
  extendedError.reset();
}

std::string zuno_PluginError::getError() const {
  if (!strError) return errorID != 0 ? "!!ERROR!!" : "Success";
  std::string message(*strError);
  if (extendedError) message.append(" ").append(*extendedError);
  return message;
}

std::string zuno_PluginError::getErrorNumber() const { return std::to_string(errorID); }

void zuno_PluginError::setError(std::int32_t number, std::int32_t sysError,
                                std::optional<std::string> extDesc) {
  clearError();
  errorID = number;
  sysID = sysError;
  extendedError = std::move(extDesc);
  strError = errorMessage(number);
}

}  // namespace zuno
