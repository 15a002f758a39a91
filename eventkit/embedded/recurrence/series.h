// A whole series: start, zone, rules, extra and excluded dates, and the occurrences that were changed. What
// is needed to answer a query, and nothing else: it is kept in compact form beside each repeating item.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/recurrence/rule.h"
#include "foundation/time_zone.h"

namespace ek::recurrence {

using foundation::Date;

// A length as RFC 5545 means it: days in wall-clock time (DURATION:P1D, all-day events), seconds exact.
struct Duration {
  std::int64_t days = 0;
  std::int64_t seconds = 0;
  bool operator==(const Duration&) const = default;
};

// Where something lies: an instant, or wall-clock time in whatever zone is the default when it is asked.
struct Moment {
  std::int64_t seconds = 0;  // since 1970, UTC for an instant, else of the wall clock
  bool isFloating = false;
  bool operator==(const Moment&) const = default;
};

struct ExtraDate {
  WallTime start{};
  std::optional<Duration> duration;  // RDATE with periods
  bool operator==(const ExtraDate&) const = default;
};

// An occurrence with a component of its own (RECURRENCE-ID).
struct Override {
  WallTime recurrenceId{};  // in the series' zone; dates at 00:00
  Moment start, end;        // of the component itself
  bool isAllDay = false;
  std::string title;
  bool operator==(const Override&) const = default;
};

struct Series {
  WallTime start{};
  bool isAllDay = false;
  std::shared_ptr<const foundation::TimeZone> zone;  // null: floating (all-day series too)
  Duration duration;
  std::vector<Rule> rules;              // RRULE; several are united
  std::vector<Rule> exclusionRules;     // EXRULE, of older calendars
  std::vector<ExtraDate> extraDates;    // RDATE, ascending
  std::vector<WallTime> excludedDates;  // EXDATE with a time, ascending
  std::vector<WallTime> excludedDays;   // EXDATE;VALUE=DATE of a timed series: the whole day, ascending
  std::vector<Override> overrides;      // ascending by recurrenceId
  // For each rule with COUNT, worked out once when the item is stored: the last start it names.
  // Parallel to rules; nothing where the rule has no COUNT, or one whose end lies absurdly far.
  std::vector<std::optional<WallTime>> lastStarts;
  std::string title;  // of the series
  bool operator==(const Series&) const = default;
};

// Fills lastStarts. The start counts as the first occurrence of each rule, whether the rule names it or not.
void prepare(Series& series);

struct Occurrence {
  Date start, end;             // of an all-day occurrence: 00:00 of the first day, 00:00 after the last
  WallTime recurrenceId{};     // where it would have been, in the series' zone
  std::int32_t override = -1;  // index into Series::overrides, -1 for none
};

// Minute by minute for fifteen years. No calendar means more than that, but anyone may import a file that
// asks for every second of all time, and an answer has to fit into memory.
constexpr std::size_t kMostOccurrences = 8'000'000;

// Half-open, except that an occurrence of no length exactly at `start` belongs to it; start == end is that
// one instant. Of more than `most` occurrences it holds the first ones.
struct Window {
  Date start, end;
  std::size_t most = kMostOccurrences;
};

// Appends the occurrences that overlap the window, in no particular order. `defaultZone` is for floating
// ones. Endless rules are followed to the window's end. Costs what the window holds, not what came before.
// An override is there even where its place is excluded, or named by nothing. A start that a change of clock
// moves onto another one of the series is not there twice.
void occurrencesIn(const Series& series, const Window& window, const foundation::TimeZone& defaultZone,
                   std::vector<Occurrence>& out);

// The first occurrence that is left, by original place; nothing when all are excluded.
std::optional<Occurrence> firstOccurrence(const Series& series, const foundation::TimeZone& defaultZone);
// Whether the series has an occurrence (overridden or not) whose original place is `recurrenceId`.
std::optional<Occurrence> occurrenceAt(const Series& series, WallTime recurrenceId,
                                       const foundation::TimeZone& defaultZone);
// How many original places of the first rule, the start included, lie before `before`, excluded ones counted:
// what COUNT counts.
std::int64_t countBefore(const Series& series, WallTime before);

// The instants between which everything of the series lies, floating ones widened to any zone's; hi is
// Date::max() for an endless series.
struct Extent {
  Date lo, hi;
};
Extent extentOf(const Series& series);

// Compact form. decode gives nothing for bytes that encode did not make. Zones are named by the key under
// which `zoneOf` finds them again (a TZID, or what the store calls an own VTIMEZONE); an empty key is
// floating.
std::string encode(const Series& series, std::string_view zoneKey);
struct Decoded {
  Series series;  // without its zone
  std::string zoneKey;
};
std::optional<Decoded> decode(std::string_view bytes);

}  // namespace ek::recurrence
