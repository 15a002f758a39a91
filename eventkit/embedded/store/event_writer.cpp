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

bool repeatsTooOften(const EmbeddedEvent& event) {
  if (!event.areRulesChanged() && !event.isTimeChanged()) return false;
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
  if (const auto fault = faultOf(event, calendar ? &*calendar : nullptr)) return refuse(error, *fault);

  Saved saved;
  if (event.isNew()) {
    saved = saveNew(event, calendar->id);
  } else {
    std::optional<ItemRow> row = currentRow(event);
    const Home home =
        row ? Home{row->id, calendar->id, row->identifier} : Home{0, calendar->id, event.identifier()};
    const bool isMove = row && row->calendar != calendar->id;
    if (isMove && items_.findInCalendar(calendar->id, row->uid))
      return refuse(error, ErrorCode::internalFailure);
    const auto document = row ? records_.document(std::move(*row)) : event.document();
    Resource resource(document->components(), document->zones());

    const ItemIndex index = resource.index();
    const auto* series = std::get_if<SeriesEvent>(&index.entry);
    const std::optional<WallTime> place = event.placement().recurrenceId;
    const auto first =
        series ? recurrence::firstOccurrence(series->series, *TimeZone::defaultZone()) : std::nullopt;
    const bool isLater = series != nullptr && place && first && *place > first->recurrenceId;
    if (series == nullptr || !place) {
      saved = saveWhole(event, resource, home);
    } else if (span == Span::futureEvents) {
      saved = isLater ? saveFuture(event, resource, home) : saveWhole(event, resource, home);
    } else if (event.areRulesChanged()) {
      if (isLater || event.isDetached()) return refuse(error, ErrorCode::invalidSpan);
      saved = saveWhole(event, resource, home);
    } else if (event.isStartChanged() && collides(event, series->series)) {
      return refuse(error, ErrorCode::startDateCollidesWithOtherOccurrence);
    } else if (isMove) {
      saved = saveSeparately(event, resource, {home.row, document->row().calendar, home.identifier},
                             calendar->id);
    } else {
      saved = saveOccurrence(event, resource, home);
    }
  }
  writing.commit();

  const auto document = records_.document(saved.row);
  const auto placement = saved.place ? placementAt(records_, saved.row, *saved.place)
                                     : firstPlacement(records_, database_, saved.row);
  if (document && placement) event.becomeStored(document, *placement);
  return true;
}

std::optional<ErrorCode> EventWriter::faultOf(const EmbeddedEvent& event, const CalendarRow* calendar) {
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
  if (repeatsTooOften(event)) return ErrorCode::durationGreaterThanRecurrence;
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
