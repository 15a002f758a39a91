#include "eventkit/embedded/storage/index_rows.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <bit>

#include "eventkit/embedded/recurrence/series.h"

namespace ek::embedded {
namespace {

SingleRow rowOf(const SingleEvent& event) {
  return {.extent = extentFor(event.start.seconds, event.end.seconds),
          .lo = event.start.seconds,
          .hi = event.end.seconds,
          .flags = (event.start.isFloating ? kFloatingStart : 0) | (event.end.isFloating ? kFloatingEnd : 0) |
                   (event.isAllDay ? kAllDay : 0),
          .title = event.title};
}

SeriesRow rowOf(const SeriesEvent& event) {
  const recurrence::Extent extent = recurrence::extentOf(event.series);
  return {.lo = extent.lo.time_since_epoch().count(),
          .hi = extent.hi.time_since_epoch().count(),
          .data = recurrence::encode(event.series, event.zoneKey)};
}

ReminderRow rowOf(const ReminderEntry& entry) {
  ReminderRow row{.isCompleted = entry.isCompleted};
  if (entry.completion) row.completion = entry.completion->time_since_epoch().count();
  if (entry.due) row.due = entry.due->seconds;
  row.dueIsFloating = entry.due && entry.due->isFloating;
  return row;
}

std::optional<std::int64_t> optionalNumber(const SQLite::Column& column) {
  if (column.isNull()) return std::nullopt;
  return column.getInt64();
}

void bindOptional(SQLite::Statement& statement, int place, std::optional<std::int64_t> value) {
  if (value) statement.bind(place, *value);
}

// Puts a row into its table.
struct Insertion {
  Database& database;
  RowId item, calendar;

  void operator()(const SingleRow& row) const {
    const auto insert = database.statement("INSERT INTO single_event VALUES (?, ?, ?, ?, ?, ?, ?)");
    insert->bind(1, row.extent);
    insert->bind(2, row.lo);
    insert->bind(3, item);
    insert->bind(4, row.hi);
    insert->bind(5, calendar);
    insert->bind(6, row.flags);
    insert->bindNoCopy(7, row.title);
    insert->exec();
  }

  void operator()(const SeriesRow& row) const {
    const auto insert = database.statement("INSERT INTO series_event VALUES (?, ?, ?, ?, ?)");
    insert->bind(1, item);
    insert->bind(2, calendar);
    insert->bind(3, row.lo);
    insert->bind(4, row.hi);
    insert->bindNoCopy(5, row.data.data(), static_cast<int>(row.data.size()));
    insert->exec();
  }

  void operator()(const ReminderRow& row) const {
    const auto insert = database.statement("INSERT INTO reminder VALUES (?, ?, ?, ?, ?, ?, ?)");
    insert->bind(1, item);
    insert->bind(2, calendar);
    insert->bind(3, row.isCompleted ? 1 : 0);
    bindOptional(*insert, 4, row.completion);
    bindOptional(*insert, 5, row.due);
    insert->bind(6, row.dueIsFloating ? 1 : 0);
    insert->bind(7, row.created ? *row.created : foundation::now().time_since_epoch().count());
    insert->exec();
  }
};

}  // namespace

int extentFor(std::int64_t lo, std::int64_t hi) {
  if (hi <= lo) return 0;
  const auto length = static_cast<std::uint64_t>(hi) - static_cast<std::uint64_t>(lo);
  return static_cast<int>(std::bit_width(length) + 1) / 2;
}

IndexRow indexRowOf(const ItemIndex& index) {
  IndexRow row = std::visit([](const auto& entry) -> IndexRow { return rowOf(entry); }, index.entry);
  if (auto* reminder = std::get_if<ReminderRow>(&row); reminder != nullptr && index.created)
    reminder->created = index.created->time_since_epoch().count();
  return row;
}

std::vector<StoredIndexRow> storedIndexRows(Database& database, RowId item) {
  std::vector<StoredIndexRow> rows;
  const auto single =
      database.statement("SELECT calendar, extent, lo, hi, flags, title FROM single_event WHERE item = ?");
  single->bind(1, item);
  while (single->executeStep())
    rows.push_back({.calendar = single->getColumn(0).getInt64(),
                    .row = SingleRow{.extent = single->getColumn(1).getInt(),
                                     .lo = single->getColumn(2).getInt64(),
                                     .hi = single->getColumn(3).getInt64(),
                                     .flags = single->getColumn(4).getInt(),
                                     .title = single->getColumn(5).getString()}});
  const auto series = database.statement("SELECT calendar, lo, hi, data FROM series_event WHERE item = ?");
  series->bind(1, item);
  while (series->executeStep())
    rows.push_back({.calendar = series->getColumn(0).getInt64(),
                    .row = SeriesRow{.lo = series->getColumn(1).getInt64(),
                                     .hi = series->getColumn(2).getInt64(),
                                     .data = series->getColumn(3).getString()}});
  const auto reminder = database.statement(
      "SELECT calendar, is_completed, completion, due, due_is_floating, created FROM reminder WHERE item = "
      "?");
  reminder->bind(1, item);
  while (reminder->executeStep())
    rows.push_back({.calendar = reminder->getColumn(0).getInt64(),
                    .row = ReminderRow{.isCompleted = reminder->getColumn(1).getInt() != 0,
                                       .completion = optionalNumber(reminder->getColumn(2)),
                                       .due = optionalNumber(reminder->getColumn(3)),
                                       .dueIsFloating = reminder->getColumn(4).getInt() != 0,
                                       .created = reminder->getColumn(5).getInt64()}});
  return rows;
}

void insertIndexRow(Database& database, RowId item, const StoredIndexRow& row) {
  std::visit(Insertion{.database = database, .item = item, .calendar = row.calendar}, row.row);
}

void eraseIndexRows(Database& database, RowId item) {
  const auto run = [&](const char* sql) {
    const auto statement = database.statement(sql);
    statement->bind(1, item);
    statement->exec();
  };
  run("DELETE FROM single_event WHERE item = ?");
  run("DELETE FROM series_event WHERE item = ?");
  run("DELETE FROM reminder WHERE item = ?");
}

}  // namespace ek::embedded
