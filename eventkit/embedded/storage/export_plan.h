// Which VCALENDARs an export of one title consists of, and what stands in each.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "eventkit/embedded/storage/database.h"

namespace ek::embedded {

// One VCALENDAR to be written.
struct ExportVolume {
  std::string header;  // property lines
  // Imported VCALENDARs, whose parts and items stand in their places.
  struct Envelope {
    RowId row = 0;
    std::set<int> leftOut;  // places of parts that an envelope before this one has already
  };
  std::vector<Envelope> envelopes;
  // After them: items made here (or moved here), and the texts of VTIMEZONEs that they and edited ones need.
  std::vector<std::string> zones;
  std::vector<RowId> items;
};

// Within a reading transaction. `calendars`: all those of the title.
std::vector<ExportVolume> planExport(Database& database, const std::string& title,
                                     const std::vector<RowId>& calendars);

}  // namespace ek::embedded
