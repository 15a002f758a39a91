#include "eventkit/embedded/recurrence/series.h"

#include <algorithm>

#include "eventkit/embedded/recurrence/calendar.h"
#include "eventkit/embedded/recurrence/places.h"

namespace ek::recurrence {

namespace {

using foundation::TimeZone;
using std::chrono::days;
using std::chrono::hours;
using std::chrono::seconds;

// No two clocks of one moment are further apart, and no zone has ever moved its clock further.
constexpr hours kWidestOffset{26};
// Far beyond the years that are looked at, near enough to calculate with.
constexpr std::int64_t kMostDays = 4'000'000, kMostSeconds = kMostDays * kDaySeconds;
constexpr WallTime kFirstWall{seconds(-kMostSeconds)}, kLastWall{seconds(kMostSeconds)};

Date clamped(Date date) {
  return std::clamp(date, Date(seconds(-kMostSeconds)), Date(seconds(kMostSeconds)));
}

Duration clamped(Duration duration) {
  return {std::clamp<std::int64_t>(duration.days, 0, kMostDays),
          std::clamp<std::int64_t>(duration.seconds, -kMostSeconds, kMostSeconds)};
}

seconds longestOf(const Series& series) {
  const auto lengthOf = [](const Duration& duration) {
    const Duration length = clamped(duration);
    return days(length.days) + seconds(std::max<std::int64_t>(length.seconds, 0));
  };
  seconds longest = lengthOf(series.duration);
  for (const ExtraDate& extra : series.extraDates)
    if (extra.duration) longest = std::max<seconds>(longest, lengthOf(*extra.duration));
  return longest + days(series.isAllDay ? 1 : 0);
}

Date instantOf(const Moment& moment, const TimeZone& defaultZone) {
  const Date date = clamped(Date(seconds(moment.seconds)));
  return moment.isFloating ? defaultZone.instantOf(WallTime(date.time_since_epoch())) : date;
}

Occurrence occurrenceOf(const Override& override, std::size_t index, const TimeZone& defaultZone) {
  const Date start = instantOf(override.start, defaultZone);
  return {start, std::max(start, instantOf(override.end, defaultZone)), override.recurrenceId,
          static_cast<std::int32_t>(index)};
}

Date endOf(const Series& series, const Place& place, Date start, const TimeZone& zone) {
  Duration length =
      clamped(place.extra != nullptr && place.extra->duration ? *place.extra->duration : series.duration);
  if (series.isAllDay) length.days = std::max<std::int64_t>(length.days, 1);
  if (length.days != 0) start = zone.instantOf(place.wall + days(length.days));
  return start + seconds(length.seconds);
}

Occurrence occurrenceOf(const Series& series, const Place& place, const TimeZone& zone) {
  const Date start = zone.instantOf(place.wall);
  return {start, std::max(start, endOf(series, place, start, zone)), place.wall, -1};
}

const Override* overrideAt(const Series& series, WallTime recurrenceId) {
  const auto found = std::ranges::lower_bound(series.overrides, recurrenceId, {}, &Override::recurrenceId);
  return found != series.overrides.end() && found->recurrenceId == recurrenceId ? &*found : nullptr;
}

std::size_t indexOf(const Series& series, const Override& override) {
  return static_cast<std::size_t>(&override - series.overrides.data());
}

bool overlaps(const Occurrence& occurrence, const Window& window) {
  const bool startsInTime =
      occurrence.start < window.end || (window.start == window.end && occurrence.start == window.start);
  const bool isOpenAtStart = occurrence.end > window.start ||
                             (occurrence.start == occurrence.end && occurrence.start == window.start);
  return startsInTime && isOpenAtStart;
}

const TimeZone& zoneOf(const Series& series, const TimeZone& defaultZone) {
  return series.zone ? *series.zone : defaultZone;
}

// Keeps the series' occurrences ascending. A start in a skipped hour may have been moved onto one that the
// series names itself: they are one, and keep the place that they are named by.
void add(std::vector<Occurrence>& out, std::size_t firstOfSeries, const Occurrence& occurrence) {
  std::size_t at = out.size();
  while (at > firstOfSeries && out[at - 1].start > occurrence.start) --at;
  if (at > firstOfSeries && out[at - 1].start == occurrence.start)
    out[at - 1] = occurrence;
  else
    out.insert(out.begin() + static_cast<std::ptrdiff_t>(at), occurrence);
}

// On the series' clock, as if no hour were repeated.
WallTime lastWallOf(const Series& series, const Until& until) {
  const bool isInstant = until.isUtc && series.zone && !series.isAllDay;
  return isInstant ? series.zone->wallTimeOf(Date(until.wall.time_since_epoch())) : until.wall;
}

}  // namespace

void prepare(Series& series) {
  series.lastStarts.clear();
  for (const Rule& rule : series.rules)
    series.lastStarts.push_back(rule.count ? lastOfCount(rule, series.start, series.isAllDay) : std::nullopt);
}

void occurrencesIn(const Series& series, const Window& window, const TimeZone& defaultZone,
                   std::vector<Occurrence>& out) {
  const Window asked{clamped(window.start), clamped(window.end), window.most};
  if (asked.end < asked.start) return;
  for (const Override& override : series.overrides) {
    const Occurrence occurrence = occurrenceOf(override, indexOf(series, override), defaultZone);
    if (overlaps(occurrence, asked)) out.push_back(occurrence);
  }
  const TimeZone& zone = zoneOf(series, defaultZone);
  const std::size_t firstOfSeries = out.size();
  Places places(series, zone, zone.wallTimeOf(asked.start - longestOf(series)) - kWidestOffset,
                zone.wallTimeOf(asked.end) + kWidestOffset);
  while (const std::optional<Place> place = places.next()) {
    if (out.size() - firstOfSeries >= asked.most) break;
    if (overrideAt(series, place->wall) != nullptr) continue;
    const Occurrence occurrence = occurrenceOf(series, *place, zone);
    if (overlaps(occurrence, asked)) add(out, firstOfSeries, occurrence);
  }
}

std::optional<Occurrence> firstOccurrence(const Series& series, const TimeZone& defaultZone) {
  const TimeZone& zone = zoneOf(series, defaultZone);
  const Override* override = series.overrides.empty() ? nullptr : &series.overrides.front();
  const WallTime last = override != nullptr ? override->recurrenceId : kLastWall;
  const std::optional<Place> place = Places(series, zone, kFirstWall, last).next();
  if (override != nullptr && (!place || place->wall >= override->recurrenceId))
    return occurrenceOf(*override, 0, defaultZone);
  if (!place) return std::nullopt;
  return occurrenceOf(series, *place, zone);
}

std::optional<Occurrence> occurrenceAt(const Series& series, WallTime recurrenceId,
                                       const TimeZone& defaultZone) {
  if (const Override* override = overrideAt(series, recurrenceId))
    return occurrenceOf(*override, indexOf(series, *override), defaultZone);
  const TimeZone& zone = zoneOf(series, defaultZone);
  const std::optional<Place> place = Places(series, zone, recurrenceId, recurrenceId).next();
  if (!place) return std::nullopt;
  return occurrenceOf(series, *place, zone);
}

std::int64_t countBefore(const Series& series, WallTime before) {
  if (series.rules.empty()) return series.start < before ? 1 : 0;
  const Rule& rule = series.rules.front();
  if (rule.until && rule.until->isUtc)
    before = std::min(before, lastWallOf(series, *rule.until) + seconds(1));
  const std::int64_t count = countOfRuleBefore(rule, series.start, series.isAllDay, before);
  return rule.count ? std::min(count, *rule.count) : count;
}

Extent extentOf(const Series& series) {
  const std::shared_ptr<const TimeZone> utc = TimeZone::utc();
  const seconds margin = series.zone ? seconds(0) : seconds(kWidestOffset);
  const TimeZone& zone = zoneOf(series, *utc);
  const Occurrence first = occurrenceOf(series, {series.start, nullptr}, zone);
  Extent extent{first.start - margin, first.end + margin};
  const auto cover = [&extent](Date start, Date end, seconds slack) {
    extent.lo = std::min(extent.lo, start - slack);
    extent.hi = std::max(extent.hi, end + slack);
  };
  for (const ExtraDate& extra : series.extraDates) {
    const Occurrence occurrence = occurrenceOf(series, {extra.start, &extra}, zone);
    cover(occurrence.start, occurrence.end, margin);
  }
  for (const Override& override : series.overrides) {
    const bool isFloating = override.start.isFloating || override.end.isFloating;
    const Occurrence occurrence = occurrenceOf(override, 0, *utc);
    cover(occurrence.start, occurrence.end, isFloating ? seconds(kWidestOffset) : seconds(0));
  }
  for (std::size_t i = 0; i < series.rules.size(); ++i) {
    const std::optional<Until>& until = series.rules[i].until;
    if (i < series.lastStarts.size() && series.lastStarts[i]) {
      const Occurrence last = occurrenceOf(series, {*series.lastStarts[i], nullptr}, zone);
      cover(last.start, last.end, margin);
    } else if (until) {
      const Occurrence last = occurrenceOf(series, {lastWallOf(series, *until), nullptr}, zone);
      cover(first.start, last.end, margin + hours(2));
    } else {
      extent.hi = Date::max();
    }
  }
  return extent;
}

}  // namespace ek::recurrence
