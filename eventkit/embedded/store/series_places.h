// Where components and the values of EXDATE, RDATE and RECURRENCE-ID lie in their series: at which wall-clock
// time of its zone.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/storage/item_index.h"

namespace ek::embedded {

using foundation::WallTime;

// Of the components of one item: the one that stands for the whole item, else the first.
std::size_t masterOf(const std::vector<ical::Component>& components);

class SeriesPlaces {
 public:
  SeriesPlaces(const std::vector<ical::Component>& components, ZoneFinder zones);

  // Of a line with one value.
  std::optional<WallTime> of(const ical::Line& line) const;
  // Of an occurrence with a component of its own; nothing for the component of the whole item.
  std::optional<WallTime> of(const ical::Component& component) const;

 private:
  ZoneFinder zones_;
  std::optional<ZonedTime> start_;
};

}  // namespace ek::embedded
