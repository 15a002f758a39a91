// The rows of calendars and of their accounts: few, read together and kept until something changes.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/storage/calendar_table.h"
#include "eventkit/embedded/storage/database.h"
#include "eventkit/types.h"

namespace ek::embedded {

class CalendarDirectory {
 public:
  explicit CalendarDirectory(Database& database) : database_(database) {}

  // In order of creation. What these answer is valid until the next call.
  const std::vector<CalendarRow>& all();
  const CalendarRow* find(RowId id);
  const CalendarRow* findByIdentifier(std::string_view identifier);
  const CalendarRow* defaultFor(EntityType kind);

  // Of one of the rows that were answered last, which stay valid: they were read together.
  std::optional<Source> sourceOf(const CalendarRow& row) const;
  // Nothing when no account has that identifier.
  std::optional<RowId> sourceRow(std::string_view identifier);
  // The user's own addresses in an account, as the store was told them.
  std::vector<std::string> ownerAddresses(RowId source);

 private:
  void bringUpToDate();
  template <class Predicate>
  const CalendarRow* first(Predicate predicate);

  Database& database_;
  std::vector<CalendarRow> rows_;
  std::map<RowId, Source> sources_;
  std::optional<Database::Version> version_;
};

}  // namespace ek::embedded
