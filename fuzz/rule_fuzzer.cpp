// Two bytes of a start and the text of a rule; or the compact form of a series. Nothing may crash or hang,
// what is written reads the same again, and seeking finds what walking finds.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "eventkit/embedded/recurrence/expansion.h"
#include "eventkit/embedded/recurrence/series.h"

namespace {

using namespace ek::recurrence;
using std::chrono::days;
using std::chrono::seconds;

void require(bool holds) {
  if (!holds) std::abort();
}

void query(const Series& series) {
  const foundation::TimeZone& utc = *foundation::TimeZone::utc();
  const Extent extent = extentOf(series);
  require(extent.lo <= extent.hi);
  const Date start(series.start.time_since_epoch());
  std::vector<Occurrence> found;
  occurrencesIn(series, {start, start + std::chrono::hours(2)}, utc, found);
  for (const Occurrence& occurrence : found) require(occurrence.start <= occurrence.end);
  firstOccurrence(series, utc);
  occurrenceAt(series, series.start + days(7), utc);
}

void checkCompactForm(std::string_view bytes) {
  const std::optional<Decoded> decoded = decode(bytes);
  if (!decoded) return;
  const std::optional<Decoded> again = decode(encode(decoded->series, decoded->zoneKey));
  require(again && again->series == decoded->series && again->zoneKey == decoded->zoneKey);
  query(decoded->series);
}

void checkWalk(const Rule& rule, WallTime start) {
  const WallTime last = start + days(3000);
  std::vector<WallTime> walked;
  Expansion expansion(rule, start, false);
  expansion.limit(last);
  while (walked.size() < 60) {
    const std::optional<WallTime> next = expansion.next();
    if (!next) break;
    require(*next >= start && *next <= last && (walked.empty() || *next > walked.back()));
    walked.push_back(*next);
  }
  for (std::size_t i = 0; i < walked.size(); i += 7) {
    Expansion sought(rule, start, false);
    sought.limit(last);
    sought.seek(i == 0 ? start : walked[i - 1] + seconds(1));
    require(sought.next() == walked[i]);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  checkCompactForm(bytes);
  if (size < 2) return 0;
  const WallTime start{seconds((data[0] * 256 + data[1]) * std::int64_t{77'003})};
  const std::optional<Rule> rule = parseRule(bytes.substr(2));
  if (!rule) return 0;
  require(parseRule(formatRule(*rule)) == rule);
  checkWalk(*rule, start);
  Series series;
  series.start = start;
  series.duration = {0, 3600};
  series.rules = {*rule};
  prepare(series);
  query(series);
  checkCompactForm(encode(series, "Zone"));
  return 0;
}
