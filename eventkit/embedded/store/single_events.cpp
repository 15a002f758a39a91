#include "eventkit/embedded/store/single_events.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

namespace ek::embedded {

namespace {

enum Flags { kFloatingStart = 1, kFloatingEnd = 2, kAllDay = 4 };

// No zone's wall clock is further from UTC.
constexpr std::int64_t kMostOffset = std::int64_t{26} * 3600;

// Columns: item, calendar, lo, hi, flags, title.
SingleEventRow rowOf(SQLite::Statement& select) {
  const int flags = select.getColumn(4).getInt();
  return {.item = select.getColumn(0).getInt64(),
          .calendar = select.getColumn(1).getInt64(),
          .event = {.start = {select.getColumn(2).getInt64(), (flags & kFloatingStart) != 0},
                    .end = {select.getColumn(3).getInt64(), (flags & kFloatingEnd) != 0},
                    .isAllDay = (flags & kAllDay) != 0,
                    .title = select.getColumn(5).getString()}};
}

std::optional<int> nextExtent(Database& database, int after) {
  const auto select = database.statement("SELECT min(extent) FROM single_event WHERE extent > ?1");
  select->bind(1, after);
  if (!select->executeStep() || select->isColumnNull(0)) return std::nullopt;
  return select->getColumn(0).getInt();
}

}  // namespace

void visitSingleEvents(Database& database, std::int64_t start, std::int64_t end,
                       const std::function<void(SingleEventRow&)>& visit) {
  for (auto extent = nextExtent(database, -1); extent; extent = nextExtent(database, *extent)) {
    const std::int64_t longest = std::int64_t{1} << (2 * *extent);
    const auto select = database.statement(
        "SELECT item, calendar, lo, hi, flags, title FROM single_event"
        " WHERE extent = ?1 AND lo > ?2 AND lo < ?3");
    select->bind(1, *extent);
    select->bind(2, start - longest - kMostOffset);
    select->bind(3, end + kMostOffset);
    while (select->executeStep()) {
      SingleEventRow row = rowOf(*select);
      visit(row);
    }
  }
}

std::optional<SingleEventRow> findSingleEvent(Database& database, RowId item) {
  const auto select =
      database.statement("SELECT item, calendar, lo, hi, flags, title FROM single_event WHERE item = ?1");
  select->bind(1, item);
  if (!select->executeStep()) return std::nullopt;
  return rowOf(*select);
}

}  // namespace ek::embedded
