// The rows of events that occur once.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/item_index.h"

namespace ek::embedded {

struct SingleEventRow {
  RowId item = 0;
  RowId calendar = 0;
  SingleEvent event;
};

// Within a transaction. Calls visit for each event that may touch the range, whatever the default zone is.
void visitSingleEvents(Database& database, std::int64_t start, std::int64_t end,
                       const std::function<void(SingleEventRow&)>& visit);
std::optional<SingleEventRow> findSingleEvent(Database& database, RowId item);

}  // namespace ek::embedded
