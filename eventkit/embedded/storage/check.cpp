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

// Where the text has no time of creation the row knows better.
bool agree(IndexRow stored, const IndexRow& expected) {
  auto* reminder = std::get_if<ReminderRow>(&stored);
  const auto* wanted = std::get_if<ReminderRow>(&expected);
  if (reminder != nullptr && wanted != nullptr && !wanted->created) reminder->created.reset();
  return stored == expected;
}

std::optional<std::string> faultOf(Database& database, ItemTable& items, const ItemRow& item) {
  std::string why;
  const auto components = ical::parseComponents(item.text);
  auto index = components.empty() ? std::nullopt : indexItem(components, items.zoneFinder(item), why);
  if (!index) return "cannot be read" + (why.empty() ? "." : ": " + why + ".");
  if (index->uid != item.uid) return "has another UID in its text (" + index->uid + ").";
  if (index->kind != item.kind) return "is of another kind in its text.";
  const std::vector<StoredIndexRow> rows = storedIndexRows(database, item.id);
  if (rows.size() != 1 || !agree(rows.front().row, indexRowOf(*index)) ||
      rows.front().calendar != item.calendar)
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
