// The floor: what SQLite alone takes where everything is known already. One table of ready-made occurrences
// with an index on their start, and one of item texts by key.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <vector>

#include "bench/contender.h"

namespace bench {

struct FloorOccurrence {
  std::int64_t start = 0, end = 0;
  std::int64_t item = 0;  // its key: 1 for the first of the item texts
  std::string title;
};

class Floor : public Contender {
 public:
  // A new file with these rows.
  static void make(const std::string& path, const std::vector<std::string>& itemTexts,
                   const std::vector<FloorOccurrence>& occurrences);
  explicit Floor(const std::string& path);

  // Reads what begins in the window.
  std::size_t count(Window window) override;
  // The items of these occurrences, by start.
  std::vector<std::int64_t> itemsIn(Window window);
  // One row by key; gives the length of its text.
  std::size_t readItem(std::int64_t item);
  // One row changed in a transaction of its own, durable when this returns (WAL, synchronous=FULL).
  void commitItem(std::int64_t item, std::string_view text);

 private:
  struct CloseDatabase {
    void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
  };
  struct CloseStatement {
    void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, CloseStatement>;

  Floor() = default;
  void open(const std::string& path);
  void run(const char* sql);
  Statement prepare(const char* sql);
  bool step(const Statement& statement);

  std::unique_ptr<sqlite3, CloseDatabase> database_;
  Statement window_, items_, item_, update_;
};

}  // namespace bench
