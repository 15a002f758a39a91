// The user's consent to read calendars and reminders.
#pragma once

#import <EventKit/EventKit.h>
#include <atomic>
#include <memory>

namespace ek::macos {

// Asks for the kinds in `entityMask` on which the user has not decided yet, and returns without waiting.
// `granted` becomes true with each consent: the store shows nothing of it until it is reset.
void requestAccess(EKEventStore* store, unsigned entityMask, std::shared_ptr<std::atomic<bool>> granted);

}  // namespace ek::macos
