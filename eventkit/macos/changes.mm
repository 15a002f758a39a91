#include "eventkit/macos/changes.h"

#include "eventkit/macos/guard.h"

namespace ek::macos {

namespace {

// By value and not within a lambda: a block takes references along as they are.
Ref<NSObject> observe(EKEventStore* store, std::shared_ptr<std::atomic<unsigned>> count) {
  return Ref<NSObject>(static_cast<NSObject*>([[NSNotificationCenter defaultCenter]
      addObserverForName:EKEventStoreChangedNotification
                  object:store
                   queue:nil
              usingBlock:^(NSNotification*) {
                count->fetch_add(1);
              }]));
}

}  // namespace

Changes::Changes(EKEventStore* store) : observer_(guarded([&] { return observe(store, count_); })) {}

Changes::~Changes() {
  @autoreleasepool {
    [[NSNotificationCenter defaultCenter] removeObserver:observer_.get()];
  }
}

}  // namespace ek::macos
