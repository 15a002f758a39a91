// The rows of items: one row holds one whole resource, a series with its overridden occurrences, as
// iCalendar text; index rows beside it follow from the text. All calls belong into a transaction.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/item_index.h"
#include "eventkit/types.h"

namespace ek::embedded {

using RowId = std::int64_t;

struct ItemRow {
  RowId id = 0;
  RowId calendar = 0;
  EntityType kind = EntityType::event;
  std::string identifier;
  std::string uid;
  std::int64_t change = 0;
  std::string text;  // the components, one after the other
};

class ItemTable {
 public:
  explicit ItemTable(Database& database) : database_(database) {}

  std::optional<ItemRow> find(RowId id);
  std::optional<ItemRow> findByIdentifier(std::string_view identifier);
  // The oldest item of that UID.
  std::optional<ItemRow> findByUid(std::string_view uid);
  std::optional<ItemRow> findInCalendar(RowId calendar, std::string_view uid);

  // A new row with its index rows; the identifier is a new one when `identifier` is empty.
  RowId insert(RowId calendar, std::string_view identifier, std::string_view text, const ItemIndex& index);
  // Another text (and calendar) for a row that stays the same item.
  void replace(RowId id, RowId calendar, std::string_view text, const ItemIndex& index);
  // Leaves a mark behind, so that kept answers and later syncs learn of it.
  void erase(RowId id);

  // Zones of VTIMEZONEs that items brought along, by key; kept once loaded.
  ZoneFinder zoneFinder(RowId calendar);
  std::shared_ptr<const foundation::TimeZone> zoneForKey(std::string_view key);

 private:
  Database& database_;
};

// An upper-case random UUID.
std::string newIdentifier();

}  // namespace ek::embedded
