// Names that Windows has for time zones.
#pragma once

#include <string_view>

namespace ek::ical {

// The zone database's name for a Windows name such as "W. Europe Standard Time", case aside; empty when
// Windows has no such zone.
std::string_view zoneNameForWindows(std::string_view windowsName);

}  // namespace ek::ical
