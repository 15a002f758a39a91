// Runs a query for events. EventKit silently cuts a range to its first four years and promises no order:
// longer ranges are asked for in slices, and every answer is sorted.
#pragma once

#include <memory>

#include "eventkit/event_store.h"
#include "eventkit/macos/changes.h"
#include "eventkit/macos/predicate.h"

namespace ek::macos {

// A range above four years is looked at from 1900 to 2100 only, the years in which calendars hold anything.
// To be called within guarded().
std::shared_ptr<const EventList> eventsMatching(const Ref<EKEventStore>& store,
                                                const EventConditions& conditions, const Changes& changes);

}  // namespace ek::macos
