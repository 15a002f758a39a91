// The rows beside an item, as they stand in the tables single_event, series_event and reminder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/item_index.h"

namespace ek::embedded {

struct SingleRow {
  int extent = 0;
  std::int64_t lo = 0, hi = 0;
  int flags = 0;
  std::string title;
  bool operator==(const SingleRow&) const = default;
};

struct SeriesRow {
  std::int64_t lo = 0, hi = 0;
  std::string data;
  bool operator==(const SeriesRow&) const = default;
};

struct ReminderRow {
  bool isCompleted = false;
  std::optional<std::int64_t> completion, due;
  bool dueIsFloating = false;
  std::optional<std::int64_t> created;  // nothing: the time of the import
  bool operator==(const ReminderRow&) const = default;
};

using IndexRow = std::variant<SingleRow, SeriesRow, ReminderRow>;

// The bits of single_event.flags.
enum SingleFlags : int { kFloatingStart = 1, kFloatingEnd = 2, kAllDay = 4 };

// The smallest n with 4^n above the length; 0 for no length and for an end before the start.
int extentFor(std::int64_t lo, std::int64_t hi);

IndexRow indexRowOf(const ItemIndex& index);

// The rows that an item has in the tables; one is right.
struct StoredIndexRow {
  RowId calendar = 0;
  IndexRow row;
  bool operator==(const StoredIndexRow&) const = default;
};
std::vector<StoredIndexRow> storedIndexRows(Database& database, RowId item);
void insertIndexRow(Database& database, RowId item, const StoredIndexRow& row);
void eraseIndexRows(Database& database, RowId item);

}  // namespace ek::embedded
