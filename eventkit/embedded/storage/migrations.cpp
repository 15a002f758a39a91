#include "eventkit/embedded/storage/migrations.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <array>
#include <cstddef>
#include <string>

#include "eventkit/embedded/storage/calendar_table.h"
#include "eventkit/embedded/storage/identifier.h"

namespace ek::embedded {
namespace {

// The script at index n leads from version n to version n + 1.
constexpr std::array kMigrations = {static_cast<const char*>(kSchema)};

void addDefaultCalendar(SQLite::Database& database, EntityType kind, const char* title) {
  SQLite::Statement insert(
      database,
      "INSERT INTO calendar (identifier, source, kind, title, red, green, blue, is_default, "
      "change) VALUES (?, 1, ?, ?, ?, ?, ?, 1, 1)");
  insert.bind(1, newIdentifier());
  insert.bind(2, static_cast<int>(kind));
  insert.bind(3, title);
  insert.bind(4, kDefaultColor.red);
  insert.bind(5, kDefaultColor.green);
  insert.bind(6, kDefaultColor.blue);
  insert.exec();
}

void addFirstContents(SQLite::Database& database) {
  SQLite::Statement source(database,
                           "INSERT INTO source (id, identifier, type, title) VALUES (1, ?, ?, 'Local')");
  source.bind(1, newIdentifier());
  source.bind(2, static_cast<int>(SourceType::local));
  source.exec();
  addDefaultCalendar(database, EntityType::event, "Calendar");
  addDefaultCalendar(database, EntityType::reminder, "Reminders");
}

}  // namespace

// In one statement, so that all is of one moment: another process may be creating the store.
FileMarks readMarks(SQLite::Database& database) {
  SQLite::Statement select(database,
                           "SELECT (SELECT application_id FROM pragma_application_id),"
                           " (SELECT user_version FROM pragma_user_version), count(*) FROM sqlite_schema");
  select.executeStep();
  return {.applicationId = select.getColumn(0).getInt64(),
          .version = select.getColumn(1).getInt64(),
          .isEmpty = select.getColumn(2).getInt64() == 0};
}

std::int64_t schemaVersion() { return static_cast<std::int64_t>(kMigrations.size()); }

void migrate(SQLite::Database& database, const FileMarks& marks) {
  for (auto version = static_cast<std::size_t>(marks.version); version < kMigrations.size(); ++version)
    database.exec(kMigrations[version]);
  if (marks.isEmpty) addFirstContents(database);
  database.exec("PRAGMA application_id = " + std::to_string(kApplicationId));
  database.exec("PRAGMA user_version = " + std::to_string(schemaVersion()));
}

}  // namespace ek::embedded
