// The text of one iCalendar file on its way into the store.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/storage/calendar_table.h"
#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/import_plan.h"
#include "eventkit/embedded/storage/import_report.h"
#include "eventkit/embedded/storage/item_reading.h"
#include "eventkit/embedded/storage/item_table.h"

namespace ek::embedded {

class CalendarImport {
 public:
  // `stem` is the title of calendars whose VCALENDAR has none. Counts go to the report.
  CalendarImport(Database& database, const ImportOptions& options, std::string stem, ImportReport& report,
                 SkipPart skip);
  // Sorts out what is in the text, which has to stay until it is stored.
  void plan(std::string_view text);
  // Belongs into a writing transaction, which is not worth a commit when no item was imported.
  void store();

 private:
  // A calendar or list that items go to.
  struct Target {
    std::optional<CalendarRow> calendar;
    bool isNew = false;
  };
  // The row of a VCALENDAR.
  struct Envelope {
    RowId row = 0;
    std::array<bool, 2> isLinked{};  // to the calendar of each kind
    std::array<ZoneFinder, 2> zones;
  };

  void storeEnvelope(const ImportPlan::Envelope& planned);
  void storePart(RowId envelope, std::uint32_t place, std::string_view name, std::string_view text);
  void storeGroup(const ImportPlan::Group& group);
  void storeItem(const ImportPlan::Group& group, const ReadItem& item);
  const std::string& nextIdentifier();
  void leaveOut(const ImportPlan::Source& source, const std::string& reason);
  Target& target(const ImportPlan::Source& source);
  RowId calendarFor(const ImportPlan::Source& source);
  const ZoneFinder& zonesFor(const ImportPlan::Source& source);
  void reportLonelyParts();
  void removeUnused();

  Database& database_;
  const ImportOptions& options_;
  std::string stem_;
  ImportReport& report_;
  SkipPart skip_;
  CalendarTable calendars_;
  ItemTable items_;

  std::string uniformText_;  // in place of one with several kinds of line breaks
  ImportPlan plan_;
  std::vector<std::string> identifiers_;  // for new items, once there is one
  std::size_t usedIdentifiers_ = 0;
  std::vector<Envelope> envelopes_;          // parallel to the plan's
  std::map<std::uint32_t, Target> targets_;  // by twice the title plus the kind
  std::set<RowId> leftEnvelopes_;            // of earlier imports, whose items were imported again
};

}  // namespace ek::embedded
