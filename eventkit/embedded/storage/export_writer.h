#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/export_plan.h"

namespace ek::embedded {

// Writes one VCALENDAR, piece by piece, with the line breaks of its header throughout. Of the envelopes'
// items only those in `calendars`.
void writeVolume(Database& database, const std::vector<RowId>& calendars, const ExportVolume& volume,
                 const std::function<void(std::string_view)>& sink);

}  // namespace ek::embedded
