// Writes what was changed on an item into a component, and nothing else.
#pragma once

#include <string_view>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/store/alarm.h"
#include "eventkit/embedded/store/item_state.h"
#include "eventkit/embedded/store/time_form.h"

namespace ek::embedded {

// A component for an item that is made now.
ical::Component newComponent(std::string_view name, std::string_view uid, Date now);
// The component says something else from now on. `isRevision`: what its participants plan by has changed.
void stamp(ical::Component& component, Date now, bool isRevision);

ical::Line utcLine(std::string_view name, Date date);
// Replaces a property's value and keeps its parameters, where they go with the line's.
void setValue(ical::Component& component, const ical::Line& line);

void writeTexts(ical::Component& component, const ItemState& item);
// Alarms that others added in the meantime stay.
void writeAlarms(ical::Component& component, const ItemState& item, const AlarmAnchor& anchor);
// Rules that were there already keep their lines, whose end may have been changed.
void writeRules(ical::Component& component, const ItemState& item, const ZonedTime& start);

// Of an event. `end` as an event shows it: the last second of the last day where the form is a day.
void writeTimes(ical::Component& component, const ZoneFinder& zones, const TimeForm& form, Date start,
                Date end);
// The end of an event with times, as DTEND. In the hour that a clock shows twice DTEND can only mean the
// first; the second is written as a DURATION.
void writeEnd(ical::Component& component, const TimeForm& form, Date start, Date end);

}  // namespace ek::embedded
