#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "eventkit/embedded/storage/database.h"

namespace ek::embedded {

// Within a writing transaction: the vCards of a text into the contacts, and how many there were. A card that
// is there already stays; one with a known UID takes the place of the older one.
std::size_t importContacts(Database& database, std::string_view text,
                           const std::function<void(std::size_t line, std::string reason)>& skip);

}  // namespace ek::embedded
