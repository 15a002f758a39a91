#include "eventkit/embedded/store/series_places.h"

#include <algorithm>
#include <utility>

namespace ek::embedded {

std::size_t masterOf(const std::vector<ical::Component>& components) {
  const auto master = std::ranges::find_if(components, [](const ical::Component& component) {
    return component.find("RECURRENCE-ID") == nullptr;
  });
  return master == components.end() ? 0 : static_cast<std::size_t>(master - components.begin());
}

SeriesPlaces::SeriesPlaces(const std::vector<ical::Component>& components, ZoneFinder zones)
    : zones_(std::move(zones)) {
  const ical::Component& master = components[masterOf(components)];
  const ical::Line* line = master.find("RECURRENCE-ID");
  if (line == nullptr) line = master.find("DTSTART");
  if (line != nullptr) start_ = readTime(*line, zones_);
}

std::optional<WallTime> SeriesPlaces::of(const ical::Line& line) const {
  const std::optional<ZonedTime> time = readTime(line, zones_);
  if (!time || !start_) return std::nullopt;
  return placeInSeries(*time, *start_);
}

std::optional<WallTime> SeriesPlaces::of(const ical::Component& component) const {
  const ical::Line* line = component.find("RECURRENCE-ID");
  return line == nullptr ? std::nullopt : of(*line);
}

}  // namespace ek::embedded
