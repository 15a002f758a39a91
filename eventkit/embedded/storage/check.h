// Whether a store is sound.
#pragma once

#include <string>
#include <vector>

#include "eventkit/embedded/storage/database.h"

namespace ek::embedded {

// What is wrong, a sentence each; empty when all is well. Looks at SQLite's structures, at every item's text
// and whether its index rows say the same, and for rows that belong to nothing. Changes nothing.
std::vector<std::string> findFaults(Database& database);

}  // namespace ek::embedded
