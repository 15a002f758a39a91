// Finds single events and occurrences in the store as it is now.
#pragma once

#include <memory>
#include <optional>

#include "eventkit/embedded/store/event.h"
#include "eventkit/embedded/store/placement.h"
#include "eventkit/embedded/store/records.h"

namespace ek::embedded {

class EventLookup {
 public:
  EventLookup(std::shared_ptr<Records> records, Database& database)
      : records_(std::move(records)), database_(database) {}

  // All null when there is no such event. Of a series: the first occurrence that is left.
  std::shared_ptr<EmbeddedEvent> firstOccurrence(RowId item);
  std::shared_ptr<EmbeddedEvent> occurrence(RowId item, WallTime recurrenceId);
  // The occurrence with a component of its own whose original place was at that instant.
  std::shared_ptr<EmbeddedEvent> detachedOccurrence(RowId item, Date occurrenceDate);
  // The identifier of an item, its UID, or that of a detached occurrence.
  std::shared_ptr<EmbeddedEvent> withIdentifier(const std::string& identifier);

  std::optional<ItemRow> item(const std::string& identifier);

 private:
  std::shared_ptr<EmbeddedEvent> event(RowId item, const std::optional<Placement>& placement);

  std::shared_ptr<Records> records_;
  Database& database_;
};

// Where the first remaining occurrence of a stored event lies, or that of one place in its series.
std::optional<Placement> firstPlacement(Records& records, Database& database, RowId item);
std::optional<Placement> placementAt(Records& records, RowId item, WallTime recurrenceId);

}  // namespace ek::embedded
