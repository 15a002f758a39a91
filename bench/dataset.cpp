#include "bench/dataset.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <unordered_map>
#include <vector>

#include "bench/files.h"
#include "bench/floor.h"
#include "bench/libical.h"
#include "bench/process.h"

namespace bench {
namespace {

// What benchmarks ask for lies in these years.
constexpr int kFirstYear = 2025, kLastYear = 2027;

std::int64_t localTime(int year, int monthOfYear, int day) {
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = monthOfYear - 1;
  fields.tm_mday = day;
  fields.tm_isdst = -1;
  return std::mktime(&fields);
}

std::vector<FloorOccurrence> expandWithLibical(const std::string& icsFile) {
  Libical calendar(parseWithLibical(icsFile));
  std::unordered_map<std::string, std::int64_t> keys;
  for (const std::string& uid : calendar.uids())
    keys.emplace(uid, static_cast<std::int64_t>(keys.size()) + 1);
  std::vector<FloorOccurrence> occurrences;
  calendar.expand({localTime(kFirstYear, 1, 1), localTime(kLastYear + 1, 1, 1)},
                  [&](icalcomponent* event, std::int64_t start, std::int64_t end) {
                    occurrences.push_back({.start = start,
                                           .end = end,
                                           .item = keys.at(icalcomponent_get_uid(event)),
                                           .title = icalcomponent_get_summary(event)});
                  });
  return occurrences;
}

}  // namespace

std::string Dataset::scratch(const std::string& name) const {
  std::string path = folder + "/" + name;
  for (const char* companion : {"", "-wal", "-shm"}) std::filesystem::remove_all(path + companion);
  return path;
}

void prepare(const Dataset& dataset) {
  std::filesystem::create_directories(dataset.folder);
  const Calendar calendar = makeCalendar(dataset.items);
  writeFile(dataset.ics(), calendar.text());
  Floor::make(dataset.scratch("floor.sqlite"), calendar.items, expandWithLibical(dataset.ics()));
  runProcess({ZUNO_BENCH_ZUNOCAL, "--store", dataset.scratch("store.sqlite"), "import", dataset.ics()});
}

void useBenchZone() {
  setenv("TZ", "Europe/Berlin", 1);
  tzset();
}

Window month(int number) {
  return {localTime(kFirstYear, 1 + number, 1), localTime(kFirstYear, 2 + number, 1)};
}

Window yearFrom(int dayNumber) {
  return {localTime(2026, 1, 1 + dayNumber), localTime(2027, 1, 1 + dayNumber)};
}

}  // namespace bench
