// What is measured beside one another: something that holds a calendar and counts its occurrences.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace bench {

// From `from` until before `to`, in seconds since 1970 UTC.
struct Window {
  std::int64_t from = 0, to = 0;
};

class Contender {
 public:
  virtual ~Contender() = default;
  // How many occurrences overlap the window; each is visited with its start and end.
  virtual std::size_t count(Window window) = 0;
};

// Each opens what it works on: an iCalendar file, a table made by floor.h, a store of ours. They throw
// std::runtime_error when that cannot be done.
std::unique_ptr<Contender> openLibical(const std::string& icsFile);
std::unique_ptr<Contender> openKCalendarCore(const std::string& icsFile);
std::unique_ptr<Contender> openFloor(const std::string& table);
std::unique_ptr<Contender> openOurs(const std::string& store);

}  // namespace bench
