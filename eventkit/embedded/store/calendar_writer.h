// Saves and removes calendars and reminder lists. Each call is one transaction.
#pragma once

#include <optional>

#include "eventkit/embedded/store/calendar.h"
#include "eventkit/embedded/store/records.h"
#include "eventkit/types.h"

namespace ek::embedded {

// As ek::EventStore has them.
bool saveCalendar(Records& records, Database& database, EmbeddedCalendar& calendar,
                  std::optional<Error>& error);
bool removeCalendar(Records& records, Database& database, EmbeddedCalendar& calendar,
                    std::optional<Error>& error);

}  // namespace ek::embedded
