#include "eventkit/macos/changes.h"

#include "eventkit/macos/guard.h"

namespace ek::macos {

namespace {

// A function of its own: a block within a lambda would take the lambda's references along, not the values.
Ref<NSObject> observe(EKEventStore* store, const std::shared_ptr<std::atomic<unsigned>>& counter) {
  const auto count = counter;
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
