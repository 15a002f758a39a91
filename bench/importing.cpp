// Taking an iCalendar file in: parsing alone for the peers, which keep nothing, and a durable store for us.
#include <benchmark/benchmark.h>

#include "bench/groups.h"
#include "bench/libical.h"
#include "bench/process.h"
#include "eventkit/embedded/storage/importer.h"

namespace bench {
namespace {

using Program = std::vector<std::string>;

void inNewProcess(benchmark::State& state, const Dataset& dataset, Program (*program)(const Dataset&)) {
  for ([[maybe_unused]] auto _ : state) state.SetIterationTime(runProcess(program(dataset)).seconds);
  state.counters["peak_kilobytes"] = static_cast<double>(peakMemoryOf(program(dataset)));
}

void parse(benchmark::State& state, const Dataset& dataset) {
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(parseWithLibical(dataset.ics()));
}

// Into a new store, to its last commit.
void importFile(benchmark::State& state, const Dataset& dataset) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    const std::string path = dataset.scratch("import.sqlite");
    std::string why;
    const auto database = ek::embedded::Database::open(path, why);
    if (!database) throw std::runtime_error(why);
    state.ResumeTiming();
    ek::embedded::Importer(*database, {}).importPath(dataset.ics());
  }
}

}  // namespace

void registerImporting(const Dataset& dataset) {
  using benchmark::kMillisecond;
  constexpr std::pair<const char*, Program (*)(const Dataset&)> kPrograms[] = {
      {"libical",
       [](const Dataset& files) {
         return Program{ZUNO_BENCH_ONCE_LIBICAL, files.ics()};
       }},
      {"kcalendarcore",
       [](const Dataset& files) {
         return Program{ZUNO_BENCH_ONCE_KCALENDARCORE, files.ics()};
       }},
      {"ours",
       [](const Dataset& files) {
         return Program{ZUNO_BENCH_ZUNOCAL, "--store", files.scratch("import.sqlite"), "import", files.ics()};
       }},
  };
  for (const auto& [contender, program] : kPrograms)
    benchmark::RegisterBenchmark(
        ("import_new_process/" + std::string(contender)).c_str(),
        [&dataset, program = program](benchmark::State& state) { inNewProcess(state, dataset, program); })
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(kMillisecond);
  benchmark::RegisterBenchmark("import/libical", [&](benchmark::State& state) {
    parse(state, dataset);
  })->Unit(kMillisecond);
  benchmark::RegisterBenchmark("import/ours", [&](benchmark::State& state) {
    importFile(state, dataset);
  })->Unit(kMillisecond);
}

}  // namespace bench
