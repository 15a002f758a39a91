#include "eventkit/embedded/storage/item_index.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "eventkit/embedded/ical/values.h"

namespace ek::embedded {

namespace {

using foundation::WallTime;
using ical::Component;
using ical::Line;
using recurrence::Duration;
using recurrence::ExtraDate;
using recurrence::Override;
using recurrence::Series;
using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

// Items name one zone again and again: the last answer is kept.
class Zones {
 public:
  explicit Zones(const ZoneFinder& find) : find_(find) {}
  const KeyedZone& operator()(std::string_view tzid) {
    if (!isKnown_ || tzid != tzid_) {
      found_ = find_(tzid);
      tzid_ = tzid;
      isKnown_ = true;
    }
    return found_;
  }

 private:
  const ZoneFinder& find_;
  bool isKnown_ = false;
  std::string tzid_;
  KeyedZone found_;
};

const KeyedZone& utc() {
  static const KeyedZone zone{foundation::TimeZone::utc(), "UTC"};
  return zone;
}

const KeyedZone& zoneOfLine(const Line& line, Zones& zones) {
  static const KeyedZone floating;
  const std::optional<std::string_view> tzid = line.rawParameter("TZID");
  if (!tzid || tzid->empty()) return floating;
  return tzid->find('^') == std::string_view::npos ? zones(*tzid) : zones(*line.parameter("TZID"));
}

// `text`: the line's value or one of its list.
std::optional<ZonedTime> readTimeOf(const Line& line, std::string_view text, Zones& zones) {
  const std::optional<ical::DateTime> value = ical::parseDateTime(text);
  if (!value) return std::nullopt;
  ZonedTime time{.wall = value->wall, .isDate = value->isDate, .zone = {}};
  if (const auto kind = line.rawParameter("VALUE"); kind && ical::equalNames(*kind, "DATE") && !time.isDate) {
    time.wall = floor<days>(time.wall);
    time.isDate = true;
  }
  if (!time.isDate) time.zone = value->isUtc ? utc() : zoneOfLine(line, zones);
  return time;
}

std::optional<ZonedTime> readProperty(const Component& component, std::string_view name, Zones& zones) {
  const Line* line = component.find(name);
  return line ? readTimeOf(*line, line->value(), zones) : std::nullopt;
}

std::optional<Duration> readDuration(const Component& component) {
  const auto value = component.value("DURATION");
  return value ? ical::parseDuration(*value) : std::nullopt;
}

std::string titleOf(const Component& component) {
  return ical::decodeText(component.value("SUMMARY").value_or(std::string_view()));
}

bool isCancelled(const Component& component) { return hasStatus(component, "CANCELLED"); }

bool isOverride(const Component& component) { return component.find("RECURRENCE-ID") != nullptr; }

bool meansFollowingOnes(const Component& component) {
  const Line* line = component.find("RECURRENCE-ID");
  const auto range = line ? line->rawParameter("RANGE") : std::nullopt;
  return range && ical::equalNames(*range, "THISANDFUTURE");
}

// A date-time in UTC that means a local day, which Exchange and others write for all-day events: local
// midnight, or the last second before one. The zone is unknown, but no midnight is far from UTC's.
WallTime dayMeantBy(WallTime utcWall) {
  constexpr auto kAlmostHalfADay = std::chrono::hours(12) - seconds(1);
  if ((utcWall + seconds(1)).time_since_epoch() % std::chrono::minutes(1) == seconds(0))
    return floor<days>(utcWall + seconds(1) + kAlmostHalfADay) - days(1);
  return floor<days>(utcWall + kAlmostHalfADay);
}

// When an event starts and how long it is.
struct Placement {
  ZonedTime start;
  Moment startMoment, endMoment;
  Duration length;  // as every occurrence of a series has it
};

Moment after(const ZonedTime& start, const Duration& length) {
  ZonedTime end = start;
  end.wall += days(length.days);
  Moment moment = momentOf(end);
  moment.seconds += length.seconds;
  return moment;
}

// All-day events last whole days, at least one.
Duration allDayLength(const ZonedTime& start, const std::optional<ZonedTime>& end,
                      const std::optional<Duration>& duration) {
  seconds length = days(1);
  if (end) {
    length = end->wall - start.wall;
  } else if (duration) {
    length = days(duration->days) + seconds(duration->seconds);
  }
  return {.days = std::max<std::int64_t>(1, std::chrono::ceil<days>(length).count()), .seconds = 0};
}

Duration timedLength(const ZonedTime& start, std::optional<ZonedTime> end,
                     const std::optional<Duration>& duration) {
  if (!end) {
    const Duration length = duration.value_or(Duration());
    const bool isBackwards = length.days * 86400 + length.seconds < 0;
    return isBackwards ? Duration() : length;
  }
  // Without a zone of its own the end means the start's; beside a floating start no zone means anything.
  if (!end->zone.zone || !start.zone.zone) end->zone = start.zone;
  return {.days = 0, .seconds = std::max<std::int64_t>(0, momentOf(*end).seconds - momentOf(start).seconds)};
}

Placement placementAt(const ZonedTime& start, const Component& event, Zones& zones) {
  const std::optional<ZonedTime> end = readProperty(event, "DTEND", zones);
  const std::optional<Duration> duration = end ? std::nullopt : readDuration(event);
  Placement placement{.start = start, .startMoment = momentOf(start), .endMoment = {}, .length = {}};
  placement.length = start.isDate ? allDayLength(start, end, duration) : timedLength(start, end, duration);
  placement.endMoment = after(start, placement.length);
  return placement;
}

std::optional<Placement> placementOf(const Component& event, Zones& zones) {
  const std::optional<ZonedTime> start = readProperty(event, "DTSTART", zones);
  return start ? std::optional(placementAt(*start, event, zones)) : std::nullopt;
}

// Reads a series' components into the terms of the series: everything in its own zone.
class SeriesReader {
 public:
  SeriesReader(const ZonedTime& start, Zones& zones, std::string& why)
      : zones_(zones), why_(why), start_(start) {
    series_.start = start.wall;
    series_.isAllDay = start.isDate;
    series_.zone = start.zone.zone;
  }

  void readMaster(const Component& master, const Placement& placement) {
    series_.duration = placement.length;
    series_.title = titleOf(master);
    for (const Line& line : master.lines()) {
      if (line.is("RRULE")) {
        readRule(line, series_.rules);
      } else if (line.is("EXRULE")) {
        readRule(line, series_.exclusionRules);
      } else if (line.is("RDATE")) {
        readExtraDates(line);
      } else if (line.is("EXDATE")) {
        readExcludedDates(line);
      }
    }
  }

  // `original`: its RECURRENCE-ID, or what stands for it.
  void readOverride(const Component& component, const ZonedTime& original) {
    const WallTime place = inSeries(original);
    if (meansFollowingOnes(component) && why_.empty())
      why_ = "RECURRENCE-ID: what is to change the following occurrences too changes this one alone";
    if (isCancelled(component)) {
      series_.excludedDates.push_back(place);
      return;
    }
    const ZonedTime start = readProperty(component, "DTSTART", zones_).value_or(original);
    const Placement placement = placementAt(start, component, zones_);
    series_.overrides.push_back({.recurrenceId = place,
                                 .start = placement.startMoment,
                                 .end = placement.endMoment,
                                 .isAllDay = start.isDate,
                                 .title = titleOf(component)});
  }

  // For overrides without their series: nothing else is to be at its start.
  void beginAtFirstOverride() {
    series_.start = std::ranges::min_element(series_.overrides, {}, &Override::recurrenceId)->recurrenceId;
  }

  bool repeats() const { return !series_.rules.empty() || !series_.extraDates.empty(); }

  SeriesEvent take() {
    sortUnique(series_.excludedDates);
    sortUnique(series_.excludedDays);
    std::ranges::stable_sort(series_.extraDates, {}, &ExtraDate::start);
    keepLastOfEach(series_.extraDates, &ExtraDate::start);
    std::ranges::stable_sort(series_.overrides, {}, &Override::recurrenceId);
    keepLastOfEach(series_.overrides, &Override::recurrenceId);
    recurrence::prepare(series_);
    return {std::move(series_), std::move(start_.zone.key)};
  }

 private:
  WallTime inSeries(const ZonedTime& time) const { return placeInSeries(time, start_); }

  void readRule(const Line& line, std::vector<recurrence::Rule>& rules) {
    std::string reason;
    std::optional<recurrence::Rule> rule = recurrence::parseRule(line.value(), &reason);
    if (!rule) {
      if (why_.empty()) why_ = std::string(line.name()) + ": " + reason;
      return;
    }
    if (rule->until && series_.isAllDay)
      rule->until = {.wall = lastDayOf(*rule->until), .isDate = true, .isUtc = false};
    rules.push_back(*std::move(rule));
  }

  void readExtraDates(const Line& line) {
    for (const std::string_view value : ical::splitList(line.value())) {
      const std::size_t slash = value.find('/');
      const std::optional<ZonedTime> start = readTimeOf(line, value.substr(0, slash), zones_);
      if (!start) continue;
      ExtraDate extra{.start = inSeries(*start), .duration = {}};
      if (slash != std::string_view::npos && !start->isDate) {
        const std::string_view rest = value.substr(slash + 1);
        const std::optional<ZonedTime> end = readTimeOf(line, rest, zones_);
        extra.duration = timedLength(*start, end, ical::parseDuration(rest));
      }
      series_.extraDates.push_back(extra);
    }
  }

  void readExcludedDates(const Line& line) {
    for (const std::string_view value : ical::splitList(line.value())) {
      const std::optional<ZonedTime> time = readTimeOf(line, value, zones_);
      if (!time) continue;
      if (time->isDate && !series_.isAllDay) {
        series_.excludedDays.push_back(time->wall);
      } else {
        series_.excludedDates.push_back(inSeries(*time));
      }
    }
  }

  template <class T>
  static void sortUnique(std::vector<T>& values) {
    std::ranges::sort(values);
    values.erase(std::unique(values.begin(), values.end()), values.end());
  }

  template <class T, class Key>
  static void keepLastOfEach(std::vector<T>& sorted, Key key) {
    const auto isSame = [&](const T& a, const T& b) { return std::invoke(key, a) == std::invoke(key, b); };
    const auto firstKept = std::unique(sorted.rbegin(), sorted.rend(), isSame).base();
    sorted.erase(sorted.begin(), firstKept);
  }

  Zones& zones_;
  std::string& why_;
  ZonedTime start_;
  Series series_;
};

bool mayRepeat(const Component& master) { return master.find("RRULE") || master.find("RDATE"); }

SingleEvent singleEvent(const Component& event, const Placement& placement) {
  return {.start = placement.startMoment,
          .end = placement.endMoment,
          .isAllDay = placement.start.isDate,
          .title = titleOf(event)};
}

using Entry = decltype(ItemIndex::entry);

std::optional<Entry> indexWithMaster(const Component& master, const std::vector<const Component*>& overrides,
                                     Zones& zones, std::string& why) {
  const std::optional<Placement> placement = placementOf(master, zones);
  if (!placement) {
    why = master.find("DTSTART") ? "DTSTART is no date" : "there is no DTSTART";
    return std::nullopt;
  }
  if (overrides.empty() && !mayRepeat(master)) return singleEvent(master, *placement);
  SeriesReader reader(placement->start, zones, why);
  reader.readMaster(master, *placement);
  for (const Component* component : overrides) {
    if (const auto original = readProperty(*component, "RECURRENCE-ID", zones)) {
      reader.readOverride(*component, *original);
    } else if (why.empty()) {
      why = "RECURRENCE-ID is no date";
    }
  }
  if (overrides.empty() && !reader.repeats()) return singleEvent(master, *placement);
  return reader.take();
}

// Occurrences of a series that is not here: an invitation to some of them, say.
std::optional<Entry> indexOverridesAlone(const std::vector<const Component*>& overrides, Zones& zones,
                                         std::string& why) {
  std::optional<SeriesReader> reader;
  bool hasAny = false;
  for (const Component* component : overrides) {
    std::optional<ZonedTime> original = readProperty(*component, "RECURRENCE-ID", zones);
    if (!original) original = readProperty(*component, "DTSTART", zones);
    if (!original) continue;
    if (!reader) reader.emplace(*original, zones, why);
    if (isCancelled(*component)) continue;
    reader->readOverride(*component, *original);
    hasAny = true;
  }
  if (!hasAny) {
    why = "only occurrences that are cancelled or have no date, and not the series itself";
    return std::nullopt;
  }
  reader->beginAtFirstOverride();
  return reader->take();
}

std::optional<Moment> dueOf(const Component& task, Zones& zones) {
  if (const auto due = readProperty(task, "DUE", zones)) return momentOf(*due);
  const auto start = readProperty(task, "DTSTART", zones);
  const auto duration = readDuration(task);
  return start && duration ? std::optional(after(*start, *duration)) : std::nullopt;
}

ReminderEntry indexTask(const Component& task, const ZoneFinder& zoneFinder, Zones& zones) {
  ReminderEntry entry{.isCompleted = false,
                      .completion = readStamp(task, "COMPLETED", zoneFinder),
                      .due = dueOf(task, zones)};
  entry.isCompleted = entry.completion || hasStatus(task, "COMPLETED");
  return entry;
}

}  // namespace

std::optional<ItemIndex> indexItem(const std::vector<ical::Component>& components,
                                   const ZoneFinder& zoneFinder, std::string& why) {
  why.clear();
  if (components.empty()) {
    why = "there is no component";
    return std::nullopt;
  }
  const bool isTask = components.front().is("VTODO");
  if (!isTask && !components.front().is("VEVENT")) {
    why = std::string(components.front().name()) + " is neither an event nor a task";
    return std::nullopt;
  }
  const Component* master = nullptr;
  std::vector<const Component*> overrides;
  for (const Component& component : components) {
    if (!component.is(components.front().name())) continue;
    if (isOverride(component)) {
      overrides.push_back(&component);
    } else if (!master) {
      master = &component;
    }
  }
  const Component& leading = master ? *master : components.front();
  Zones zones(zoneFinder);
  std::optional<Entry> entry = isTask   ? Entry(indexTask(leading, zoneFinder, zones))
                               : master ? indexWithMaster(*master, overrides, zones, why)
                                        : indexOverridesAlone(overrides, zones, why);
  if (!entry) return std::nullopt;
  if (isTask && master && !overrides.empty())
    why = "RECURRENCE-ID: a repeating to-do is shown as a whole, without what changes one occurrence";
  return ItemIndex{.kind = isTask ? EntityType::reminder : EntityType::event,
                   .uid = ical::decodeText(ical::trimmed(leading.value("UID").value_or(std::string_view()))),
                   .created = readStamp(leading, "CREATED", zoneFinder),
                   .entry = *std::move(entry)};
}

std::optional<ZonedTime> readTime(const ical::Line& line, const ZoneFinder& zoneFinder) {
  Zones zones(zoneFinder);
  return readTimeOf(line, line.value(), zones);
}

std::optional<Date> readStamp(const ical::Component& component, std::string_view name,
                              const ZoneFinder& zoneFinder) {
  Zones zones(zoneFinder);
  const std::optional<ZonedTime> time = readProperty(component, name, zones);
  return time ? std::optional(instantOf(momentOf(*time), *utc().zone)) : std::nullopt;
}

bool hasStatus(const ical::Component& component, std::string_view status) {
  const auto value = component.value("STATUS");
  return value && ical::equalNames(ical::trimmed(*value), status);
}

WallTime lastDayOf(const recurrence::Until& until) {
  const bool endsADay = until.isUtc && until.wall.time_since_epoch() % std::chrono::minutes(1) == seconds(59);
  return endsADay ? dayMeantBy(until.wall) : WallTime(floor<days>(until.wall));
}

WallTime placeInSeries(const ZonedTime& time, const ZonedTime& start) {
  if (start.isDate)
    return time.zone.zone == utc().zone ? dayMeantBy(time.wall) : WallTime(floor<days>(time.wall));
  if (time.isDate) return time.wall + (start.wall - floor<days>(start.wall));
  const auto &zone = time.zone.zone, &seriesZone = start.zone.zone;
  if (!zone || !seriesZone || zone == seriesZone) return time.wall;
  return seriesZone->wallTimeOf(zone->instantOf(time.wall));
}

Moment momentOf(const ZonedTime& time) {
  if (!time.zone.zone) return {.seconds = time.wall.time_since_epoch().count(), .isFloating = true};
  return {.seconds = time.zone.zone->instantOf(time.wall).time_since_epoch().count(), .isFloating = false};
}

Date instantOf(const Moment& moment, const foundation::TimeZone& defaultZone) {
  const seconds since(moment.seconds);
  return moment.isFloating ? defaultZone.instantOf(WallTime(since)) : Date(since);
}

}  // namespace ek::embedded
