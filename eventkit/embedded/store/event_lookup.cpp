#include "eventkit/embedded/store/event_lookup.h"

#include <algorithm>

#include "eventkit/embedded/store/single_events.h"

namespace ek::embedded {

using Reading = Database::Transaction;
constexpr auto kReading = Database::Transaction::Kind::reading;

std::shared_ptr<EmbeddedEvent> EventLookup::event(RowId item, const std::optional<Placement>& placement) {
  if (!placement) return nullptr;
  const auto document = records_->document(item);
  return document ? std::make_shared<EmbeddedEvent>(records_, document, *placement) : nullptr;
}

std::shared_ptr<EmbeddedEvent> EventLookup::firstOccurrence(RowId item) {
  const Reading reading(database_, kReading);
  return event(item, firstPlacement(*records_, database_, item));
}

std::shared_ptr<EmbeddedEvent> EventLookup::occurrence(RowId item, WallTime recurrenceId) {
  const Reading reading(database_, kReading);
  return event(item, placementAt(*records_, item, recurrenceId));
}

std::shared_ptr<EmbeddedEvent> EventLookup::detachedOccurrence(RowId item, Date occurrenceDate) {
  const Reading reading(database_, kReading);
  const SeriesCache::Entry* entry = records_->series().find(item);
  if (entry == nullptr) return nullptr;
  const recurrence::Series& series = *entry->series;
  const auto defaultZone = TimeZone::defaultZone();
  const TimeZone& zone = series.zone ? *series.zone : *defaultZone;
  // By instant: a place in an hour that the zone skips is shown later than it is named.
  const auto own = std::ranges::find_if(series.overrides, [&](const recurrence::Override& each) {
    return zone.instantOf(each.recurrenceId) == occurrenceDate;
  });
  return own == series.overrides.end() ? nullptr
                                       : event(item, placementAt(*records_, item, own->recurrenceId));
}

std::shared_ptr<EmbeddedEvent> EventLookup::withIdentifier(const std::string& identifier) {
  const Reading reading(database_, kReading);
  if (const auto row = item(identifier))
    return row->kind == EntityType::event ? firstOccurrence(row->id) : nullptr;
  const auto occurrence = parseOccurrenceIdentifier(identifier);
  const auto row = occurrence ? item(occurrence->item) : std::nullopt;
  return row ? detachedOccurrence(row->id, occurrence->occurrenceDate) : nullptr;
}

std::optional<ItemRow> EventLookup::item(const std::string& identifier) {
  if (identifier.empty()) return std::nullopt;
  auto row = records_->items().findByIdentifier(identifier);
  return row ? std::move(row) : records_->items().findByUid(identifier);
}

std::optional<Placement> firstPlacement(Records& records, Database& database, RowId item) {
  const auto defaultZone = TimeZone::defaultZone();
  if (const SeriesCache::Entry* entry = records.series().find(item)) {
    const auto first = recurrence::firstOccurrence(*entry->series, *defaultZone);
    return first ? std::optional(placementOf(*entry->series, *first, *defaultZone)) : std::nullopt;
  }
  const auto single = findSingleEvent(database, item);
  return single ? std::optional(placementOf(single->event, *defaultZone)) : std::nullopt;
}

std::optional<Placement> placementAt(Records& records, RowId item, WallTime recurrenceId) {
  const SeriesCache::Entry* entry = records.series().find(item);
  if (entry == nullptr) return std::nullopt;
  const auto defaultZone = TimeZone::defaultZone();
  const auto occurrence = recurrence::occurrenceAt(*entry->series, recurrenceId, *defaultZone);
  return occurrence ? std::optional(placementOf(*entry->series, *occurrence, *defaultZone)) : std::nullopt;
}

}  // namespace ek::embedded
