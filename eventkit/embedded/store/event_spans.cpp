// Which part of a repeating event a save changes, and how.
#include <algorithm>
#include <utility>

#include "eventkit/embedded/recurrence/expansion.h"
#include "eventkit/embedded/storage/identifier.h"
#include "eventkit/embedded/store/event_writer.h"
#include "eventkit/embedded/store/item_edit.h"

namespace ek::embedded {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

// Of the places from `place` on, the first that the rules name.
std::optional<WallTime> nextNamedPlace(const Resource& resource, WallTime place) {
  std::optional<WallTime> next;
  const bool isDay = resource.form().kind == TimeForm::Kind::day;
  for (const ical::Line* line : resource.master().all("RRULE")) {
    const auto rule = recurrence::parseRule(line->value());
    if (!rule) continue;
    recurrence::Expansion expansion(*rule, resource.start(), isDay);
    expansion.seek(place);
    const std::optional<WallTime> named = expansion.next();
    if (named && (!next || *named < *next) && resource.isNamedByRules(*named)) next = named;
  }
  return next;
}

bool hasPeriods(const ical::Component& series) {
  return std::ranges::any_of(series.all("RDATE"), [](const ical::Line* line) {
    return equalsIgnoringCase(line->parameter("VALUE").value_or(""), "PERIOD");
  });
}

}  // namespace

void EventWriter::beginAtOpened(WallTime place, Resource& resource) {
  resource.unexclude(place);
  if (place > resource.start()) resource.beginAt(place, place);
}

EventWriter::Saved EventWriter::saveWhole(const EmbeddedEvent& event, Resource& resource, const Home& home) {
  const std::optional<WallTime> place = editWhole(event, resource, home.calendar);
  return {write(home, resource), place};
}

// The series from the event's occurrence on.
Resource EventWriter::futureOf(const EmbeddedEvent& event, Resource& resource) {
  const WallTime place = *event.placement().recurrenceId;
  Resource future = resource;
  if (event.areRulesChanged() && event.rules().empty()) {
    future.components() = {occurrenceComponent(event, resource)};
    future.master().remove("RECURRENCE-ID");
    return future;
  }
  future.unexclude(place);
  const std::vector<WallTime> excluded = future.excludedByRules(place);
  if (event.areRulesChanged()) {
    future.beginAt(place, place);
  } else if (const auto begin = nextNamedPlace(resource, place)) {
    future.freeRulesFromStart(*begin);
    future.beginAt(place, *begin);
  } else {
    future.beginAt(place, place);
    future.master().remove("RRULE");
  }
  // An EXRULE counts from the start, which is another one now.
  if (future.excludedByRules(place) != excluded) future.excludeByDates(excluded);
  // An extra date may have a length of its own, which the series that begins with it has not.
  if (hasPeriods(resource.master()) && future.hasMaster() && future.overrideAt(place) == nullptr)
    future.components().push_back(occurrenceComponent(event, resource));
  return future;
}

// What was before stays in its calendar, also when the rest goes to another one.
EventWriter::Saved EventWriter::saveFuture(const EmbeddedEvent& event, Resource& resource, const Home& home,
                                           RowId calendar) {
  const WallTime place = *event.placement().recurrenceId;
  Resource future = futureOf(event, resource);
  future.setUid(newIdentifier());
  future.master().set(ical::Line::make("SEQUENCE", "0"));
  const std::optional<WallTime> newPlace = editWhole(event, future, calendar);

  items_.shareZones(home.row, calendar);
  resource.endBefore(place);
  if (!resource.components().empty()) stamp(resource.master(), now_, true);
  write(home, resource);
  const ItemIndex index = future.index();
  const RowId row = items_.insert(calendar, index.uid, future.text(), index);
  return {row, newPlace};
}

EventWriter::Saved EventWriter::saveOccurrence(const EmbeddedEvent& event, Resource& resource,
                                               const Home& home) {
  const WallTime place = *event.placement().recurrenceId;
  ical::Component* own = resource.overrideAt(place);
  if (own == nullptr) {
    resource.unexclude(place);
    resource.components().push_back(occurrenceComponent(event, resource));
    own = &resource.components().back();
  }
  editOccurrence(event, *own, resource.zones(), home.calendar);
  return {write(home, resource), place};
}

// An occurrence that goes to another calendar is an event of its own there.
EventWriter::Saved EventWriter::saveSeparately(const EmbeddedEvent& event, Resource& resource,
                                               const Home& home, RowId calendar) {
  const WallTime place = *event.placement().recurrenceId;
  const ical::Component* own = resource.overrideAt(place);
  Resource separate({own != nullptr ? *own : occurrenceComponent(event, resource)}, resource.zones());
  separate.master().remove("RECURRENCE-ID");
  editOccurrence(event, separate.master(), resource.zones(), calendar);
  separate.setUid(newIdentifier());
  items_.shareZones(home.row, calendar);
  resource.exclude(place);
  if (!resource.components().empty()) stamp(resource.master(), now_, true);
  write(home, resource);
  const ItemIndex index = separate.index();
  return {items_.insert(calendar, index.uid, separate.text(), index), std::nullopt};
}

std::optional<WallTime> EventWriter::editWhole(const EmbeddedEvent& event, Resource& resource,
                                               RowId calendar) {
  const bool changesRules = event.areRulesChanged();
  if (changesRules || event.isTimeChanged()) resource.dropIdleExclusions();
  const SeriesPlaces before = resource.places();
  const WallTime oldStart = resource.start();
  const std::optional<WallTime> place = event.placement().recurrenceId;
  ical::Component* own = place ? resource.overrideAt(*place) : nullptr;
  if (own != nullptr) editOccurrence(event, *own, resource.zones(), calendar);

  const seconds shift = event.isTimeChanged() ? moveWhole(event, resource, calendar) : seconds(0);
  ical::Component& master = resource.master();
  writeTexts(master, event);
  writeAlarms(master, event, anchorOf(master, resource.zones()));
  if (changesRules) writeRules(master, event, *readTime(*master.find("DTSTART"), resource.zones()));
  stamp(master, now_, event.isTimeChanged() || changesRules);

  const bool isPlain = changesRules && event.rules().empty();
  if (isPlain)
    resource.makePlain();
  else if (changesRules || event.isTimeChanged())
    resource.rebase(before, shift);
  const bool repeats = std::holds_alternative<SeriesEvent>(resource.index().entry);
  if (!repeats) return std::nullopt;
  const WallTime moved = place.value_or(oldStart) + shift;
  return resource.form().kind == TimeForm::Kind::day ? WallTime(floor<days>(moved)) : moved;
}

// Gives the item the event's time, as far as it differs from what it was, and says how far that moves it.
seconds EventWriter::moveWhole(const EmbeddedEvent& event, Resource& resource, RowId calendar) {
  const TimeForm form = formFor(event, resource.form(), calendar);
  const WallTime oldStart = resource.start();
  const auto& place = event.placement().recurrenceId;
  const WallTime oldPlace = place.value_or(oldStart);
  const bool isSameKind = !event.isAllDayChanged();
  // In an hour that its zone skips, what was not moved is shown later than its place says.
  const bool isAtPlace = !place || !isSameKind || form.instantOf(oldPlace) == event.placement().start;
  const WallTime wasAt = isAtPlace ? oldPlace : form.wallOf(event.placement().start);
  const bool isMoved = !isSameKind || event.isStartChanged();
  const seconds shift = isMoved ? form.wallOf(*event.startDate()) - wasAt : seconds(0);

  WallTime newStart = oldStart + shift;
  if (event.isAllDay()) newStart = floor<days>(newStart);
  const Date start = form.instantOf(newStart);
  const Date end =
      event.isAllDay()
          ? form.instantOf(newStart + (form.wallOf(*event.endDate()) - form.wallOf(*event.startDate())))
          : start + (*event.endDate() - *event.startDate());
  if (newStart != oldStart || !isSameKind) resource.moveRuleEnds(form, newStart);
  writeTimes(resource.master(), resource.zones(), form, start, end);
  return shift;
}

void EventWriter::editOccurrence(const EmbeddedEvent& event, ical::Component& component,
                                 const ZoneFinder& zones, RowId calendar) {
  if (event.isTimeChanged()) {
    const ical::Line* start = component.find("DTSTART");
    const TimeForm form = formFor(event, start ? formOf(*start, zones) : localForm(), calendar);
    writeTimes(component, zones, form, *event.startDate(), *event.endDate());
  }
  writeTexts(component, event);
  writeAlarms(component, event, anchorOf(component, zones));
  stamp(component, now_, event.isTimeChanged());
}

// A component of its own for the occurrence, which says what the series says.
ical::Component EventWriter::occurrenceComponent(const EmbeddedEvent& event, Resource& resource) {
  ical::Component component = resource.master();
  for (const char* name : {"RRULE", "RDATE", "EXDATE", "EXRULE"}) component.remove(name);
  const Placement& placement = event.placement();
  const TimeForm form = resource.form();
  const Date end = placement.isAllDay ? placement.end - seconds(1) : placement.end;
  writeTimes(component, resource.zones(), form, placement.start, end);
  component.set(form.line("RECURRENCE-ID", *placement.recurrenceId));
  return component;
}

// The form that the item has, where that can say what the event is now.
TimeForm EventWriter::formFor(const EmbeddedEvent& event, const TimeForm& written, RowId calendar) {
  if (event.isAllDay()) return dayForm();
  if (written.kind != TimeForm::Kind::day) return written;
  TimeForm form = localForm();
  keepZone(items_, calendar, form);
  return form;
}

bool EventWriter::collides(const EmbeddedEvent& event, const recurrence::Series& series) {
  const Date start = *event.startDate();
  std::vector<recurrence::Occurrence> then;
  recurrence::occurrencesIn(series, {start, start + seconds(1)}, *TimeZone::defaultZone(), then);
  for (const recurrence::Occurrence& other : then)
    if (other.start == start && other.recurrenceId != event.placement().recurrenceId) return true;
  return false;
}

}  // namespace ek::embedded
