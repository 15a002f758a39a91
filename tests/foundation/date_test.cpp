#include "foundation/date.h"

#include <gtest/gtest.h>

#include "foundation/time_zone.h"

using foundation::Date;
using foundation::dateWithString;
using foundation::description;
using foundation::TimeZone;

namespace {

Date at(std::int64_t seconds) { return Date(std::chrono::seconds(seconds)); }

}  // namespace

TEST(DateText, ReadsBothFormsOfTheOffset) {
  constexpr struct {
    const char* text;
    std::int64_t seconds;
  } cases[] = {{"1970-01-01 00:00:00 +0000", 0},
               {"1970-01-01 00:00:00 -0000", 0},
               {"2024-05-01 09:00:00 +0200", 1714546800},
               {"2024-05-01 09:00:00 -0730", 1714581000},
               {"2024-05-01 09:00:00 +051800", 1714534200},
               {"2024-05-01 09:00:00 -031800", 1714566600},
               {"2024-02-29 23:59:59 +0000", 1709251199},
               {"0001-01-01 00:00:00 +0000", -62135596800},
               {"4001-01-01 00:00:00 +0000", 64092211200}};
  for (const auto& [text, seconds] : cases) {
    SCOPED_TRACE(text);
    EXPECT_EQ(dateWithString(text), at(seconds));
  }
}

TEST(DateText, RefusesEveryOtherText) {
  for (const char* text :
       {"2024-05-01", "2024-05-01 09:00:00", "2024-05-01 09:00:00 ", "2024-05-01 09:00:00 0200",
        "2024-05-01 09:00:00 +020", "2024-05-01 09:00:00 +02000", "2024-05-01 09:00:00 +02000000",
        "2024-05-01 09:00:00 +02:00", "2024-05-01 09:00:00 +0200 ", " 2024-05-01 09:00:00 +0200",
        "2024-05-01T09:00:00 +0200", "2024-5-01 09:00:00 +0200", "24-05-01 09:00:00 +0200",
        "-024-05-01 09:00:00 +0200", "2024-05-01 09:00:00 +02a0", ""})
    EXPECT_FALSE(dateWithString(text)) << text;
  for (const std::string wall :
       {"2023-02-29 09:00:00", "2024-13-01 09:00:00", "2024-00-01 09:00:00", "2024-05-00 09:00:00",
        "2024-05-01 24:00:00", "2024-05-01 09:60:00", "2024-05-01 09:00:60"})
    EXPECT_FALSE(dateWithString(wall + " +0200")) << wall;
}

TEST(DateText, IsWrittenWithTheOffsetOfThatDate) {
  const auto berlin = TimeZone::named("Europe/Berlin");
  ASSERT_TRUE(berlin);
  EXPECT_EQ(description(at(1714546800), *berlin), "2024-05-01 09:00:00 +0200");
  EXPECT_EQ(description(at(1704067200), *berlin), "2024-01-01 01:00:00 +0100");
  EXPECT_EQ(description(at(-2500000000), *berlin), "1890-10-11 20:26:48 +005328");
  EXPECT_EQ(description(at(1714546800), *TimeZone::fixed(std::chrono::seconds(-12600))),
            "2024-05-01 03:30:00 -0330");
  EXPECT_EQ(description(foundation::distantPast(), *TimeZone::utc()), "0001-01-01 00:00:00 +0000");
  EXPECT_EQ(description(foundation::distantFuture(), *TimeZone::utc()), "4001-01-01 00:00:00 +0000");
}
