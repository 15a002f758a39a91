// From an item's iCalendar text to what queries need to know of it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/recurrence/series.h"
#include "eventkit/types.h"

namespace ek::embedded {

using recurrence::Moment;

// Finds the zone of a TZID, and the key under which it can be found again. Known names of the zone database
// go before a VTIMEZONE of the same name; a TZID that nothing explains is floating (null zone, empty key).
struct KeyedZone {
  std::shared_ptr<const foundation::TimeZone> zone;
  std::string key;
};
using ZoneFinder = std::function<KeyedZone(std::string_view tzid)>;

// An event that occurs once.
struct SingleEvent {
  Moment start, end;  // of an all-day event: 00:00 of the first day and of the day after the last, floating
  bool isAllDay = false;
  std::string title;
};

struct SeriesEvent {
  recurrence::Series series;
  std::string zoneKey;
};

struct ReminderEntry {
  bool isCompleted = false;
  std::optional<Date> completion;
  std::optional<Moment> due;  // date-only: 00:00, floating
};

struct ItemIndex {
  EntityType kind = EntityType::event;
  std::string uid;              // empty when the components have none
  std::optional<Date> created;  // CREATED
  std::variant<SingleEvent, SeriesEvent, ReminderEntry> entry;
};

// `components`: the VEVENTs or VTODOs of one UID, the master and its overrides in any order (overrides alone
// are allowed: then each is an occurrence of its own, there is no rule, and the first one's RECURRENCE-ID
// tells the zone of the series). Nothing, with the reason, when they cannot be placed in time at all (no
// readable DTSTART in an event, say). A broken RRULE of an otherwise readable event makes it occur once, and
// an override of RANGE=THISANDFUTURE is one of its own occurrence; overrides of a VTODO are left aside. The
// reason is then given beside the index.
std::optional<ItemIndex> indexItem(const std::vector<ical::Component>& components, const ZoneFinder& zones,
                                   std::string& why);

// A DATE or DATE-TIME property with its VALUE and TZID parameters.
struct ZonedTime {
  foundation::WallTime wall{};
  bool isDate = false;
  KeyedZone zone;  // UTC for a value with Z; null zone: floating
};
std::optional<ZonedTime> readTime(const ical::Line& line, const ZoneFinder& zones);
// COMPLETED, CREATED or LAST-MODIFIED: in UTC, written or not, unless they name a zone all the same.
std::optional<Date> readStamp(const ical::Component& component, std::string_view name,
                              const ZoneFinder& zones);
bool hasStatus(const ical::Component& component, std::string_view status);
Moment momentOf(const ZonedTime& time);
// Where a RECURRENCE-ID, an EXDATE or an RDATE lies in a series with that start: wall-clock time of the
// series' zone, 00:00 in a series of days. A date in a series with times means the occurrence of that day.
foundation::WallTime placeInSeries(const ZonedTime& time, const ZonedTime& start);
// The last day, as 00:00, that UNTIL leaves to a series of days.
foundation::WallTime lastDayOf(const recurrence::Until& until);
Date instantOf(const Moment& moment, const foundation::TimeZone& defaultZone);

}  // namespace ek::embedded
