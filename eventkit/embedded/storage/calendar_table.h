// The rows of calendars and reminder lists. All calls belong into a transaction.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/types.h"

namespace ek::embedded {

// What a calendar or list without a colour gets at its first save.
inline constexpr Color kDefaultColor{.red = 27.0 / 255, .green = 173.0 / 255, .blue = 248.0 / 255};

struct CalendarRow {
  RowId id = 0;
  std::string identifier;
  RowId source = 1;
  EntityType kind = EntityType::event;
  CalendarType type = CalendarType::local;
  std::string title;
  std::optional<Color> color;  // alpha is not kept
  bool isImmutable = false;
  bool isSubscribed = false;
  bool allowsModification = true;
  bool isDefault = false;
  std::int64_t change = 0;
};

class CalendarTable {
 public:
  explicit CalendarTable(Database& database) : database_(database) {}

  // In order of creation.
  std::vector<CalendarRow> all();
  std::optional<CalendarRow> find(RowId id);
  // The oldest one of that title and kind.
  std::optional<CalendarRow> findByTitle(std::string_view title, EntityType kind);

  // A new row; the identifier is a new one when the row's is empty, the colour the default one when it has
  // none. `id` and `change` are set.
  void insert(CalendarRow& row);
  // Everything but id, identifier, source and kind.
  void update(CalendarRow& row);
  // With its items, which leave their marks behind. When it was the default the oldest other one of its kind
  // takes its place.
  void erase(RowId id);

  std::vector<Source> sources();

 private:
  Database& database_;
};

}  // namespace ek::embedded
