// zuno_bench_calendar ITEMS [SEED]: prints the calendar of the benchmarks.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/calendar.h"

int main(int argc, char** argv) {
  const std::size_t items = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0;
  if (items == 0) {
    std::fputs("usage: zuno_bench_calendar ITEMS [SEED]\n", stderr);
    return 1;
  }
  const std::string text =
      bench::makeCalendar(items, argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1).text();
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
}
