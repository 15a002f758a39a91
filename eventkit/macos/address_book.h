// The user's contacts, as the address book has them.
#pragma once

#import <AddressBook/AddressBook.h>

#include "eventkit/event_store.h"
#include "eventkit/macos/ref.h"

namespace ek::macos {

class SystemAddressBook final : public AddressBook {
 public:
  explicit SystemAddressBook(Ref<ABAddressBook> book) : book_(std::move(book)) {}
  std::optional<std::string> addressOf(const Participant& participant) override;

 private:
  Ref<ABAddressBook> book_;
};

}  // namespace ek::macos
