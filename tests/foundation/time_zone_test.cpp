#include "foundation/time_zone.h"

#include <gtest/gtest.h>

#include "tests/foundation/c_library.h"

namespace foundation {
namespace {

using std::chrono::hours;
using std::chrono::minutes;

Date utc(int year, unsigned month, unsigned day, unsigned hour, unsigned minute = 0, unsigned second = 0) {
  return Date(wallTimeFrom({year, month, day, hour, minute, second}).time_since_epoch());
}

struct WallCase {
  WallFields wall;
  Date instant;
};

void expectInstants(const TimeZone& zone, std::initializer_list<WallCase> cases) {
  for (const auto& [wall, instant] : cases)
    EXPECT_EQ(zone.instantOf(wallTimeFrom(wall)), instant)
        << wall.year << '-' << wall.month << '-' << wall.day << ' ' << wall.hour << ':' << wall.minute;
}

TEST(TimeZone, SkippedTimesMoveForwardAndRepeatedOnesAreTheFirst) {
  const auto berlin = TimeZone::named("Europe/Berlin");
  ASSERT_TRUE(berlin);
  expectInstants(*berlin, {{{2024, 3, 31, 1, 59, 59}, utc(2024, 3, 31, 0, 59, 59)},
                           {{2024, 3, 31, 2, 0, 0}, utc(2024, 3, 31, 1)},
                           {{2024, 3, 31, 2, 30, 0}, utc(2024, 3, 31, 1, 30)},
                           {{2024, 3, 31, 3, 0, 0}, utc(2024, 3, 31, 1)},
                           {{2024, 10, 27, 1, 59, 59}, utc(2024, 10, 26, 23, 59, 59)},
                           {{2024, 10, 27, 2, 0, 0}, utc(2024, 10, 27, 0)},
                           {{2024, 10, 27, 2, 30, 0}, utc(2024, 10, 27, 0, 30)},
                           {{2024, 10, 27, 3, 0, 0}, utc(2024, 10, 27, 2)},
                           {{2150, 7, 1, 12, 0, 0}, utc(2150, 7, 1, 10)},
                           {{2150, 3, 29, 2, 30, 0}, utc(2150, 3, 29, 1, 30)},
                           {{1800, 1, 1, 0, 0, 0}, utc(1799, 12, 31, 23, 6, 32)}});
}

TEST(TimeZone, OddZonesHoldToTheSameRule) {
  const auto lordHowe = TimeZone::named("Australia/Lord_Howe");  // half an hour of summer time
  const auto apia = TimeZone::named("Pacific/Apia");             // skipped 30 December 2011
  ASSERT_TRUE(lordHowe && apia);
  expectInstants(*lordHowe, {{{2024, 10, 6, 2, 15, 0}, utc(2024, 10, 5, 15, 45)},
                             {{2024, 4, 7, 1, 45, 0}, utc(2024, 4, 6, 14, 45)}});
  expectInstants(*apia, {{{2011, 12, 29, 23, 0, 0}, utc(2011, 12, 30, 9)},
                         {{2011, 12, 30, 12, 0, 0}, utc(2011, 12, 30, 22)},
                         {{2011, 12, 31, 0, 0, 0}, utc(2011, 12, 30, 10)}});
}

TEST(TimeZone, AgreesWithTheSystemForNamedZones) {
  for (const char* name :
       {"Europe/Berlin", "America/New_York", "America/St_Johns", "Australia/Lord_Howe", "Asia/Kolkata",
        "Pacific/Apia", "Africa/Casablanca", "Europe/Dublin", "Asia/Tehran", "America/Sao_Paulo",
        "Pacific/Chatham", "Etc/GMT+5", "Antarctica/Troll", "EST5EDT"}) {
    SCOPED_TRACE(name);
    const auto zone = TimeZone::named(name);
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->name(), name);
    expectAgreesWithCLibrary(*zone, name, -2'208'988'800, 7'258'118'400);
  }
}

TEST(TimeZone, ChangesHoldFromTheirVerySecond) {
  const auto zone = TimeZone::named("America/New_York");
  ASSERT_TRUE(zone);
  const auto changes = zone->transitionsBetween(utc(1883, 1, 1, 0), utc(2210, 1, 1, 0));
  ASSERT_GT(changes.size(), 500U);
  for (std::size_t i = 0; i < changes.size(); ++i) {
    const TimeZone::Transition& change = changes[i];
    if (i > 0) {
      ASSERT_LT(changes[i - 1].at, change.at);
    }
    ASSERT_EQ(zone->offsetAt(change.at), change.offset);
    ASSERT_NE(zone->offsetAt(change.at - std::chrono::seconds(1)), change.offset);
    ASSERT_EQ(zone->letters(change.at), change.abbreviation);
  }
}

TEST(TimeZone, ListsTheChangesOfAHalfOpenRange) {
  const auto berlin = TimeZone::named("Europe/Berlin");
  ASSERT_TRUE(berlin);
  const Date spring = utc(2024, 3, 31, 1), autumn = utc(2024, 10, 27, 1);
  const auto changes = berlin->transitionsBetween(spring, autumn);
  ASSERT_EQ(changes.size(), 1U);
  EXPECT_EQ(changes[0].at, spring);
  EXPECT_EQ(changes[0].offset, hours(2));
  EXPECT_EQ(changes[0].abbreviation, "CEST");
  EXPECT_EQ(berlin->transitionsBetween(spring, autumn + std::chrono::seconds(1)).size(), 2U);
  EXPECT_EQ(berlin->transitionsBetween(utc(2099, 6, 1, 0), utc(2101, 6, 1, 0)).size(), 4U);
  EXPECT_TRUE(berlin->transitionsBetween(autumn, spring).empty());
  const auto rule = TimeZone::fromPosixRule("CET-1CEST,M3.5.0,M10.5.0/3");
  ASSERT_TRUE(rule);
  EXPECT_EQ(rule->transitionsBetween(utc(1960, 1, 1, 0), utc(2200, 1, 1, 0)).size(), 480U);
}

TEST(TimeZone, IsAbbreviatedAsInTheUnitedStates) {
  const Date winter = utc(2024, 1, 15, 12), summer = utc(2024, 7, 15, 12);
  constexpr struct {
    const char* name;
    const char* winter;
    const char* summer;
  } cases[] = {{"America/New_York", "EST", "EDT"},
               {"America/Chicago", "CST", "CDT"},
               {"America/Denver", "MST", "MDT"},
               {"America/Phoenix", "MST", "MST"},
               {"America/Los_Angeles", "PST", "PDT"},
               {"America/Anchorage", "AKST", "AKDT"},
               {"Pacific/Honolulu", "HST", "HST"},
               {"Europe/Berlin", "GMT+1", "GMT+2"},
               {"Europe/London", "GMT", "GMT+1"},
               {"Asia/Kolkata", "GMT+5:30", "GMT+5:30"},
               {"Asia/Shanghai", "GMT+8", "GMT+8"},
               {"Asia/Manila", "GMT+8", "GMT+8"},
               {"America/Havana", "GMT-5", "GMT-4"},
               {"America/Sao_Paulo", "GMT-3", "GMT-3"},
               {"America/St_Johns", "GMT-3:30", "GMT-2:30"},
               {"UTC", "GMT", "GMT"}};
  for (const auto& [name, inWinter, inSummer] : cases) {
    SCOPED_TRACE(name);
    const auto zone = TimeZone::named(name);
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->abbreviation(winter), inWinter);
    EXPECT_EQ(zone->abbreviation(summer), inSummer);
  }
  EXPECT_EQ(TimeZone::fixed(hours(-8))->abbreviation(winter), "GMT-8");
  EXPECT_EQ(TimeZone::fixed(hours(5) + minutes(3))->abbreviation(winter), "GMT+5:03");
}

TEST(TimeZone, FollowsTransitionsWorkedOutElsewhere) {
  const auto zone = TimeZone::fromTransitions(
      "Own", hours(1), {{utc(2024, 3, 1, 0), hours(2), "S"}, {utc(2024, 9, 1, 0), hours(1), "W"}});
  EXPECT_EQ(zone->name(), "Own");
  expectInstants(*zone, {{{2024, 1, 1, 0, 0, 0}, utc(2023, 12, 31, 23)},
                         {{2024, 3, 1, 1, 30, 0}, utc(2024, 3, 1, 0, 30)},
                         {{2024, 6, 1, 0, 0, 0}, utc(2024, 5, 31, 22)},
                         {{2024, 9, 1, 1, 30, 0}, utc(2024, 8, 31, 23, 30)},
                         {{2090, 1, 1, 0, 0, 0}, utc(2089, 12, 31, 23)}});
  EXPECT_EQ(zone->letters(utc(2024, 5, 1, 0)), "S");
}

TEST(TimeZone, TheEndsOfTimeAreAnswered) {
  for (const auto& zone :
       {TimeZone::named("Europe/Berlin"), TimeZone::fromPosixRule("CET-1CEST,M3.5.0,M10.5.0/3")})
    for (const Date date : {Date::min(), distantPast(), distantFuture(), Date::max()}) {
      EXPECT_LT(std::chrono::abs(zone->offsetAt(date)), hours(3));
      zone->instantOf(WallTime(date.time_since_epoch()));
    }
}

}  // namespace
}  // namespace foundation
