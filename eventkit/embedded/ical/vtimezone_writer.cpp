// Writes a VTIMEZONE: changes of clock that come back every year become yearly rules, all others are listed.
#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <tuple>

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/ical/zones.h"

namespace ek::ical {

namespace {

using foundation::Date;
using foundation::TimeZone;
using foundation::WallTime;
using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

constexpr int kFirstYear = 1970, kEndYear = 2100;
constexpr std::array<const char*, 7> kWeekdays = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
// Fewer changes than this are listed rather than told by a rule.
constexpr std::size_t kShortestRule = 3;

Date yearBegin(int year) { return std::chrono::sys_days(std::chrono::year(year) / 1 / 1); }

// A change of clock, seen on the clock before it.
struct Change {
  WallTime onset;
  Date at;
};

// Changes that differ in their date only are told by one part of the VTIMEZONE.
struct Kind {
  seconds from, to;
  std::string name;
  bool isDaylight() const { return to > from; }
  bool operator<(const Kind& other) const {
    return std::tie(from, to, name) < std::tie(other.from, other.to, other.name);
  }
};

struct Day {
  int year;
  unsigned month, day, weekday;
  seconds time;
};

Day dayOf(WallTime wall) {
  const auto day = floor<days>(wall);
  const std::chrono::year_month_day date(day);
  return {static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
          static_cast<unsigned>(date.day()), std::chrono::weekday(day).c_encoding(), wall - day};
}

unsigned lengthOfMonth(const Day& day) {
  const std::chrono::year_month_day_last last(std::chrono::year(day.year),
                                              std::chrono::month_day_last(std::chrono::month(day.month)));
  return static_cast<unsigned>(last.day());
}

// The yearly rule that names all changes of a run so far: a weekday of a month, the n-th, the last one, or
// the one within certain seven days.
class YearlyRun {
 public:
  explicit YearlyRun(const Change& first) : day_(dayOf(first.onset)), changes_{first} {
    ordinal_ = (day_.day - 1) / 7 + 1;
    isLast_ = day_.day + 7 > lengthOfMonth(day_);
    earliest_ = latest_ = day_.day;
  }

  bool take(const Change& change) {
    const Day day = dayOf(change.onset);
    const unsigned earliest = std::min(earliest_, day.day), latest = std::max(latest_, day.day);
    if (day.year != day_.year + static_cast<int>(changes_.size()) || day.month != day_.month ||
        day.weekday != day_.weekday || day.time != day_.time)
      return false;
    const std::optional<unsigned> ordinal = ordinal_ == (day.day - 1) / 7 + 1 ? ordinal_ : std::nullopt;
    const bool isLast = isLast_ && day.day + 7 > lengthOfMonth(day);
    if (!ordinal && !isLast && latest - earliest > 6) return false;
    ordinal_ = ordinal;
    isLast_ = isLast;
    earliest_ = earliest;
    latest_ = latest;
    changes_.push_back(change);
    return true;
  }

  const std::vector<Change>& changes() const { return changes_; }

  std::string rule() const {
    std::string rule = "FREQ=YEARLY;BYMONTH=" + std::to_string(day_.month) + ";BYDAY=";
    const char* weekday = kWeekdays[day_.weekday];
    if (isLast_) return rule + "-1" + weekday;
    if (ordinal_) return rule + std::to_string(*ordinal_) + weekday;
    rule += std::string(weekday) + ";BYMONTHDAY=";
    // Any seven days that hold all of them name the same dates in the years of the run.
    const unsigned first = std::min(earliest_, lengthOfMonth(day_) - 6);
    for (unsigned day = first; day < first + 7; ++day)
      rule += (day == first ? "" : ",") + std::to_string(day);
    return rule;
  }

 private:
  Day day_;
  std::vector<Change> changes_;
  std::optional<unsigned> ordinal_;
  bool isLast_ = false;
  unsigned earliest_ = 0, latest_ = 0;
};

std::string written(WallTime wall, bool isUtc = false) {
  return formatDateTime({.wall = wall, .isUtc = isUtc});
}

Component part(const Kind& kind, WallTime start) {
  Component component(kind.isDaylight() ? "DAYLIGHT" : "STANDARD");
  component.add(Line::make("DTSTART", written(start)));
  component.add(Line::make("TZOFFSETFROM", formatUtcOffset(kind.from)));
  component.add(Line::make("TZOFFSETTO", formatUtcOffset(kind.to)));
  if (!kind.name.empty()) component.add(Line::make("TZNAME", encodeText(kind.name)));
  return component;
}

Component repeated(const Kind& kind, const YearlyRun& run) {
  const Change &first = run.changes().front(), &last = run.changes().back();
  Component component = part(kind, first.onset);
  const bool goesOn = dayOf(last.onset).year == kEndYear - 1;
  const std::string until = goesOn ? "" : ";UNTIL=" + written(WallTime(last.at.time_since_epoch()), true);
  component.add(Line::make("RRULE", run.rule() + until));
  return component;
}

Component listed(const Kind& kind, const std::vector<Change>& changes) {
  Component component = part(kind, changes.front().onset);
  for (std::size_t at = 1; at < changes.size(); ++at)
    component.add(Line::make("RDATE", written(changes[at].onset)));
  return component;
}

void addParts(const Kind& kind, const std::vector<Change>& changes, Component& vtimezone) {
  std::vector<Change> single;
  for (std::size_t at = 0; at < changes.size();) {
    YearlyRun run(changes[at]);
    std::size_t end = at + 1;
    while (end < changes.size() && run.take(changes[end])) ++end;
    if (run.changes().size() >= kShortestRule) {
      vtimezone.add(repeated(kind, run));
      at = end;
    } else {
      single.push_back(changes[at++]);
    }
  }
  if (!single.empty()) vtimezone.add(listed(kind, single));
}

}  // namespace

Component vtimezoneFor(const TimeZone& zone, std::string_view fallbackName) {
  Component vtimezone("VTIMEZONE");
  vtimezone.add(
      Line::make("TZID", encodeText(zone.name().empty() ? fallbackName : std::string_view(zone.name()))));

  const Date begin = yearBegin(kFirstYear);
  seconds offset = zone.offsetAt(begin);
  vtimezone.add(part({.from = offset, .to = offset, .name = zone.letters(begin)},
                     WallTime(begin.time_since_epoch() + offset)));

  std::map<Kind, std::vector<Change>> kinds;
  for (const TimeZone::Transition& transition :
       zone.transitionsBetween(begin + seconds(1), yearBegin(kEndYear))) {
    const Kind kind{.from = offset, .to = transition.offset, .name = transition.abbreviation};
    kinds[kind].push_back(
        {.onset = WallTime(transition.at.time_since_epoch() + offset), .at = transition.at});
    offset = transition.offset;
  }
  for (const auto& [kind, changes] : kinds) addParts(kind, changes, vtimezone);
  return vtimezone;
}

}  // namespace ek::ical
