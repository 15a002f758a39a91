// Saves and removes events, with the spans of repeating ones. Each call is one transaction.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "eventkit/embedded/store/event.h"
#include "eventkit/embedded/store/records.h"
#include "eventkit/embedded/store/resource.h"
#include "eventkit/types.h"

namespace ek::embedded {

class EventWriter {
 public:
  EventWriter(Records& records, Database& database)
      : records_(records), database_(database), items_(records.items()), now_(foundation::now()) {}

  // As ek::EventStore has them.
  bool save(EmbeddedEvent& event, Span span, std::optional<Error>& error);
  bool remove(EmbeddedEvent& event, Span span, std::optional<Error>& error);

 private:
  // Where a resource is kept. Without a row it is made anew, under the identifier that it had.
  struct Home {
    RowId row = 0;
    RowId calendar = 0;
    std::string identifier;
  };
  // What the event is after the save.
  struct Saved {
    RowId row = 0;
    std::optional<WallTime> place;
  };

  std::optional<ErrorCode> faultOf(const EmbeddedEvent& event, Span span, const CalendarRow* calendar);
  bool isSomebodyElses(const EmbeddedEvent& event, const CalendarRow& calendar);
  std::optional<ItemRow> currentRow(const EmbeddedEvent& event);

  Saved saveNew(const EmbeddedEvent& event, RowId calendar);
  // Nothing, with the error, when it is refused.
  std::optional<Saved> saveStored(const EmbeddedEvent& event, Span span, RowId calendar,
                                  std::optional<Error>& error);
  // After the commit: the object shows what is stored.
  void bringUpToDate(EmbeddedEvent& event, const Saved& saved);
  // Other rules count from the occurrence that is open. Those before it, which were all taken away, are gone.
  static void beginAtOpened(WallTime place, Resource& resource);
  Saved saveWhole(const EmbeddedEvent& event, Resource& resource, const Home& home);
  Resource futureOf(const EmbeddedEvent& event, Resource& resource);
  Saved saveFuture(const EmbeddedEvent& event, Resource& resource, const Home& home, RowId calendar);
  Saved saveOccurrence(const EmbeddedEvent& event, Resource& resource, const Home& home);
  Saved saveSeparately(const EmbeddedEvent& event, Resource& resource, const Home& home, RowId calendar);

  // Writes the changes into the component of the whole item, and says where the occurrence is now.
  std::optional<WallTime> editWhole(const EmbeddedEvent& event, Resource& resource, RowId calendar);
  std::chrono::seconds moveWhole(const EmbeddedEvent& event, Resource& resource, RowId calendar);
  void editOccurrence(const EmbeddedEvent& event, ical::Component& component, const ZoneFinder& zones,
                      RowId calendar);
  ical::Component occurrenceComponent(const EmbeddedEvent& event, Resource& resource);
  TimeForm formFor(const EmbeddedEvent& event, const TimeForm& written, RowId calendar);
  bool collides(const EmbeddedEvent& event, const recurrence::Series& series);

  // The row afterwards; 0 when nothing of the resource was left, and the item is gone.
  RowId write(const Home& home, const Resource& resource);

  Records& records_;
  Database& database_;
  ItemTable& items_;
  Date now_;
};

}  // namespace ek::embedded
