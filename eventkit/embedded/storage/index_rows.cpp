#include "eventkit/embedded/storage/index_rows.h"

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
