// What a component's iCalendar text says, in the terms of the store's interface.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/storage/item_index.h"
#include "eventkit/embedded/store/alarm.h"
#include "eventkit/types.h"

namespace ek::embedded {

// A rule beside the line that says it: lines say more than a RecurrenceRule can hold.
struct StoredRule {
  RecurrenceRule rule;
  ical::Line line;
};

struct Fields {
  std::optional<std::string> title, location, notes, url;
  std::optional<Date> created, lastModified;
  std::optional<std::string> organizer;  // its calendar address
  std::vector<Participant> attendees;
  std::vector<AlarmSource> alarms;
  std::vector<StoredRule> rules;
  std::optional<ZonedTime> start;
  // Reminders only.
  std::optional<ZonedTime> due;
  bool isCompleted = false;
  std::optional<Date> completion;
  int priority = 0;
};

Fields readFields(const ical::Component& component, const ZoneFinder& zones);

// The value of a property as an instant; a floating one is taken in the default zone.
std::optional<Date> readInstant(const ical::Component& component, std::string_view name,
                                const ZoneFinder& zones);
// Where the component ends: DTEND or DUE, else its start and DURATION; nothing when it says neither.
std::optional<ZonedTime> readEnd(const ical::Component& component, const ZoneFinder& zones);

AlarmAnchor anchorOf(const ical::Component& component, const ZoneFinder& zones);

// The e-mail address in a calendar address of the scheme mailto (RFC 6068), and the reverse; a calendar
// address of another scheme is taken as it is.
std::string addressIn(std::string_view calendarAddress);
std::string calendarAddressOf(std::string_view address);
bool equalsIgnoringCase(std::string_view a, std::string_view b);

}  // namespace ek::embedded
