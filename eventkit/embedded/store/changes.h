// Which items changed since a change number: what kept answers are brought up to date by.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/item_table.h"

namespace ek::embedded {

// Written or removed after the change number `since`, each once, ascending; `now` is the store's. Nothing
// when there are so many that reading everything again is the cheaper way, or it is too long ago.
std::optional<std::vector<RowId>> itemsChangedSince(Database& database, std::int64_t since, std::int64_t now);

}  // namespace ek::embedded
