// The files of one run, all made from the same calendar, and the windows that are asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "bench/calendar.h"
#include "bench/contender.h"

namespace bench {

// Paths of one size's files in a folder. They are made by prepare() and only read by the benchmarks; what a
// benchmark writes to is a copy.
struct Dataset {
  std::string folder;
  std::size_t items = 0;

  std::string ics() const { return folder + "/calendar.ics"; }
  std::string floorTable() const { return folder + "/floor.sqlite"; }
  std::string store() const { return folder + "/store.sqlite"; }
  // A path for something new: what is there goes.
  std::string scratch(const std::string& name) const;
};

// Makes the files of the peers and of the floor, and imports the calendar into a store of ours.
void prepare(const Dataset& dataset);

// Local time, in the zone that useBenchZone sets for this process and its children: equal on every machine.
void useBenchZone();
Window month(int number);        // 0 is January 2025
Window yearFrom(int dayNumber);  // the year that begins so many days after 2026-01-01
inline constexpr int kMarch2026 = 14;

}  // namespace bench
