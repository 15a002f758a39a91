// The choice of store where there is no EventKit.
#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/store/address_book.h"
#include "eventkit/embedded/store/embedded_store.h"
#include "eventkit/event_store.h"

namespace ek {

std::shared_ptr<EventStore> makeEventStore(unsigned /*entityMask*/) {
  return std::make_shared<embedded::EmbeddedStore>(embedded::defaultStorePath());
}

std::shared_ptr<AddressBook> makeAddressBook() {
  return std::make_shared<embedded::EmbeddedAddressBook>(embedded::defaultStorePath());
}

}  // namespace ek
