// Asking the same again, and walking what a window holds by position, as scripts do.
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/floor.h"
#include "bench/groups.h"
#include "bench/plugin.h"

namespace bench {
namespace {

void countAgain(benchmark::State& state, const Dataset& dataset) {
  openOurs(dataset.store())->count(yearFrom(0));
  Call count(function("Zuno_GetItemCountForType"), {"event"});
  for ([[maybe_unused]] auto _ : state) count.run();
  count.check();
  state.counters["occurrences"] = static_cast<double>(count.number());
}

Window quarter() { return {month(12).from, month(kMarch2026).to}; }

// Fetch, count, open 1 to N, read nothing.
void walk(benchmark::State& state, const Dataset& dataset, Window window) {
  const std::unique_ptr<Contender> ours = openOurs(dataset.store());
  const auto occurrences = static_cast<int>(ours->count(window));
  std::vector<Call> opens;
  opens.reserve(static_cast<std::size_t>(occurrences));
  for (int position = 1; position <= occurrences; ++position)
    opens.emplace_back(function("Zuno_OpenItemAt"), std::vector<Value>{"event", position});
  int day = 0;
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    ours->count(yearFrom(++day % 28));  // or the answer would be a kept one
    state.ResumeTiming();
    ours->count(window);
    for (Call& open : opens) open.run();
  }
  for (const Call& open : opens) open.check();
  state.counters["opens"] = occurrences;
}

// The rows of the items of these occurrences, in the same order, by key.
void readRows(benchmark::State& state, const Dataset& dataset, Window window) {
  Floor floor(dataset.floorTable());
  const std::vector<std::int64_t> items = floor.itemsIn(window);
  for ([[maybe_unused]] auto _ : state)
    for (const std::int64_t item : items) benchmark::DoNotOptimize(floor.readItem(item));
  state.counters["opens"] = static_cast<double>(items.size());
}

}  // namespace

void registerWalking(const Dataset& dataset) {
  benchmark::RegisterBenchmark("again/ours", [&](benchmark::State& state) { countAgain(state, dataset); });
  const std::pair<std::string, Window> walks[] = {
      {"walk_month", month(kMarch2026)}, {"walk_quarter", quarter()}, {"walk_year", yearFrom(0)}};
  for (const auto& [measure, window] : walks) {
    benchmark::RegisterBenchmark((measure + "/ours").c_str(), [&, window = window](benchmark::State& state) {
      walk(state, dataset, window);
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark((measure + "/floor").c_str(), [&, window = window](benchmark::State& state) {
      readRows(state, dataset, window);
    })->Unit(benchmark::kMillisecond);
  }
}

}  // namespace bench
