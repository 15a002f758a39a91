#include "bench/floor.h"

#include <stdexcept>

namespace bench {

void Floor::open(const std::string& path) {
  sqlite3* database = nullptr;
  const int outcome = sqlite3_open(path.c_str(), &database);
  database_.reset(database);
  if (outcome != SQLITE_OK) throw std::runtime_error(path + ": cannot be opened");
  run("PRAGMA journal_mode=WAL");
  run("PRAGMA synchronous=FULL");
}

void Floor::run(const char* sql) {
  if (sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(database_.get()));
}

Floor::Statement Floor::prepare(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v3(database_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) !=
      SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(database_.get()));
  return Statement(statement);
}

// False, and the statement reset, after the last row.
bool Floor::step(const Statement& statement) {
  const int outcome = sqlite3_step(statement.get());
  if (outcome == SQLITE_ROW) return true;
  sqlite3_reset(statement.get());
  if (outcome != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(database_.get()));
  return false;
}

void Floor::make(const std::string& path, const std::vector<std::string>& itemTexts,
                 const std::vector<FloorOccurrence>& occurrences) {
  Floor floor;
  floor.open(path);
  floor.run("BEGIN");
  floor.run("CREATE TABLE item (id INTEGER PRIMARY KEY, text TEXT NOT NULL)");
  floor.run(
      "CREATE TABLE occurrence (id INTEGER PRIMARY KEY, start INTEGER NOT NULL, end INTEGER NOT NULL,"
      " item INTEGER NOT NULL, title TEXT NOT NULL)");
  const Statement item = floor.prepare("INSERT INTO item (text) VALUES (?)");
  for (const std::string& text : itemTexts) {
    sqlite3_bind_text(item.get(), 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    floor.step(item);
  }
  const Statement row = floor.prepare("INSERT INTO occurrence (start, end, item, title) VALUES (?, ?, ?, ?)");
  for (const FloorOccurrence& occurrence : occurrences) {
    sqlite3_bind_int64(row.get(), 1, occurrence.start);
    sqlite3_bind_int64(row.get(), 2, occurrence.end);
    sqlite3_bind_int64(row.get(), 3, occurrence.item);
    sqlite3_bind_text(row.get(), 4, occurrence.title.data(), static_cast<int>(occurrence.title.size()),
                      SQLITE_STATIC);
    floor.step(row);
  }
  floor.run("CREATE INDEX occurrence_start ON occurrence (start)");
  floor.run("COMMIT");
}

Floor::Floor(const std::string& path) {
  open(path);
  window_ = prepare("SELECT start, end, title FROM occurrence WHERE start >= ? AND start < ? ORDER BY start");
  items_ = prepare("SELECT item FROM occurrence WHERE start >= ? AND start < ? ORDER BY start");
  item_ = prepare("SELECT text FROM item WHERE id = ?");
  update_ = prepare("UPDATE item SET text = ? WHERE id = ?");
}

std::size_t Floor::count(Window window) {
  sqlite3_bind_int64(window_.get(), 1, window.from);
  sqlite3_bind_int64(window_.get(), 2, window.to);
  std::size_t found = 0;
  while (step(window_)) {
    if (sqlite3_column_int64(window_.get(), 0) > sqlite3_column_int64(window_.get(), 1) ||
        sqlite3_column_text(window_.get(), 2) == nullptr)
      throw std::runtime_error("a broken row");
    ++found;
  }
  return found;
}

std::vector<std::int64_t> Floor::itemsIn(Window window) {
  sqlite3_bind_int64(items_.get(), 1, window.from);
  sqlite3_bind_int64(items_.get(), 2, window.to);
  std::vector<std::int64_t> items;
  while (step(items_)) items.push_back(sqlite3_column_int64(items_.get(), 0));
  return items;
}

std::size_t Floor::readItem(std::int64_t item) {
  sqlite3_bind_int64(item_.get(), 1, item);
  if (!step(item_)) throw std::runtime_error("no such item");
  const std::string text(reinterpret_cast<const char*>(sqlite3_column_text(item_.get(), 0)),
                         static_cast<std::size_t>(sqlite3_column_bytes(item_.get(), 0)));
  sqlite3_reset(item_.get());
  return text.size();
}

void Floor::commitItem(std::int64_t item, std::string_view text) {
  sqlite3_bind_text(update_.get(), 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  sqlite3_bind_int64(update_.get(), 2, item);
  step(update_);
}

std::unique_ptr<Contender> openFloor(const std::string& table) { return std::make_unique<Floor>(table); }

}  // namespace bench
