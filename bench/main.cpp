// zuno_bench FOLDER ITEMS GROUP [Google Benchmark's options]: measures one group on a calendar of that size,
// whose files are in the folder; the group "prepare" makes them. script/bench runs it all.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <string_view>

#include "bench/groups.h"

int main(int argc, char** argv) try {
  static const std::map<std::string_view, void (*)(const bench::Dataset&)> kGroups = {
      {"importing", bench::registerImporting},
      {"reading", bench::registerReading},
      {"calls",
       [](const bench::Dataset& dataset) {
         bench::registerCalls(dataset);
         bench::registerWalking(dataset);
       }},
      {"saving", bench::registerSaving},
  };
  benchmark::Initialize(&argc, argv);
  const bench::Dataset dataset{.folder = argc > 1 ? argv[1] : "",
                               .items = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 0};
  const std::string_view group = argc == 4 ? argv[3] : "";
  const bool isPreparing = group == "prepare";
  if (dataset.items == 0 || (!isPreparing && !kGroups.contains(group))) {
    std::fprintf(stderr, "usage: %s FOLDER ITEMS prepare|importing|reading|calls|saving\n", argv[0]);
    return 2;
  }
  bench::useBenchZone();
  if (isPreparing) {
    bench::prepare(dataset);
    return 0;
  }
  kGroups.at(group)(dataset);
  benchmark::AddCustomContext("items", std::to_string(dataset.items));
  return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return 1;
}
