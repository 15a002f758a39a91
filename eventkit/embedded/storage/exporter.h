// Writes calendars as iCalendar.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/storage/calendar_table.h"
#include "eventkit/embedded/storage/database.h"

namespace ek::embedded {

// One VCALENDAR for each title, one after the other: event calendars and reminder lists of the same title go
// together again. What was imported and not changed stands as it stood in its file, line for line; the
// VCALENDARs of one file stay apart, those of several files become one. Items made here follow, with the
// VTIMEZONEs that they need. VTIMEZONEs of one TZID that differ cannot stand in one VCALENDAR: a further one
// takes what came with the other.
class Exporter {
 public:
  using Sink = std::function<void(std::string_view)>;
  explicit Exporter(Database& database) : database_(database) {}

  // Of all calendars when `titles` is empty; calendars without items only when there are no others. Gives
  // back the titles that there are not: then nothing is written.
  std::vector<std::string> write(const std::vector<std::string>& titles, const Sink& sink);

 private:
  struct TitleGroup {
    std::string title;
    std::vector<RowId> calendars;
    bool isEmpty = true;
  };
  std::vector<TitleGroup> groups();

  Database& database_;
};

}  // namespace ek::embedded
