// The bytes behind lines and components.
#pragma once

#include <string>

namespace ek::ical {

// Never changed once views point into it.
struct SourceText {
  std::string raw;
  std::string unfolded;  // the contents of the folded lines, one after the other
};

}  // namespace ek::ical
