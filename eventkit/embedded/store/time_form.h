// How a DATE or DATE-TIME property is written: as a day, in UTC, in a named zone, or without a zone.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/storage/item_index.h"
#include "eventkit/embedded/storage/item_table.h"

namespace ek::embedded {

using foundation::TimeZone;
using foundation::WallTime;

struct TimeForm {
  enum class Kind { day, utc, zoned, floating };
  Kind kind = Kind::floating;
  std::string tzid;                      // of zoned times; of floating ones when nothing explains it
  std::shared_ptr<const TimeZone> zone;  // the default one for days and where there is none

  // A day's wall-clock time is its 00:00.
  WallTime wallOf(Date date) const;
  Date instantOf(WallTime wall) const { return zone->instantOf(wall); }
  ical::Line line(std::string_view name, WallTime wall) const;
  std::string value(WallTime wall) const;
};

// As an existing property has it.
TimeForm formOf(const ical::Line& line, const ZoneFinder& zones);
TimeForm dayForm();
// For new times: the default zone.
TimeForm localForm();
// Makes sure that the calendar can say what the zone is.
void keepZone(ItemTable& items, RowId calendar, const TimeForm& form);

}  // namespace ek::embedded
