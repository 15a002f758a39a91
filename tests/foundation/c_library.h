// The C library's own reading of a time zone, to compare with.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <time.h>

#include "foundation/time_zone.h"
#include "tests/foundation/scoped_variable.h"

namespace foundation {

// Compares offsets and letters at random instants between two seconds since 1970.
inline void expectAgreesWithCLibrary(const TimeZone& zone, const std::string& variable, std::int64_t from,
                                     std::int64_t to) {
  const ScopedVariable scoped("TZ", variable);
  tzset();
  std::mt19937_64 random(7);
  std::uniform_int_distribution<std::int64_t> seconds(from, to);
  for (int i = 0; i < 3000; ++i) {
    const auto instant = static_cast<time_t>(seconds(random));
    tm fields{};
    localtime_r(&instant, &fields);
    const Date date{std::chrono::seconds(instant)};
    ASSERT_EQ(zone.offsetAt(date).count(), fields.tm_gmtoff) << instant;
    ASSERT_EQ(zone.letters(date), fields.tm_zone) << instant;
  }
}

}  // namespace foundation
