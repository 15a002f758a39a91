// The commands of zunocal. Each prints its answer to standard output, what went wrong to standard error, and
// gives the exit status.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "eventkit/embedded/storage/database.h"

namespace zunocal {

using ek::embedded::Database;

int listCalendars(Database& database, bool asJson);

struct ImportRequest {
  std::vector<std::string> paths;
  std::optional<std::string> title;
  bool isReadOnly = false;
  bool isSubscribed = false;
};
int importFiles(Database& database, const ImportRequest& request, bool asJson);

// `file` empty: to standard output.
int exportCalendars(Database& database, const std::vector<std::string>& titles, const std::string& file);

int checkStore(Database& database, bool asJson);

}  // namespace zunocal
