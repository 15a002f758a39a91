#include "eventkit/embedded/store/event_writer.h"
#include "eventkit/embedded/store/item_edit.h"
#include "eventkit/embedded/store/refusals.h"

namespace ek::embedded {

bool EventWriter::remove(EmbeddedEvent& event, Span span, std::optional<Error>& error) {
  if (event.isNew()) return false;
  Database::Transaction writing(database_, Database::Transaction::Kind::writing);
  std::optional<ItemRow> row = items_.findByIdentifier(event.identifier());
  if (!row) return false;
  const CalendarRow* calendar = records_.calendars().find(row->calendar);
  if (calendar != nullptr && !calendar->allowsModification) return refuse(error, ErrorCode::calendarReadOnly);

  const auto place = event.placement().recurrenceId;
  const Home home{row->id, row->calendar, row->identifier};
  const auto document = records_.document(std::move(*row));
  Resource resource(document->components(), document->zones());
  const ItemIndex index = resource.index();
  const auto* series = std::get_if<SeriesEvent>(&index.entry);
  if (series == nullptr || !place) {
    items_.erase(home.row);
  } else {
    const auto defaultZone = TimeZone::defaultZone();
    if (!recurrence::occurrenceAt(series->series, *place, *defaultZone)) return false;
    const auto first = recurrence::firstOccurrence(series->series, *defaultZone);
    if (span == Span::thisEvent)
      resource.exclude(*place);
    else if (first && *place > first->recurrenceId)
      resource.endBefore(*place);
    else
      resource.components().clear();
    if (!resource.components().empty()) stamp(resource.master(), now_, true);
    write(home, resource);
  }
  writing.commit();
  event.becomeRemoved();
  return true;
}

}  // namespace ek::embedded
