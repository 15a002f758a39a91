#include "plugin/shell/system_log.h"

#include <cstdio>
#include <syslog.h>

namespace zuno {

// On standard error too, where a host that was started by hand shows it.
void logLine(const char* line) {
  syslog(LOG_USER | LOG_NOTICE, "%s", line);
  std::fprintf(stderr, "%s\n", line);
}

}  // namespace zuno
