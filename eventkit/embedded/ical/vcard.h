// vCards (RFC 6350 and the older 2.1 and 3.0): what an attendee's address is looked up in.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/ical/stream.h"

namespace ek::ical {

struct Contact {
  std::string name;                 // FN, else made from N
  std::vector<std::string> emails;  // lower-cased
  std::string address;              // the first (preferred) ADR as one line; empty when there is none
  std::string text;                 // the whole card
};

// All cards of a text; what could not be read is added to `problems`.
std::vector<Contact> parseContacts(std::string_view text, std::vector<Problem>& problems);

}  // namespace ek::ical
