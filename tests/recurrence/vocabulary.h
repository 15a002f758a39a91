// Dates and series as the tests write them.
#pragma once

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/recurrence/rule.h"
#include "eventkit/embedded/recurrence/series.h"
#include "foundation/date.h"
#include "foundation/time_zone.h"

namespace ek::recurrence {

// "19970902T090000" or "19970902".
inline WallTime wall(std::string_view text) {
  const auto field = [text](std::size_t at, std::size_t length) {
    return at < text.size() ? static_cast<unsigned>(std::stoul(std::string(text.substr(at, length)))) : 0U;
  };
  return foundation::wallTimeFrom(
      {static_cast<int>(field(0, 4)), field(4, 2), field(6, 2), field(9, 2), field(11, 2), field(13, 2)});
}

inline Date utcDate(std::string_view text) { return Date(wall(text).time_since_epoch()); }

// The same back, as a date when there is no time of day.
inline std::string textOf(WallTime time, bool isDate = false) {
  const foundation::WallFields fields = foundation::fieldsOf(time);
  char text[32];
  const int length = std::snprintf(text, sizeof text, "%04d%02u%02uT%02u%02u%02u", fields.year, fields.month,
                                   fields.day, fields.hour, fields.minute, fields.second);
  return {text, isDate ? 8 : static_cast<std::size_t>(length)};
}

inline Rule rule(std::string_view text) {
  std::string why;
  const std::optional<Rule> parsed = parseRule(text, &why);
  EXPECT_TRUE(parsed) << text << ": " << why;
  return parsed.value_or(Rule());
}

// A date makes an all-day series; without a zone it floats. An hour, or a day, long.
inline Series seriesOf(std::string_view start, const char* zone, std::string_view ruleText) {
  Series series;
  series.start = wall(start);
  series.isAllDay = start.size() == 8;
  if (zone != nullptr) {
    series.zone = foundation::TimeZone::named(zone);
    EXPECT_TRUE(series.zone) << zone;
  }
  series.duration = series.isAllDay ? Duration{1, 0} : Duration{0, 3600};
  if (!ruleText.empty()) series.rules.push_back(rule(ruleText));
  prepare(series);
  return series;
}

inline const foundation::TimeZone& zoneOf(const Series& series) {
  return series.zone ? *series.zone : *foundation::TimeZone::utc();
}

// The starts in a window, on the series' own clock.
inline std::vector<std::string> startsIn(const Series& series, Date from, Date to) {
  std::vector<Occurrence> found;
  occurrencesIn(series, {from, to}, *foundation::TimeZone::utc(), found);
  std::ranges::sort(found, {}, &Occurrence::start);
  std::vector<std::string> starts;
  for (const Occurrence& occurrence : found)
    starts.push_back(textOf(zoneOf(series).wallTimeOf(occurrence.start), series.isAllDay));
  return starts;
}

inline std::vector<std::string> startsIn(const Series& series, std::string_view from, std::string_view to) {
  return startsIn(series, zoneOf(series).instantOf(wall(from)), zoneOf(series).instantOf(wall(to)));
}

}  // namespace ek::recurrence
