#include "eventkit/embedded/storage/check.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/recurrence/series.h"
#include "eventkit/embedded/storage/column_text.h"
#include "eventkit/embedded/storage/index_rows.h"
#include "eventkit/embedded/storage/item_table.h"

namespace ek::embedded {
namespace {

// What the answer of a query of faults means; its first column goes in place of the %.
constexpr struct {
  const char* sql;
  std::string_view fault;
} kQueries[] = {
    {"SELECT integrity_check FROM pragma_integrity_check WHERE integrity_check <> 'ok'",
     "The file is damaged: %."},
    {"SELECT DISTINCT \"table\" FROM pragma_foreign_key_check",
     "Rows of the table % refer to rows that are gone."},
    {"SELECT item FROM single_event WHERE item NOT IN (SELECT id FROM item)",
     "An index row of an event belongs to no item (%)."},
    {"SELECT item FROM series_event WHERE item NOT IN (SELECT id FROM item)",
     "An index row of a series belongs to no item (%)."},
    {"SELECT item FROM reminder WHERE item NOT IN (SELECT id FROM item)",
     "An index row of a reminder belongs to no item (%)."},
    {"SELECT item.uid FROM item JOIN calendar ON calendar.id = item.calendar WHERE item.kind <> "
     "calendar.kind",
     "The item % is in a calendar for the other kind of item."},
    {"SELECT kind FROM calendar WHERE is_default GROUP BY kind HAVING count(*) > 1",
     "More than one calendar is the default (of kind %)."},
    {"SELECT id FROM envelope WHERE id NOT IN (SELECT envelope FROM calendar_envelope)",
     "What came with an imported file belongs to no calendar (%)."},
    {"SELECT item.uid FROM item WHERE envelope IS NOT NULL AND NOT EXISTS (SELECT 1 FROM calendar_envelope "
     "AS link "
     "WHERE link.calendar = item.calendar AND link.envelope = item.envelope)",
     "The item % stands in a file that its calendar does not know."},
    {"SELECT uid FROM item WHERE change > (SELECT change FROM counter)",
     "The item % is newer than the store's own count of changes."},
};

std::string filledIn(std::string_view fault, std::string_view value) {
  const std::size_t hole = fault.find('%');
  return std::string(fault.substr(0, hole)).append(value).append(fault.substr(hole + 1));
}

void runQueries(Database& database, std::vector<std::string>& faults) {
  for (const auto& query : kQueries) {
    const auto select = database.statement(query.sql);
    while (select->executeStep()) faults.push_back(filledIn(query.fault, textOf(select->getColumn(0))));
  }
}

std::optional<std::int64_t> optionalNumber(const SQLite::Column& column) {
  if (column.isNull()) return std::nullopt;
  return column.getInt64();
}

// The index rows that an item has; one is right.
std::vector<IndexRow> storedRows(Database& database, RowId item) {
  std::vector<IndexRow> rows;
  const auto single =
      database.statement("SELECT extent, lo, hi, flags, title, calendar FROM single_event WHERE item = ?");
  single->bind(1, item);
  while (single->executeStep())
    rows.emplace_back(SingleRow{.extent = single->getColumn(0).getInt(),
                                .lo = single->getColumn(1).getInt64(),
                                .hi = single->getColumn(2).getInt64(),
                                .flags = single->getColumn(3).getInt(),
                                .title = single->getColumn(4).getString()});
  const auto series = database.statement("SELECT lo, hi, data FROM series_event WHERE item = ?");
  series->bind(1, item);
  while (series->executeStep())
    rows.emplace_back(SeriesRow{.lo = series->getColumn(0).getInt64(),
                                .hi = series->getColumn(1).getInt64(),
                                .data = series->getColumn(2).getString()});
  const auto reminder = database.statement(
      "SELECT is_completed, completion, due, due_is_floating, created FROM reminder WHERE item = ?");
  reminder->bind(1, item);
  while (reminder->executeStep())
    rows.emplace_back(ReminderRow{.isCompleted = reminder->getColumn(0).getInt() != 0,
                                  .completion = optionalNumber(reminder->getColumn(1)),
                                  .due = optionalNumber(reminder->getColumn(2)),
                                  .dueIsFloating = reminder->getColumn(3).getInt() != 0,
                                  .created = reminder->getColumn(4).getInt64()});
  return rows;
}

// Where the text has no time of creation the row knows better.
bool agree(IndexRow stored, const IndexRow& expected) {
  auto* reminder = std::get_if<ReminderRow>(&stored);
  const auto* wanted = std::get_if<ReminderRow>(&expected);
  if (reminder != nullptr && wanted != nullptr && !wanted->created) reminder->created.reset();
  return stored == expected;
}

bool belongToCalendar(Database& database, const ItemRow& item) {
  const auto select = database.statement(
      "SELECT 1 FROM single_event WHERE item = ?1 AND calendar <> ?2 UNION ALL "
      "SELECT 1 FROM series_event WHERE item = ?1 AND calendar <> ?2 UNION ALL "
      "SELECT 1 FROM reminder WHERE item = ?1 AND calendar <> ?2");
  select->bind(1, item.id);
  select->bind(2, item.calendar);
  return !select->executeStep();
}

std::optional<std::string> faultOf(Database& database, ItemTable& items, const ItemRow& item) {
  std::string why;
  const auto components = ical::parseComponents(item.text);
  auto index = components.empty() ? std::nullopt : indexItem(components, items.zoneFinder(item), why);
  if (!index) return "cannot be read" + (why.empty() ? "." : ": " + why + ".");
  if (index->uid != item.uid) return "has another UID in its text (" + index->uid + ").";
  if (index->kind != item.kind) return "is of another kind in its text.";
  const std::vector<IndexRow> rows = storedRows(database, item.id);
  if (rows.size() != 1 || !agree(rows.front(), indexRowOf(*index)) || !belongToCalendar(database, item))
    return "is not found as its text says: its index rows differ.";
  return std::nullopt;
}

void checkItems(Database& database, std::vector<std::string>& faults) {
  ItemTable items(database);
  const auto select = database.statement("SELECT id FROM item ORDER BY id");
  while (select->executeStep()) {
    const auto item = items.find(select->getColumn(0).getInt64());
    if (!item) continue;
    if (const auto fault = faultOf(database, items, *item))
      faults.push_back("The item " + item->uid + " " + *fault);
  }
}

}  // namespace

std::vector<std::string> findFaults(Database& database) {
  std::vector<std::string> faults;
  try {
    const Database::Transaction reading(database, Database::Transaction::Kind::reading);
    runQueries(database, faults);
    if (faults.empty()) checkItems(database, faults);
  } catch (const SQLite::Exception& error) {
    faults.push_back(std::string("The file is damaged: ") + error.what() + ".");
  }
  return faults;
}

}  // namespace ek::embedded
