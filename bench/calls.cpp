// What single calls cost through the host, beside a call that does nothing.
#include <benchmark/benchmark.h>

#include "bench/groups.h"
#include "bench/plugin.h"

namespace bench {
namespace {

void repeat(benchmark::State& state, Call call) {
  for ([[maybe_unused]] auto _ : state) call.run();
  call.check();
}

void openFirstOf(Window window) {
  Call(function("Zuno_EventsFetch"), {Timestamp{window.from}, Timestamp{window.to}, "", ""})();
  Call(function("Zuno_OpenItemAt"), {"event", 1})();
}

void readProperty(benchmark::State& state, std::string_view property) {
  openFirstOf(month(kMarch2026));
  repeat(state, Call(function("Zuno_GetProperty"), {"event", property}));
}

}  // namespace

void registerCalls(const Dataset& dataset) {
  loadPlugin(dataset.store());
  for (const auto& [measure, name] :
       {std::pair("call_untouched/ours", "Untouched"), std::pair("call_empty/ours", "Zero")})
    benchmark::RegisterBenchmark(
        measure, [name = name](benchmark::State& state) { repeat(state, Call(function(name), {})); });
  benchmark::RegisterBenchmark("call_last_error/ours", [](benchmark::State& state) {
    repeat(state, Call(function("Zuno_GetLastError"), {"Number"}));
  });
  benchmark::RegisterBenchmark("call_version/ours", [](benchmark::State& state) {
    repeat(state, Call(function("Zuno_Version"), {"Short"}));
  });
  benchmark::RegisterBenchmark("call_open_again/ours", [](benchmark::State& state) {
    openFirstOf(month(kMarch2026));
    repeat(state, Call(function("Zuno_OpenItemAt"), {"event", 1}));
  });
  for (const std::string_view property : {"title", "location", "notes", "startdate", "calendartitle"})
    benchmark::RegisterBenchmark(("call_property_" + std::string(property) + "/ours").c_str(),
                                 [=](benchmark::State& state) { readProperty(state, property); });
}

}  // namespace bench
