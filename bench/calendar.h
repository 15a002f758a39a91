// The calendar that everything here is measured on: made up, but equal on every machine for equal size and
// seed. Its events lie in the ten years from 2021 to 2030; a fifth of them repeat.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct Calendar {
  std::string header;              // BEGIN:VCALENDAR up to the last VTIMEZONE
  std::vector<std::string> items;  // the components of one UID each: an event with its changed occurrences
  std::string footer;

  std::string text() const;
};

Calendar makeCalendar(std::size_t items, std::uint64_t seed = 1);

}  // namespace bench
