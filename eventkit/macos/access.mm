#include "eventkit/macos/access.h"

#include "eventkit/types.h"

namespace ek::macos {

namespace {

bool isUndecided(EKEntityType type) {
  return [EKEventStore authorizationStatusForEntityType:type] == EKAuthorizationStatusNotDetermined;
}

}  // namespace

void requestAccess(EKEventStore* store, unsigned entityMask, std::shared_ptr<std::atomic<bool>> granted) {
  // Before macOS 14 a store that is made with an entity mask asks by itself.
  if (@available(macOS 14.0, *)) {
    const auto answer = ^(BOOL isGranted, NSError*) {
      if (isGranted) granted->store(true);
    };
    if ((entityMask & kEntityMaskEvent) != 0 && isUndecided(EKEntityTypeEvent))
      [store requestFullAccessToEventsWithCompletion:answer];
    if ((entityMask & kEntityMaskReminder) != 0 && isUndecided(EKEntityTypeReminder))
      [store requestFullAccessToRemindersWithCompletion:answer];
  }
}

}  // namespace ek::macos
