// The system's log.
#pragma once

namespace zuno {

void logLine(const char* line);

}  // namespace zuno
