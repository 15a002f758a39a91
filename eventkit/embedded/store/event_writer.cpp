#include "eventkit/embedded/store/event_writer.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "eventkit/embedded/storage/identifier.h"
#include "eventkit/embedded/store/event_lookup.h"
#include "eventkit/embedded/store/item_edit.h"
#include "eventkit/embedded/store/refusals.h"

namespace ek::embedded {

namespace {

using std::chrono::days;
using Writing = Database::Transaction;
constexpr auto kWriting = Database::Transaction::Kind::writing;

// The shortest time between two occurrences that a rule of that frequency is made for.
std::chrono::seconds shortestPeriod(RecurrenceFrequency frequency) {
  constexpr struct {
    RecurrenceFrequency frequency;
    std::chrono::seconds period;
  } kPeriods[] = {
      {RecurrenceFrequency::daily, days(1)},
      {RecurrenceFrequency::weekly, days(7)},
      {RecurrenceFrequency::monthly, days(28)},
      {RecurrenceFrequency::yearly, days(365)},
      {RecurrenceFrequency::hourly, std::chrono::hours(1)},
      {RecurrenceFrequency::minutely, std::chrono::minutes(1)},
      {RecurrenceFrequency::secondly, std::chrono::seconds(1)},
  };
  return std::ranges::find(kPeriods, frequency, [](const auto& each) { return each.frequency; })->period;
}

// Whole days of all-day events: a day on which the clock changes is no longer than another.
std::chrono::seconds lengthOf(const EmbeddedEvent& event) {
  if (!event.isAllDay()) return *event.endDate() - *event.startDate();
  const TimeForm day = dayForm();
  return day.wallOf(*event.endDate()) - day.wallOf(*event.startDate()) + days(1);
}

bool repeatsTooOften(const EmbeddedEvent& event, Span span) {
  if (!event.areRulesChanged() && !event.isTimeChanged()) return false;
  const bool becomesDetached =
      event.placement().recurrenceId && span == Span::thisEvent && !event.areRulesChanged();
  if (becomesDetached) return false;
  return std::ranges::any_of(event.rules(), [length = lengthOf(event)](const RecurrenceRule& rule) {
    return length > shortestPeriod(rule.frequency) * rule.interval;
  });
}

}  // namespace

bool EventWriter::save(EmbeddedEvent& event, Span span, std::optional<Error>& error) {
  if (!event.isChanged()) return false;
  Writing writing(database_, kWriting);
  const auto owner = event.owner();
  const CalendarRow* found =
      owner ? records_.calendars().findByIdentifier(owner->calendarIdentifier()) : nullptr;
  const std::optional<CalendarRow> calendar = found ? std::optional(*found) : std::nullopt;
  if (const auto fault = faultOf(event, span, calendar ? &*calendar : nullptr)) return refuse(error, *fault);
  const std::optional<Saved> saved = event.isNew() ? std::optional(saveNew(event, calendar->id))
                                                   : saveStored(event, span, calendar->id, error);
  if (!saved) return false;
  writing.commit();
  bringUpToDate(event, *saved);
  return true;
}

std::optional<EventWriter::Saved> EventWriter::saveStored(const EmbeddedEvent& event, Span span,
                                                          RowId calendar, std::optional<Error>& error) {
  std::optional<ItemRow> row = currentRow(event);
  const Home home = row ? Home{row->id, calendar, row->identifier} : Home{0, calendar, event.identifier()};
  const RowId oldCalendar = row ? row->calendar : calendar;
  const Home oldHome{home.row, oldCalendar, home.identifier};
  const bool isMove = oldCalendar != calendar;
  const auto refused = [&error](ErrorCode code) -> std::optional<Saved> {
    refuse(error, code);
    return std::nullopt;
  };
  if (isMove && items_.findInCalendar(calendar, row->uid)) return refused(ErrorCode::internalFailure);

  const auto document = row ? records_.document(*std::move(row)) : event.document();
  Resource resource(document->components(), document->zones());
  const ItemIndex index = resource.index();
  const auto* series = std::get_if<SeriesEvent>(&index.entry);
  const std::optional<WallTime> place = event.placement().recurrenceId;
  if (series == nullptr || !place) return saveWhole(event, resource, home);

  const auto first = recurrence::firstOccurrence(series->series, *TimeZone::defaultZone());
  const bool isLater = first && *place > first->recurrenceId;
  if (event.areRulesChanged() && !isLater) beginAtOpened(*place, resource);
  if (span == Span::futureEvents)
    return isLater ? saveFuture(event, resource, oldHome, calendar) : saveWhole(event, resource, home);
  if (event.areRulesChanged()) {
    if (isLater || event.isDetached()) return refused(ErrorCode::invalidSpan);
    return saveWhole(event, resource, home);
  }
  if (event.isStartChanged() && collides(event, series->series))
    return refused(ErrorCode::startDateCollidesWithOtherOccurrence);
  if (isMove) return saveSeparately(event, resource, oldHome, calendar);
  return saveOccurrence(event, resource, home);
}

void EventWriter::bringUpToDate(EmbeddedEvent& event, const Saved& saved) {
  const auto document = records_.document(saved.row);
  const auto placement = saved.place ? placementAt(records_, saved.row, *saved.place)
                                     : firstPlacement(records_, database_, saved.row);
  if (document && placement) event.becomeStored(document, *placement);
}

std::optional<ErrorCode> EventWriter::faultOf(const EmbeddedEvent& event, Span span,
                                              const CalendarRow* calendar) {
  if (calendar == nullptr) return ErrorCode::noCalendar;
  if (!event.startDate()) return ErrorCode::noStartDate;
  if (!event.endDate()) return ErrorCode::noEndDate;
  if (*event.startDate() > *event.endDate()) return ErrorCode::datesInverted;
  if (!calendar->allowsModification) return ErrorCode::calendarReadOnly;
  if (calendar->kind != EntityType::event) return ErrorCode::calendarDoesNotAllowEvents;
  if (event.document() && event.isOwnerChanged()) {
    const CalendarRow* old = records_.calendars().find(event.document()->row().calendar);
    if (old != nullptr && !old->allowsModification) return ErrorCode::calendarReadOnly;
  }
  if (isSomebodyElses(event, *calendar)) return ErrorCode::eventNotMutable;
  if (repeatsTooOften(event, span)) return ErrorCode::durationGreaterThanRecurrence;
  return std::nullopt;
}

bool EventWriter::isSomebodyElses(const EmbeddedEvent& event, const CalendarRow& calendar) {
  const auto& organizer = event.fields().organizer;
  if (!organizer) return false;
  const auto own = records_.calendars().ownerAddresses(calendar.source);
  return std::ranges::none_of(own, [address = addressIn(*organizer)](const std::string& each) {
    return equalsIgnoringCase(addressIn(each), address);
  });
}

// The item as it is now: the row that was read, or one that has taken its place since.
std::optional<ItemRow> EventWriter::currentRow(const EmbeddedEvent& event) {
  const ItemRow& read = event.document()->row();
  if (auto row = items_.findByIdentifier(read.identifier)) return row;
  return items_.findInCalendar(read.calendar, read.uid);
}

EventWriter::Saved EventWriter::saveNew(const EmbeddedEvent& event, RowId calendar) {
  const TimeForm form = event.isAllDay() ? dayForm() : localForm();
  keepZone(items_, calendar, form);
  ical::Component component = newComponent("VEVENT", event.uid(), now_);
  const ZoneFinder zones = items_.zoneFinder(calendar);
  writeTimes(component, zones, form, *event.startDate(), *event.endDate());
  writeTexts(component, event);
  writeRules(component, event, *readTime(*component.find("DTSTART"), zones));
  writeAlarms(component, event, {});
  const Resource resource({std::move(component)}, zones);
  const bool repeats = std::holds_alternative<SeriesEvent>(resource.index().entry);
  const auto place = repeats ? std::optional(resource.start()) : std::nullopt;
  return {write({0, calendar, event.identifier()}, resource), place};
}

RowId EventWriter::write(const Home& home, const Resource& resource) {
  bool isEmpty = resource.components().empty();
  std::optional<ItemIndex> index;
  if (!isEmpty) {
    index = resource.index();
    const auto* series = std::get_if<SeriesEvent>(&index->entry);
    isEmpty = series && !recurrence::firstOccurrence(series->series, *TimeZone::defaultZone());
  }
  if (isEmpty) {
    if (home.row != 0) items_.erase(home.row);
    return 0;
  }
  if (home.row == 0) return items_.insert(home.calendar, home.identifier, resource.text(), *index);
  items_.replace(home.row, home.calendar, resource.text(), *index);
  return home.row;
}

}  // namespace ek::embedded
