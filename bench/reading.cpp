// Counting what a window holds, in new processes and in warm ones.
#include <benchmark/benchmark.h>
#include <map>
#include <memory>
#include <string>

#include "bench/groups.h"
#include "bench/process.h"

namespace bench {
namespace {

struct Peer {
  const char* name;
  std::unique_ptr<Contender> (*open)(const std::string& file);
  std::string (Dataset::*file)() const;
  const char* program;  // the same in a process of its own
};
constexpr Peer kPeers[] = {
    {"libical", openLibical, &Dataset::ics, ZUNO_BENCH_ONCE_LIBICAL},
    {"kcalendarcore", openKCalendarCore, &Dataset::ics, ZUNO_BENCH_ONCE_KCALENDARCORE},
    {"floor", openFloor, &Dataset::floorTable, ZUNO_BENCH_ONCE_FLOOR},
    {"ours", openOurs, &Dataset::store, ZUNO_BENCH_ONCE_OURS},
};

// Opened on first use and kept, as a process that runs for long keeps it.
Contender& warm(const Peer& peer, const Dataset& dataset) {
  static std::map<std::string, std::unique_ptr<Contender>> opened;
  std::unique_ptr<Contender>& contender = opened[peer.name];
  if (!contender) contender = peer.open((dataset.*peer.file)());
  return *contender;
}

// Windows follow one another, so that no answer can be a kept one.
using Windows = Window (*)(int);
Window someMonth(int number) { return month(number % 24); }
Window someYear(int number) { return yearFrom(number % 28); }

void countWarm(benchmark::State& state, const Peer& peer, const Dataset& dataset, Windows windows) {
  Contender& contender = warm(peer, dataset);
  contender.count(windows(27));
  int number = 0;
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(contender.count(windows(number++)));
  state.counters["occurrences"] = static_cast<double>(contender.count(windows(kMarch2026)));
}

void countInNewProcess(benchmark::State& state, const Peer& peer, const Dataset& dataset) {
  const Window window = month(kMarch2026);
  std::string found;
  for ([[maybe_unused]] auto _ : state) {
    const Finished finished = runProcess(
        {peer.program, (dataset.*peer.file)(), std::to_string(window.from), std::to_string(window.to)});
    state.SetIterationTime(finished.seconds);
    found = finished.output;
  }
  state.counters["occurrences"] = std::stod(found);
}

}  // namespace

void registerReading(const Dataset& dataset) {
  using benchmark::kMillisecond;
  const auto name = [](const char* measure, const char* contender) {
    return std::string(measure) + "/" + contender;
  };
  for (const Peer& peer : kPeers) {
    benchmark::RegisterBenchmark(name("month_new_process", peer.name).c_str(),
                                 [&](benchmark::State& state) { countInNewProcess(state, peer, dataset); })
        ->UseManualTime()
        ->Iterations(3)
        ->Unit(kMillisecond);
    benchmark::RegisterBenchmark(name("month_warm", peer.name).c_str(), [&](benchmark::State& state) {
      countWarm(state, peer, dataset, someMonth);
    })->Unit(kMillisecond);
    benchmark::RegisterBenchmark(name("year_warm", peer.name).c_str(), [&](benchmark::State& state) {
      countWarm(state, peer, dataset, someYear);
    })->Unit(kMillisecond);
  }
}

}  // namespace bench
