#include "eventkit/embedded/store/reminder_answer.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <utility>

#include "eventkit/embedded/store/changes.h"
#include "eventkit/embedded/store/reminder.h"

namespace ek::embedded {

// As stored; dates are seconds.
struct ReminderAnswer::Row {
  Entry entry;
  RowId calendar = 0;
  bool isCompleted = false;
  std::optional<Date> completion;
  std::optional<Moment> due;
};

std::shared_ptr<CalendarItem> ReminderAnswer::at(std::size_t index) const {
  return guarded([&]() -> std::shared_ptr<CalendarItem> {
    const bool isSameStore = records_->database() != nullptr && records_->generation() == basis_.generation;
    if (!isSameStore || index >= entries_.size()) return nullptr;
    const auto document = records_->document(entries_[index].item);
    return document ? std::make_shared<EmbeddedReminder>(records_, document) : nullptr;
  });
}

void ReminderAnswer::bringUpToDate(Database& database, const Basis& basis) {
  const Database::Transaction reading(database, Database::Transaction::Kind::reading);
  const auto calendars = calendarsNamed(records_->calendars(), EntityType::reminder, conditions_.calendars);
  const bool isComparable = change_ != kNothingRead && basis_.generation == basis.generation &&
                            basis_.zone == basis.zone && calendars_ == calendars;
  basis_ = basis;
  const std::int64_t before = std::exchange(change_, kNothingRead);
  const std::int64_t now = database.change();
  if (!isComparable || !readChanged(database, before, now)) {
    calendars_ = calendars;
    readAll(database);
  }
  change_ = now;
}

// Columns: item, calendar, is_completed, completion, due, due_is_floating, created.
ReminderAnswer::Row ReminderAnswer::rowOf(SQLite::Statement& select) {
  Row row{.entry = {.created = select.getColumn(6).getInt64(), .item = select.getColumn(0).getInt64()},
          .calendar = select.getColumn(1).getInt64(),
          .isCompleted = select.getColumn(2).getInt() != 0,
          .completion = std::nullopt,
          .due = std::nullopt};
  if (!select.isColumnNull(3)) row.completion = Date(std::chrono::seconds(select.getColumn(3).getInt64()));
  if (!select.isColumnNull(4)) row.due = {select.getColumn(4).getInt64(), select.getColumn(5).getInt() != 0};
  return row;
}

bool ReminderAnswer::matches(const Row& row) const {
  using State = ReminderConditions::State;
  if (!std::ranges::binary_search(calendars_, row.calendar)) return false;
  if (conditions_.state == State::any) return true;
  if (row.isCompleted != (conditions_.state == State::completed)) return false;
  if (!conditions_.from && !conditions_.to) return true;
  const std::optional<Date> date = conditions_.state == State::completed ? row.completion
                                   : row.due ? std::optional(instantOf(*row.due, *basis_.zone))
                                             : std::nullopt;
  return date && (!conditions_.from || *date >= *conditions_.from) &&
         (!conditions_.to || *date <= *conditions_.to);
}

void ReminderAnswer::readAll(Database& database) {
  entries_.clear();
  for (const RowId calendar : calendars_) {
    const auto select = database.statement(
        "SELECT item, calendar, is_completed, completion, due, due_is_floating, created"
        " FROM reminder WHERE calendar = ?1");
    select->bind(1, calendar);
    while (select->executeStep())
      if (const Row row = rowOf(*select); matches(row)) entries_.push_back(row.entry);
  }
  std::ranges::sort(entries_);
}

// False when too much changed for this to be the cheaper way.
bool ReminderAnswer::readChanged(Database& database, std::int64_t since, std::int64_t now) {
  const auto changed = itemsChangedSince(database, since, now);
  if (!changed) return false;
  std::erase_if(entries_,
                [&](const Entry& entry) { return std::ranges::binary_search(*changed, entry.item); });
  for (const RowId item : *changed) {
    const auto select = database.statement(
        "SELECT item, calendar, is_completed, completion, due, due_is_floating, created"
        " FROM reminder WHERE item = ?1");
    select->bind(1, item);
    if (!select->executeStep()) continue;
    if (const Row row = rowOf(*select); matches(row))
      entries_.insert(std::ranges::upper_bound(entries_, row.entry), row.entry);
  }
  return true;
}

}  // namespace ek::embedded
