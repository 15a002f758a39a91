#include "eventkit/embedded/store/resource.h"

#include <algorithm>
#include <iterator>

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/recurrence/expansion.h"
#include "eventkit/embedded/store/fields.h"
#include "eventkit/embedded/store/item_edit.h"
#include "eventkit/embedded/store/rule_text.h"
#include "eventkit/embedded/store/rules.h"

namespace ek::embedded {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

ZonedTime zoned(const TimeForm& form, WallTime wall) {
  using Kind = TimeForm::Kind;
  const bool hasZone = form.kind == Kind::utc || form.kind == Kind::zoned;
  return {.wall = wall,
          .isDate = form.kind == Kind::day,
          .zone = hasZone ? KeyedZone{form.zone, form.tzid} : KeyedZone{}};
}

// UNTIL where it belongs after the series has moved.
recurrence::Until moved(const recurrence::Until& until, const TimeForm& from, const TimeForm& to,
                        seconds shift) {
  const Date last = lastInstantOf(until, zoned(from, until.wall));
  const WallTime wall = from.zone->wallTimeOf(last);
  const bool becomesDay = to.kind == TimeForm::Kind::day;
  const bool wasDay = from.kind == TimeForm::Kind::day;
  if (wasDay && !becomesDay) {
    const WallTime endOfDay = floor<days>(wall + shift) + days(1) - seconds(1);
    return untilAt(to.instantOf(endOfDay), zoned(to, endOfDay));
  }
  return untilAt(to.instantOf(wall + shift), zoned(to, wall));
}

// Of a master, after its start was moved without its end: keeps the length.
void moveEnd(ical::Component& component, const ZonedTime& oldStart, const TimeForm& form, WallTime newStart,
             const ZoneFinder& zones) {
  const ical::Line* line = component.find("DTEND");
  if (line == nullptr) return;
  const std::optional<ZonedTime> end = readTime(*line, zones);
  if (!end) return;
  if (end->isDate) {
    component.set(
        line->withValue(dayForm().value(end->wall + (floor<days>(newStart) - floor<days>(oldStart.wall)))));
    return;
  }
  const TimeForm endForm = formOf(*line, zones);
  const Date oldInstant = form.instantOf(oldStart.wall);
  const seconds length = endForm.instantOf(end->wall) - oldInstant;
  const Date start = form.instantOf(newStart);
  writeEnd(component, endForm, start, start + length);
}

// The places of a series from that one on, of an endless one those of ten years. `from`: its instant.
std::vector<WallTime> placesFrom(const recurrence::Series& series, WallTime place, Date from) {
  constexpr auto kTenYears = days(3653);
  // A last one without a length begins where the series ends.
  const Date to =
      std::min(recurrence::extentOf(series).hi, std::max(from, foundation::now()) + kTenYears) + seconds(1);
  std::vector<recurrence::Occurrence> occurrences;
  recurrence::occurrencesIn(series, {from, to}, *TimeZone::defaultZone(), occurrences);
  std::vector<WallTime> found;
  for (const recurrence::Occurrence& each : occurrences)
    if (each.recurrenceId >= place) found.push_back(each.recurrenceId);
  std::ranges::sort(found);
  return found;
}

}  // namespace

std::string Resource::text() const {
  std::string text;
  for (const ical::Component& component : components_) text += component.text();
  return text;
}

ItemIndex Resource::index() const {
  std::string why;
  std::optional<ItemIndex> index = indexItem(components_, zones_, why);
  if (!index) throw Exception("the event cannot be stored: " + why);
  return *std::move(index);
}

ical::Component* Resource::overrideAt(WallTime place) {
  const SeriesPlaces all = places();
  const auto own = std::ranges::find_if(
      components_, [&](const ical::Component& component) { return all.of(component) == place; });
  return own == components_.end() ? nullptr : &*own;
}

TimeForm Resource::form() const {
  const ical::Line* line = master().find("DTSTART");
  return line == nullptr ? localForm() : formOf(*line, zones_);
}

WallTime Resource::start() const {
  const ical::Line* line = master().find("DTSTART");
  const std::optional<ZonedTime> time = line == nullptr ? std::nullopt : readTime(*line, zones_);
  return time ? time->wall : WallTime{};
}

recurrence::Series Resource::bareSeries() const {
  ItemIndex index = Resource({master()}, zones_).index();
  auto* entry = std::get_if<SeriesEvent>(&index.entry);
  recurrence::Series series;
  if (entry != nullptr) {
    series = std::move(entry->series);
  } else {
    const TimeForm written = form();
    series.start = start();
    series.isAllDay = written.kind == TimeForm::Kind::day;
    series.zone = zoned(written, series.start).zone.zone;
  }
  series.excludedDates.clear();
  series.excludedDays.clear();
  series.exclusionRules.clear();
  return series;
}

bool Resource::isNamedByRules(WallTime place) const {
  recurrence::Series series = bareSeries();
  series.extraDates.clear();
  return recurrence::occurrenceAt(series, place, *TimeZone::defaultZone()).has_value();
}

std::int64_t Resource::countBefore(const recurrence::Rule& rule, WallTime place) const {
  recurrence::Series series = bareSeries();
  series.extraDates.clear();
  series.rules = {rule};
  recurrence::prepare(series);
  return recurrence::countBefore(series, place);
}

void Resource::exclude(WallTime place) {
  unexclude(place);
  std::erase_if(components_, [all = places(), place](const ical::Component& component) {
    return all.of(component) == place;
  });
  if (components_.empty() || !hasMaster()) return;
  master().add(form().line("EXDATE", place));
  goIfStartIsExcluded();
}

// What occurs once is not asked for excluded dates.
void Resource::goIfStartIsExcluded() {
  bool isExcluded = false;
  mapDates("EXDATE", places(), [&, first = start()](WallTime each) {
    isExcluded = isExcluded || each == first;
    return std::optional(each);
  });
  if (isExcluded && std::holds_alternative<SingleEvent>(index().entry)) components_.clear();
}

void Resource::unexclude(WallTime place) {
  mapDates("EXDATE", places(),
           [place](WallTime each) { return each == place ? std::nullopt : std::optional(each); });
}

void Resource::endBefore(WallTime place) {
  const TimeForm written = form();
  const Date last = written.instantOf(place) - seconds(1);
  editRules([&](const ical::Line& line) -> std::optional<std::string> {
    const auto rule = recurrence::parseRule(line.value());
    if (!rule) return std::string(line.value());
    if (place <= start()) return std::nullopt;
    if (rule->count) return ruleWithCount(line.value(), countBefore(*rule, place));
    if (rule->until && lastInstantOf(*rule->until, zoned(written, place)) <= last)
      return std::string(line.value());
    return ruleWithUntil(line.value(), untilAt(last, zoned(written, place)));
  });
  const SeriesPlaces all = places();
  const Mapping earlier = [place](WallTime each) {
    return each < place ? std::optional(each) : std::nullopt;
  };
  mapDates("EXDATE", all, earlier);
  mapDates("RDATE", all, earlier);
  mapOverrides(all, earlier);
  // The start is an occurrence whatever the rules say; what is left are extra dates before it.
  if (components_.empty() || !hasMaster() || place > start()) return;
  master().add(written.line("EXDATE", start()));
  goIfStartIsExcluded();
}

void Resource::beginAt(WallTime place, WallTime newStart) {
  const TimeForm written = form();
  const Date first = written.instantOf(newStart);
  editRules([&](const ical::Line& line) -> std::optional<std::string> {
    const auto rule = recurrence::parseRule(line.value());
    if (!rule) return std::string(line.value());
    if (rule->count) {
      const std::int64_t left = *rule->count - countBefore(*rule, newStart);
      return left > 0 ? std::optional(ruleWithCount(line.value(), left)) : std::nullopt;
    }
    const bool hasEnded = rule->until && lastInstantOf(*rule->until, zoned(written, place)) < first;
    return hasEnded ? std::nullopt : std::optional(std::string(line.value()));
  });
  const SeriesPlaces all = places();
  const Mapping from = [place](WallTime each) { return each >= place ? std::optional(each) : std::nullopt; };
  mapDates("EXDATE", all, from);
  mapDates("RDATE", all, [place, newStart](WallTime each) {
    return each >= place && each != newStart ? std::optional(each) : std::nullopt;
  });
  mapOverrides(all, from);
  const ZonedTime oldStart = zoned(written, start());
  ical::Component& series = master();
  series.set(series.find("DTSTART")->withValue(written.value(newStart)));
  moveEnd(series, oldStart, written, newStart, zones_);
}

std::vector<WallTime> Resource::excludedByRules(WallTime place) const {
  if (master().find("EXRULE") == nullptr) return {};
  const ItemIndex whole = Resource({master()}, zones_).index();
  const auto* entry = std::get_if<SeriesEvent>(&whole.entry);
  if (entry == nullptr) return {};
  recurrence::Series series = entry->series;
  const Date from = form().instantOf(place);
  const std::vector<WallTime> left = placesFrom(series, place, from);
  series.exclusionRules.clear();
  const std::vector<WallTime> all = placesFrom(series, place, from);
  std::vector<WallTime> excluded;
  std::ranges::set_difference(all, left, std::back_inserter(excluded));
  return excluded;
}

void Resource::freeRulesFromStart(WallTime newStart) {
  const WallTime oldStart = start();
  const Date from = form().instantOf(newStart);
  recurrence::Series series = bareSeries();
  series.extraDates.clear();
  series.overrides.clear();
  const auto placesOf = [&](const recurrence::Rule& rule, WallTime start) {
    series.start = start;
    series.rules = {rule};
    recurrence::prepare(series);
    return placesFrom(series, newStart + seconds(1), from);
  };
  std::vector<WallTime> dates;
  editRules([&](const ical::Line& line) -> std::optional<std::string> {
    const auto rule = recurrence::parseRule(line.value());
    if (!rule) return std::string(line.value());
    recurrence::Expansion expansion(*rule, oldStart, series.isAllDay);
    expansion.seek(newStart);
    if (expansion.next() == newStart) return std::string(line.value());
    const std::vector<WallTime> wanted = placesOf(*rule, oldStart);
    if (wanted.empty()) return std::nullopt;

    const std::string free = ruleFreeFromStart(line.value(), *rule, oldStart);
    recurrence::Rule later = *recurrence::parseRule(free);
    // The new start counts, although the rule does not name it.
    const std::int64_t count = rule->count.value_or(0) + 1;
    if (rule->count) later.count = count - countBefore(*rule, newStart);
    if (placesOf(later, newStart) == wanted) return rule->count ? ruleWithCount(free, count) : free;
    dates.insert(dates.end(), wanted.begin(), wanted.end());
    return std::nullopt;
  });
  const TimeForm written = form();
  for (const WallTime place : dates) master().add(written.line("RDATE", place));
}

void Resource::excludeByDates(const std::vector<WallTime>& places) {
  master().remove("EXRULE");
  const TimeForm written = form();
  for (const WallTime place : places) master().add(written.line("EXDATE", place));
}

void Resource::moveRuleEnds(const TimeForm& newForm, WallTime newStart) {
  const TimeForm oldForm = form();
  const seconds shift = newStart - start();
  editRules([&](const ical::Line& line) -> std::optional<std::string> {
    const auto rule = recurrence::parseRule(line.value());
    if (!rule || !rule->until) return std::string(line.value());
    return ruleWithUntil(line.value(), moved(*rule->until, oldForm, newForm, shift));
  });
}

void Resource::dropIdleExclusions() {
  const recurrence::Series series = bareSeries();
  const auto defaultZone = TimeZone::defaultZone();
  mapDates("EXDATE", places(), [&](WallTime each) {
    return recurrence::occurrenceAt(series, each, *defaultZone) ? std::optional(each) : std::nullopt;
  });
}

void Resource::rebase(const SeriesPlaces& old, seconds shift) {
  const bool isAllDay = form().kind == TimeForm::Kind::day;
  const auto placed = [&](WallTime wall) { return isAllDay ? WallTime(floor<days>(wall)) : wall; };
  mapDates("RDATE", old, [&](WallTime each) { return std::optional(placed(each + shift)); });
  const recurrence::Series series = bareSeries();
  const auto defaultZone = TimeZone::defaultZone();
  const auto isPlace = [&](WallTime wall) {
    return recurrence::occurrenceAt(series, wall, *defaultZone).has_value();
  };
  const Mapping mapping = [&](WallTime each) -> std::optional<WallTime> {
    const WallTime timeOfDay = floor<days>(each) + (series.start - floor<days>(series.start));
    for (const WallTime place : {placed(each + shift), placed(timeOfDay)})
      if (isPlace(place)) return place;
    return std::nullopt;
  };
  mapDates("EXDATE", old, mapping);
  mapOverrides(old, mapping);
}

void Resource::makePlain() {
  std::erase_if(components_,
                [](const ical::Component& component) { return component.find("RECURRENCE-ID") != nullptr; });
  for (const char* name : {"RRULE", "RDATE", "EXDATE", "EXRULE"}) master().remove(name);
}

void Resource::setUid(std::string_view uid) {
  for (ical::Component& component : components_)
    component.set(ical::Line::make("UID", ical::encodeText(uid)));
}

// Values that stay where they are keep their text.
void Resource::mapDates(std::string_view name, const SeriesPlaces& places, const Mapping& mapping) {
  if (components_.empty() || !hasMaster()) return;
  ical::Component& series = master();
  const TimeForm written = form();
  std::vector<ical::Line> movedLines;
  for (std::size_t i = series.lines().size(); i-- > 0;) {
    const ical::Line line = series.lines()[i];
    if (!line.is(name)) continue;
    std::string kept;
    bool isSame = true;
    for (const std::string_view value : ical::splitList(line.value())) {
      const std::size_t slash = std::min(value.find('/'), value.size());
      const std::optional<WallTime> place = places.of(line.withValue(value.substr(0, slash)));
      const std::optional<WallTime> target = place ? mapping(*place) : std::nullopt;
      if (place && target != place) {
        isSame = false;
        if (!target) continue;
        const ical::Line single = written.line(name, *target);
        if (slash == value.size())
          movedLines.push_back(single);
        else
          movedLines.push_back(
              single.withValue(std::string(single.value()) + std::string(value.substr(slash)))
                  .withParameter("VALUE", "PERIOD"));
        continue;
      }
      if (!kept.empty()) kept += ',';
      kept += value;
    }
    if (kept.empty())
      series.removeLine(i);
    else if (!isSame)
      series.replaceLine(i, line.withValue(kept));
  }
  for (ical::Line& line : movedLines) series.add(std::move(line));
}

void Resource::mapOverrides(const SeriesPlaces& places, const Mapping& mapping) {
  const TimeForm written = form();  // while the master is still in its place
  std::vector<ical::Component> kept;
  for (ical::Component& component : components_) {
    const std::optional<WallTime> place = places.of(component);
    const std::optional<WallTime> target = place ? mapping(*place) : std::nullopt;
    if (place && !target) continue;
    if (place != target) {
      // One that had changed in other things than its time moves along.
      const ical::Line* line = component.find("DTSTART");
      const std::optional<ZonedTime> oldStart = line == nullptr ? std::nullopt : readTime(*line, zones_);
      if (oldStart && places.of(*line) == place) {
        const TimeForm own = formOf(*line, zones_);
        const WallTime newStart = oldStart->wall + (*target - *place);
        component.set(line->withValue(own.value(newStart)));
        moveEnd(component, *oldStart, own, newStart, zones_);
      }
      component.set(written.line("RECURRENCE-ID", *target));
    }
    kept.push_back(std::move(component));
  }
  components_ = std::move(kept);
}

void Resource::editRules(const std::function<std::optional<std::string>(const ical::Line&)>& edit) {
  if (!hasMaster()) return;
  ical::Component& series = master();
  for (std::size_t i = series.lines().size(); i-- > 0;) {
    const ical::Line line = series.lines()[i];
    if (!line.is("RRULE")) continue;
    const std::optional<std::string> value = edit(line);
    if (!value)
      series.removeLine(i);
    else if (*value != line.value())
      series.replaceLine(i, line.withValue(*value));
  }
}

}  // namespace ek::embedded
