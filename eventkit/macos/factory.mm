// The system's own calendars and contacts are the data wherever this file is linked.
#include "eventkit/macos/address_book.h"
#include "eventkit/macos/event_store.h"

namespace ek {

namespace {

// Nil where the framework refuses: every answer of nil is empty, as with access that was refused.
template <class Object, class Make>
macos::Ref<Object> madeOrNil(Make&& make) {
  @autoreleasepool {
    @try {
      return macos::Ref<Object>::adopt(make());
    } @catch (NSException*) {
      return {};
    }
  }
}

}  // namespace

std::shared_ptr<EventStore> makeEventStore(unsigned entityMask) {
  return std::make_shared<macos::EventKitStore>(
      madeOrNil<EKEventStore>([&] { return [[EKEventStore alloc] initWithAccessToEntityTypes:entityMask]; }),
      entityMask);
}

std::shared_ptr<AddressBook> makeAddressBook() {
  return std::make_shared<macos::SystemAddressBook>(
      madeOrNil<ABAddressBook>([] { return [[ABAddressBook alloc] init]; }));
}

}  // namespace ek
