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
  struct Origin {
    RowId item = 0;
    std::shared_ptr<const recurrence::Series> series;  // null for an event that occurs once
    bool isAllDay = false;                             // of an event that occurs once, as its title
    std::string title;
  };

  void readAll(Database& database);
  bool readChanged(Database& database, std::int64_t since);
  void readItem(Database& database, RowId item);
  void add(const SingleEventRow& row, std::uint32_t origin);
  void add(const SeriesCache::Entry& entry, std::uint32_t origin);
  std::uint32_t originOf(RowId item);
  std::uint32_t newOrigin(RowId item);
  bool covers(RowId calendar) const;
  bool isInRange(Date start, Date end) const;
  void setWindow();

  const std::string& titleOf(const Entry& entry) const;
  bool comesBefore(const Entry& a, const Entry& b) const;
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
  std::vector<recurrence::Occurrence> scratch_;
};

}  // namespace ek::embedded
