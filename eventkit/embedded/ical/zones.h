// Which time zone a TZID means.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "eventkit/embedded/ical/component.h"
#include "foundation/time_zone.h"

namespace ek::ical {

// The zone of a VTIMEZONE by its own rules (RRULE and RDATE of its STANDARD and DAYLIGHT parts), worked out
// to the year 2100. Null when it has no usable part.
std::shared_ptr<const foundation::TimeZone> zoneOf(const Component& vtimezone);

// The zone that a TZID names by itself: a name of the zone database, also behind a prefix such as
// "/freeassociation.sourceforge.net/Tzfile/Europe/Berlin"; a Windows name ("W. Europe Standard Time"); a
// fixed offset ("GMT+01:00", "UTC-5"). Null when it says nothing.
std::shared_ptr<const foundation::TimeZone> zoneNamed(std::string_view tzid);

// The TZIDs that these components name.
std::set<std::string> timeZonesIn(std::string_view text);

// A VTIMEZONE for a zone, for items made here: named by the zone's name, or `fallbackName` when it has none.
Component vtimezoneFor(const foundation::TimeZone& zone, std::string_view fallbackName);

}  // namespace ek::ical
