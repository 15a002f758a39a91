#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "foundation/time_zone.h"
#include "tests/foundation/scoped_variable.h"

namespace foundation {
namespace {

constexpr Date kSummer{std::chrono::seconds(1720000000)};

TEST(DefaultZone, FollowsTheVariableAtOnce) {
  ScopedVariable variable("TZ", std::nullopt);
  constexpr struct {
    const char* value;
    const char* name;
    int hoursInSummer;
  } cases[] = {{"Europe/Berlin", "Europe/Berlin", 2},
               {":America/New_York", "America/New_York", -4},
               {"", "UTC", 0},
               {":", "UTC", 0},
               {"UTC", "UTC", 0},
               {"CET-1CEST,M3.5.0,M10.5.0/3", "", 2},
               {"<+03>-3", "", 3},
               {"/usr/share/zoneinfo/Asia/Tokyo", "Asia/Tokyo", 9},
               {":/usr/share/zoneinfo/Asia/Tokyo", "Asia/Tokyo", 9},
               {"Europe/Berlin", "Europe/Berlin", 2}};
  for (const auto& [value, name, hoursInSummer] : cases) {
    SCOPED_TRACE(value);
    variable.set(value);
    EXPECT_EQ(TimeZone::defaultZone()->name(), name);
    EXPECT_EQ(TimeZone::defaultZone()->offsetAt(kSummer), std::chrono::hours(hoursInSummer));
    EXPECT_EQ(TimeZone::defaultZone(), TimeZone::defaultZone());
  }
}

TEST(DefaultZone, IsTheSystemsOwnWhereTheVariableNamesItOrNothingUsable) {
  ScopedVariable variable("TZ", std::nullopt);
  const std::string system = TimeZone::defaultZone()->name();
  for (const char* value :
       {"No/Such_Zone", "../../etc/passwd", "/etc/passwd", "/no/such/file", ":CET-1", "x"}) {
    variable.set(value);
    ASSERT_TRUE(TimeZone::defaultZone()) << value;
    EXPECT_EQ(TimeZone::defaultZone()->name(), system) << value;
  }
}

TEST(DefaultZone, IsSharedBetweenThreads) {
  const ScopedVariable variable("TZ", "Europe/Berlin");
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([] {
      for (int n = 0; n < 2000; ++n) {
        EXPECT_EQ(TimeZone::defaultZone()->offsetAt(kSummer), std::chrono::hours(2));
        EXPECT_TRUE(TimeZone::named("Asia/Tokyo"));
      }
    });
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace foundation
