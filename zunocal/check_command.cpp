#include <fmt/format.h>

#include "eventkit/embedded/storage/check.h"
#include "zunocal/commands.h"
#include "zunocal/json.h"

namespace zunocal {

int checkStore(Database& database, bool asJson) {
  const std::vector<std::string> faults = ek::embedded::findFaults(database);
  if (asJson) {
    std::string list;
    for (const std::string& fault : faults) list += (list.empty() ? "" : ",") + jsonText(fault);
    fmt::print("{{\"ok\":{},\"faults\":[{}]}}\n", faults.empty(), list);
  } else if (faults.empty()) {
    fmt::print("The calendar store {} is in order.\n", database.path());
  } else {
    for (const std::string& fault : faults) fmt::print("{}\n", fault);
  }
  return faults.empty() ? 0 : 1;
}

}  // namespace zunocal
