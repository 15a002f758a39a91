// The answer to an event query: one short entry for each occurrence, and what the occurrences of an item have
// in common once. It can be brought up to date at the cost of what changed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "eventkit/embedded/store/basis.h"
#include "eventkit/embedded/store/placement.h"
#include "eventkit/embedded/store/predicates.h"
#include "eventkit/embedded/store/single_events.h"
#include "eventkit/event_store.h"

namespace ek::embedded {

class EventAnswer final : public EventList {
 public:
  using Conditions = EventConditions;

  EventAnswer(std::shared_ptr<Records> records, EventConditions conditions)
      : records_(std::move(records)), conditions_(std::move(conditions)) {}

  std::size_t size() const override { return entries_.size(); }
  // An item that changed since is given as it is now, if it still has that occurrence.
  std::shared_ptr<Event> at(std::size_t index) const override;

  const EventConditions& conditions() const { return conditions_; }
  bool isCurrent(const Basis& basis) const;
  // Makes it what the store holds now: from what changed since, where that is possible, else from nothing.
  void bringUpToDate(Database& database, const Basis& basis);
  std::size_t bytes() const;

 private:
  struct Entry {
    Date start, end;
    WallTime recurrenceId{};
    std::uint32_t origin = 0;
    std::int32_t override = -1;  // of origin's series
  };
  // What the answer knows of an item: as long as it is the same, so are the item's entries.
  struct Origin {
    RowId item = 0;
    bool isThere = false;                              // else there is nothing of it (any more)
    std::shared_ptr<const recurrence::Series> series;  // null for an event that occurs once
    bool isEndless = false;  // of a series; the rest is of an event that occurs once
    bool isAllDay = false;
    Date start, end;
    std::string title;
    bool operator==(const Origin&) const = default;
  };

  void readAll(Database& database);
  bool readChanged(Database& database, std::int64_t since, std::int64_t now);
  void readItem(Database& database, RowId item);
  Origin originOf(SingleEventRow row) const;
  Origin originOf(const SeriesCache::Entry& entry) const;
  Origin currentOrigin(Database& database, RowId item) const;
  std::uint32_t indexOf(RowId item);

  void add(Origin origin);
  void change(std::uint32_t index, Origin now);
  void appendEntries(std::uint32_t index, std::vector<Entry>& entries) const;
  std::vector<Entry> orderedEntries(std::uint32_t index) const;
  std::vector<std::size_t> placesOf(std::uint32_t index) const;
  bool overwrite(const std::vector<std::size_t>& places, const std::vector<Entry>& entries);
  bool covers(RowId calendar) const;
  bool isInRange(Date start, Date end) const;
  void setWindow();

  const std::string& titleOf(const Entry& entry) const;
  bool comesBefore(const Entry& a, const Entry& b) const;
  auto inOrder() const {
    return [this](const Entry& a, const Entry& b) { return comesBefore(a, b); };
  }
  void order() const;
  Placement placementOf(const Entry& entry) const;

  std::shared_ptr<Records> records_;
  EventConditions conditions_;

  Basis basis_;
  static constexpr std::int64_t kNothingRead = -1;
  std::int64_t change_ = kNothingRead;  // the store's change number that the entries are of
  std::vector<RowId> calendars_;
  Date endlessEnd_;  // how far series that never end are followed
  Date validUntil_;  // when that is to be worked out anew

  mutable std::vector<Entry> entries_;
  mutable bool isOrdered_ = false;
  std::vector<Origin> origins_;
  std::vector<std::uint32_t> byItem_;  // indices of all origins, once one was looked for
  mutable std::vector<recurrence::Occurrence> scratch_;
};

}  // namespace ek::embedded
