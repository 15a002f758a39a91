// What an answer was worked out from: as long as it is the same, so is the answer.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "eventkit/embedded/store/records.h"

namespace ek::embedded {

struct Basis {
  Database::Version version;
  std::uint64_t generation = 0;
  std::shared_ptr<const foundation::TimeZone> zone;  // the default zone
  bool operator==(const Basis&) const = default;
};

// Take it before reading.
Basis currentBasis(Records& records, Database& database);

// The calendars of that kind that bear one of the identifiers (all, without any), sorted.
std::vector<RowId> calendarsNamed(CalendarDirectory& directory, EntityType kind,
                                  const std::vector<std::string>& identifiers);

}  // namespace ek::embedded
