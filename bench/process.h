// Programs in a process of their own: what somebody waits for who has nothing running yet.
#pragma once

#include <string>
#include <vector>

namespace bench {

struct Finished {
  double seconds = 0;  // from the call to the process's end
  std::string output;
};

// Runs a program with these arguments. Throws std::runtime_error when it cannot be started or does not exit
// with 0.
Finished runProcess(const std::vector<std::string>& arguments);
// The most memory that it has resident at once, in kilobytes.
long peakMemoryOf(const std::vector<std::string>& arguments);

}  // namespace bench
