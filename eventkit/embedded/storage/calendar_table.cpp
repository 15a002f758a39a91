#include "eventkit/embedded/storage/calendar_table.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

#include "eventkit/embedded/storage/identifier.h"
#include "eventkit/embedded/storage/removed_items.h"

namespace ek::embedded {
namespace {

CalendarRow rowOf(SQLite::Statement& select) {
  CalendarRow row;
  int column = 0;
  const auto next = [&] { return select.getColumn(column++); };
  row.id = next().getInt64();
  row.identifier = next().getString();
  row.source = next().getInt64();
  row.kind = static_cast<EntityType>(next().getInt());
  row.type = static_cast<CalendarType>(next().getInt());
  row.title = next().getString();
  if (!select.isColumnNull(column)) {
    const double red = next().getDouble();
    const double green = next().getDouble();
    row.color = Color{.red = red, .green = green, .blue = next().getDouble()};
  } else {
    column += 3;
  }
  row.isImmutable = next().getInt() != 0;
  row.isSubscribed = next().getInt() != 0;
  row.allowsModification = next().getInt() != 0;
  row.isDefault = next().getInt() != 0;
  row.change = next().getInt64();
  return row;
}

std::optional<CalendarRow> firstRow(SQLite::Statement& select) {
  if (!select.executeStep()) return std::nullopt;
  return rowOf(select);
}

// The columns from type to change, in the order of the table, from `first` on.
void bindProperties(SQLite::Statement& statement, int first, const CalendarRow& row) {
  int index = first;
  statement.bind(index++, static_cast<int>(row.type));
  statement.bind(index++, row.title);
  statement.bind(index++, row.color->red);
  statement.bind(index++, row.color->green);
  statement.bind(index++, row.color->blue);
  for (const bool flag : {row.isImmutable, row.isSubscribed, row.allowsModification, row.isDefault})
    statement.bind(index++, flag ? 1 : 0);
  statement.bind(index, row.change);
}

#define ZUNO_CALENDAR_COLUMNS                                                                         \
  "SELECT id, identifier, source, kind, type, title, red, green, blue, is_immutable, is_subscribed, " \
  "allows_modification, is_default, change FROM calendar "

}  // namespace

std::vector<CalendarRow> CalendarTable::all() {
  const auto select = database_.statement(ZUNO_CALENDAR_COLUMNS "ORDER BY id");
  std::vector<CalendarRow> rows;
  while (select->executeStep()) rows.push_back(rowOf(*select));
  return rows;
}

std::optional<CalendarRow> CalendarTable::find(RowId id) {
  const auto select = database_.statement(ZUNO_CALENDAR_COLUMNS "WHERE id = ?");
  select->bind(1, id);
  return firstRow(*select);
}

std::optional<CalendarRow> CalendarTable::findByTitle(std::string_view title, EntityType kind) {
  const auto select =
      database_.statement(ZUNO_CALENDAR_COLUMNS "WHERE title = ? AND kind = ? ORDER BY id LIMIT 1");
  select->bind(1, std::string(title));
  select->bind(2, static_cast<int>(kind));
  return firstRow(*select);
}

void CalendarTable::insert(CalendarRow& row) {
  if (row.identifier.empty()) row.identifier = newIdentifier();
  if (!row.color) row.color = kDefaultColor;
  row.change = database_.nextChange();
  const auto insert = database_.statement(
      "INSERT INTO calendar (identifier, source, kind, type, title, red, green, blue, is_immutable, "
      "is_subscribed, "
      "allows_modification, is_default, change) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id");
  insert->bind(1, row.identifier);
  insert->bind(2, row.source);
  insert->bind(3, static_cast<int>(row.kind));
  bindProperties(*insert, 4, row);
  insert->executeStep();
  row.id = insert->getColumn(0).getInt64();
}

void CalendarTable::update(CalendarRow& row) {
  if (!row.color) row.color = kDefaultColor;
  row.change = database_.nextChange();
  const auto update = database_.statement(
      "UPDATE calendar SET type = ?2, title = ?3, red = ?4, green = ?5, blue = ?6, is_immutable = ?7, "
      "is_subscribed = ?8, allows_modification = ?9, is_default = ?10, change = ?11 WHERE id = ?1");
  update->bind(1, row.id);
  bindProperties(*update, 2, row);
  update->exec();
}

void CalendarTable::erase(RowId id) {
  const auto run = [&](const char* sql, auto... values) {
    const auto statement = database_.statement(sql);
    int index = 0;
    (statement->bind(++index, values), ...);
    statement->exec();
  };
  const std::int64_t change = database_.nextChange();
  markAllRemoved(database_, id);
  run("DELETE FROM single_event WHERE item IN (SELECT id FROM item WHERE calendar = ?)", id);
  run("DELETE FROM series_event WHERE item IN (SELECT id FROM item WHERE calendar = ?)", id);
  run("DELETE FROM reminder WHERE item IN (SELECT id FROM item WHERE calendar = ?)", id);
  run("DELETE FROM item WHERE calendar = ?", id);
  run("UPDATE calendar SET is_default = 1, change = ?2 WHERE id = (SELECT min(other.id) FROM calendar AS "
      "other "
      "JOIN calendar AS gone ON gone.id = ?1 AND gone.is_default AND other.kind = gone.kind AND "
      "other.id <> gone.id)",
      id, change);
  run("DELETE FROM calendar WHERE id = ?", id);
  run("DELETE FROM envelope WHERE id NOT IN (SELECT envelope FROM calendar_envelope)");
}

std::vector<Source> CalendarTable::sources() {
  const auto select = database_.statement("SELECT identifier, type, title FROM source ORDER BY id");
  std::vector<Source> sources;
  while (select->executeStep())
    sources.push_back({.identifier = select->getColumn(0).getString(),
                       .type = static_cast<SourceType>(select->getColumn(1).getInt()),
                       .title = select->getColumn(2).getString()});
  return sources;
}

}  // namespace ek::embedded
