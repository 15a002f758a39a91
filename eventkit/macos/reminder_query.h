// Runs a query for reminders, which EventKit answers later and on a thread of its own.
#pragma once

#import <EventKit/EventKit.h>
#include <memory>

#include "eventkit/event_store.h"
#include "eventkit/macos/changes.h"
#include "eventkit/macos/ref.h"

namespace ek::macos {

// In EventKit's own order, by creation date. To be called within guarded().
void fetchReminders(Ref<EKEventStore> store, NSPredicate* predicate, const Changes& changes,
                    EventStore::ReminderCompletion completion);

}  // namespace ek::macos
