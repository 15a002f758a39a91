// The marks that removed items leave behind: kept answers are brought up to date by them, and a sync tells
// its server of them.
#pragma once

#include <cstdint>

#include "eventkit/embedded/storage/database.h"

namespace ek::embedded {

// Marks older than so many changes are dropped: what was read before them is read anew. Those of a calendar
// that is synced with an account stay until a sync has told of them.
inline constexpr std::int64_t kRememberedChanges = 10'000;

// Within a writing transaction, before the rows are erased.
void markRemoved(Database& database, RowId item);
void markAllRemoved(Database& database, RowId calendar);

}  // namespace ek::embedded
