// The answer to a reminder query: the items in order of creation, then insertion.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "eventkit/embedded/store/basis.h"
#include "eventkit/embedded/store/predicates.h"
#include "eventkit/event_store.h"

namespace ek::embedded {

class ReminderAnswer final : public ReminderList {
 public:
  using Conditions = ReminderConditions;

  ReminderAnswer(std::shared_ptr<Records> records, ReminderConditions conditions)
      : records_(std::move(records)), conditions_(std::move(conditions)) {}

  std::size_t size() const override { return entries_.size(); }
  std::shared_ptr<CalendarItem> at(std::size_t index) const override;

  const ReminderConditions& conditions() const { return conditions_; }
  bool isCurrent(const Basis& basis) const { return change_ != kNothingRead && basis_ == basis; }
  void bringUpToDate(Database& database, const Basis& basis);
  std::size_t bytes() const { return entries_.capacity() * sizeof(Entry); }

 private:
  struct Entry {
    std::int64_t created = 0;
    RowId item = 0;
    // clang-tidy 14 takes the 0 in what this stands for for a pointer.
    auto operator<=>(const Entry&) const = default;  // NOLINT(modernize-use-nullptr)
  };
  struct Row;

  static Row rowOf(SQLite::Statement& select);
  bool matches(const Row& row) const;
  void readAll(Database& database);
  bool readChanged(Database& database, std::int64_t since, std::int64_t now);

  std::shared_ptr<Records> records_;
  ReminderConditions conditions_;
  Basis basis_;
  static constexpr std::int64_t kNothingRead = -1;
  std::int64_t change_ = kNothingRead;  // the store's change number that the entries are of
  std::vector<RowId> calendars_;
  std::vector<Entry> entries_;
};

}  // namespace ek::embedded
