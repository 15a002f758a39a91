// Saving and removing durably, through the plug-in, beside one commit of one row.
#include <benchmark/benchmark.h>
#include <filesystem>
#include <fmt/format.h>
#include <optional>
#include <string>
#include <vector>

#include "bench/files.h"
#include "bench/floor.h"
#include "bench/groups.h"
#include "bench/plugin.h"
#include "bench/process.h"

namespace bench {
namespace {

// Daily series of ten years, one for each save or removal that cuts a series in two.
constexpr int kSeries = 500;
constexpr const char* kSeriesCalendars[] = {"Series to save", "Series to remove"};
constexpr std::size_t kChangedItems = 200;

std::string seriesCalendar(const char* title) {
  std::string text = fmt::format(
      "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Zuno//bench//EN\r\nX-WR-CALNAME:{}\r\n", title);
  for (int number = 1; number <= kSeries; ++number)
    text += fmt::format(
        "BEGIN:VEVENT\r\nUID:{0}-{1:04}\r\nDTSTAMP:20210101T080000Z\r\nDTSTART;TZID=Europe/"
        "Berlin:20210101T090000\r\n"
        "DTEND;TZID=Europe/Berlin:20210101T093000\r\nRRULE:FREQ=DAILY;UNTIL=20301231T220000Z\r\n"
        "SUMMARY:Series {1:04}\r\nEND:VEVENT\r\n",
        title, number);
  return text + "END:VCALENDAR\r\n";
}

// A copy of the store, with the series imported into it.
std::string storeToChange(const Dataset& dataset) {
  const std::string store = dataset.scratch("changed.sqlite");
  std::filesystem::copy_file(dataset.store(), store);
  for (const char* title : kSeriesCalendars) {
    const std::string file = dataset.folder + "/series.ics";
    writeFile(file, seriesCalendar(title));
    runProcess({ZUNO_BENCH_ZUNOCAL, "--store", store, "import", file});
  }
  return store;
}

void fetch(Window window, std::string_view calendar) {
  Call(function("Zuno_EventsFetch"), {Timestamp{window.from}, Timestamp{window.to}, calendar, ""})();
}
void open(int position) { Call(function("Zuno_OpenItemAt"), {"event", position})(); }

// Sets the location of the open event, to something new each time, and saves it.
class ChangeAndSave {
 public:
  explicit ChangeAndSave(std::string_view span) : save_(function("Zuno_SaveItem"), {"event", span}) {}
  // Has to go before each use: makes the host's values.
  void prepare() {
    static int number = 0;
    const std::string location = fmt::format("Room {}", ++number);
    set_.emplace(function("Zuno_SetProperty"), std::vector<Value>{"event", "location", location});
  }
  void operator()() {
    (*set_)();
    save_();
  }

 private:
  std::optional<Call> set_;
  Call save_;
};

// The external identifiers of the first events that occur once.
std::vector<std::string> findSingleEvents(const Dataset& dataset) {
  std::vector<std::string> uids;
  for (const std::string& text : makeCalendar(dataset.items).items) {
    if (text.find("\r\nRRULE:") != std::string::npos || text.find("\r\nATTENDEE") != std::string::npos)
      continue;
    const std::size_t begin = text.find("\r\nUID:") + 6;
    uids.push_back(text.substr(begin, text.find("\r\n", begin) - begin));
    if (uids.size() == kChangedItems) break;
  }
  return uids;
}

const std::vector<std::string>& singleEvents(const Dataset& dataset) {
  static const std::vector<std::string> uids = findSingleEvents(dataset);
  return uids;
}

std::string floorToChange(const Dataset& dataset) {
  const std::string path = dataset.scratch("floor_changed.sqlite");
  std::filesystem::copy_file(dataset.floorTable(), path);
  return path;
}

void commitRow(benchmark::State& state, const Dataset& dataset) {
  static Floor floor(floorToChange(dataset));
  static std::int64_t number = 0;
  std::string text = makeCalendar(1).items.front();
  for ([[maybe_unused]] auto _ : state) {
    // SQLite writes nothing for a row that stays the same.
    const std::string mark = fmt::format("{:010}", ++number);
    text.replace(0, mark.size(), mark);
    floor.commitItem(number % static_cast<std::int64_t>(kChangedItems) + 1, text);
  }
}

void saveOne(benchmark::State& state, const Dataset& dataset) {
  const std::vector<std::string>& uids = singleEvents(dataset);
  ChangeAndSave changeAndSave("this");
  std::size_t item = 0;
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    Call(function("Zuno_OpenItemWithUID"), {"event", uids[++item % uids.size()]})();
    changeAndSave.prepare();
    state.ResumeTiming();
    changeAndSave();
  }
}

constexpr int kCuts = 30;
Window middleOfTheSeries() { return {month(kMarch2026).from, month(kMarch2026).from + 24 * 60 * 60}; }

// From its occurrence on the first of March 2026, a series at a time.
void saveFuture(benchmark::State& state) {
  static int series = 0;
  ChangeAndSave changeAndSave("future");
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    fetch(middleOfTheSeries(), kSeriesCalendars[0]);
    open(series++ % kSeries + 1);
    changeAndSave.prepare();
    state.ResumeTiming();
    changeAndSave();
  }
}

// Scripts remove by identifier, and only a changed occurrence has one of its own: so it is changed before.
void removeFuture(benchmark::State& state) {
  static int series = 0;
  ChangeAndSave detach("this");
  Call identifier(function("Zuno_GetProperty"), {"event", "uid"});
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    fetch(middleOfTheSeries(), kSeriesCalendars[1]);
    open(1);  // those before are gone
    detach.prepare();
    detach();
    identifier();
    Call remove(function("Zuno_RemoveItem"), {"event", identifier.text(), "", "future"});
    ++series;
    state.ResumeTiming();
    remove();
  }
}

void countAfterSave(benchmark::State& state, const Dataset& dataset, Window window) {
  const std::vector<std::string>& uids = singleEvents(dataset);
  ChangeAndSave changeAndSave("this");
  Call fetchWindow(function("Zuno_EventsFetch"), {Timestamp{window.from}, Timestamp{window.to}, "", ""});
  Call count(function("Zuno_GetItemCountForType"), {"event"});
  fetchWindow();
  count();
  std::size_t item = 0;
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    Call(function("Zuno_OpenItemWithUID"), {"event", uids[++item % uids.size()]})();
    changeAndSave.prepare();
    changeAndSave();
    state.ResumeTiming();
    fetchWindow();
    count();
  }
  state.counters["occurrences"] = static_cast<double>(count.number());
}

}  // namespace

void registerSaving(const Dataset& dataset) {
  using benchmark::kMicrosecond;
  loadPlugin(storeToChange(dataset));
  benchmark::RegisterBenchmark("save/floor", [&](benchmark::State& state) {
    commitRow(state, dataset);
  })->Unit(kMicrosecond);
  benchmark::RegisterBenchmark("save/ours", [&](benchmark::State& state) {
    saveOne(state, dataset);
  })->Unit(kMicrosecond);
  benchmark::RegisterBenchmark("save_future/ours", saveFuture)->Iterations(kCuts)->Unit(kMicrosecond);
  benchmark::RegisterBenchmark("remove_future/ours", removeFuture)->Iterations(kCuts)->Unit(kMicrosecond);
  benchmark::RegisterBenchmark("count_year_after_save/ours", [&](benchmark::State& state) {
    countAfterSave(state, dataset, yearFrom(0));
  })->Unit(kMicrosecond);
}

}  // namespace bench
