#include "eventkit/embedded/storage/removed_items.h"

#include <SQLiteCpp/Statement.h>

#include "eventkit/types.h"

namespace ek::embedded {
namespace {

void mark(Database& database, const char* sql, RowId row) {
  const auto insert = database.statement(sql);
  insert->bind(1, database.nextChange());
  insert->bind(2, row);
  insert->exec();
  const auto forget = database.statement(
      "DELETE FROM removed_item WHERE change < ?1 AND calendar NOT IN "
      "(SELECT id FROM calendar WHERE type IN (?2, ?3))");
  forget->bind(1, database.nextChange() - kRememberedChanges);
  forget->bind(2, static_cast<int>(CalendarType::calDAV));
  forget->bind(3, static_cast<int>(CalendarType::exchange));
  forget->exec();
}

}  // namespace

void markRemoved(Database& database, RowId item) {
  mark(database, "INSERT INTO removed_item SELECT id, calendar, uid, ?1 FROM item WHERE id = ?2", item);
}

void markAllRemoved(Database& database, RowId calendar) {
  mark(database, "INSERT INTO removed_item SELECT id, calendar, uid, ?1 FROM item WHERE calendar = ?2",
       calendar);
}

}  // namespace ek::embedded
