// libical on its own: the file parsed into components, and every event of it expanded into a window.
#pragma once

#include <cstdint>
#include <functional>
#include <libical/ical.h>
#include <memory>
#include <string>
#include <vector>

#include "bench/contender.h"

namespace bench {

struct FreeComponent {
  void operator()(icalcomponent* component) const noexcept { icalcomponent_free(component); }
};
using IcalComponent = std::unique_ptr<icalcomponent, FreeComponent>;

// Reads the file and parses it; throws when it is no iCalendar.
IcalComponent parseWithLibical(const std::string& icsFile);

class Libical : public Contender {
 public:
  explicit Libical(IcalComponent calendar);
  std::size_t count(Window window) override;

  // Every occurrence that overlaps the window, series after series. `event` is the one that it comes from.
  using Visitor = std::function<void(icalcomponent* event, std::int64_t start, std::int64_t end)>;
  void expand(Window window, const Visitor& visit);
  // Of all items, in the file's order.
  const std::vector<std::string>& uids() const { return uids_; }

 private:
  struct Item {
    icalcomponent* event;
    std::vector<std::int64_t> overridden;  // starts that changed occurrences stand for
  };
  IcalComponent calendar_;
  std::vector<Item> items_;
  std::vector<std::string> uids_;
};

}  // namespace bench
