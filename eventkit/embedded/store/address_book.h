// The contacts that were imported into the store.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "eventkit/event_store.h"

namespace ek::embedded {

class EmbeddedAddressBook final : public AddressBook {
 public:
  explicit EmbeddedAddressBook(std::string path) : path_(std::move(path)) {}
  std::optional<std::string> addressOf(const Participant& participant) override;

 private:
  std::string path_;
};

}  // namespace ek::embedded
