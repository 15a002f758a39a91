#include "eventkit/embedded/store/basis.h"

#include <algorithm>

namespace ek::embedded {

Basis currentBasis(Records& records, Database& database) {
  return {.version = database.version(),
          .generation = records.generation(),
          .zone = foundation::TimeZone::defaultZone()};
}

std::vector<RowId> calendarsNamed(CalendarDirectory& directory, EntityType kind,
                                  const std::vector<std::string>& identifiers) {
  std::vector<RowId> calendars;
  for (const CalendarRow& row : directory.all())
    if (row.kind == kind && (identifiers.empty() || std::ranges::binary_search(identifiers, row.identifier)))
      calendars.push_back(row.id);
  return calendars;
}

}  // namespace ek::embedded
