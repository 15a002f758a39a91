// One measure in a process of its own: FILE [FROM TO] opens FILE and prints how many occurrences the window
// has; without a window it only opens.
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/contender.h"

int main(int argc, char** argv) try {
  if (argc != 2 && argc != 4) {
    std::fprintf(stderr, "usage: %s FILE [FROM TO]\n", argv[0]);
    return 2;
  }
  const auto contender = bench::ZUNO_BENCH_OPEN(argv[1]);
  if (argc == 4)
    std::printf("%zu\n",
                contender->count({std::strtoll(argv[2], nullptr, 10), std::strtoll(argv[3], nullptr, 10)}));
  std::fflush(stdout);
  std::_Exit(0);  // what the operating system frees anyway is nobody's waiting time
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return 1;
}
