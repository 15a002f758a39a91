#include "eventkit/embedded/recurrence/series.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/recurrence/random_rule.h"
#include "tests/recurrence/vocabulary.h"

namespace ek::recurrence {
namespace {

using foundation::TimeZone;
using std::chrono::days;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

Moment instant(std::string_view utc) { return {utcDate(utc).time_since_epoch().count(), false}; }
Moment floating(std::string_view time) { return {wall(time).time_since_epoch().count(), true}; }

Override movedTo(std::string_view recurrenceId, Moment start, Moment end) {
  return {wall(recurrenceId), start, end, false, "moved"};
}

std::vector<Occurrence> occurrences(const Series& series, Date from, Date to,
                                    const TimeZone& defaultZone = *TimeZone::utc()) {
  std::vector<Occurrence> found;
  occurrencesIn(series, {from, to}, defaultZone, found);
  return found;
}

class Windows : public testing::Test {
 protected:
  // 09:00 to 10:00 UTC.
  Series daily_ = seriesOf("20240501T090000", "UTC", "FREQ=DAILY");

  std::size_t count(std::string_view from, std::string_view to) {
    return occurrences(daily_, utcDate(from), utcDate(to)).size();
  }
};

TEST_F(Windows, HoldWhatOverlapsThemHalfOpen) {
  EXPECT_EQ(count("20240502T000000", "20240505T000000"), 3U);
  EXPECT_EQ(count("20240502T095959", "20240502T120000"), 1U);
  EXPECT_EQ(count("20240502T100000", "20240502T120000"), 0U);
  EXPECT_EQ(count("20240502T080000", "20240502T090000"), 0U);
  EXPECT_EQ(count("20240502T080000", "20240502T090001"), 1U);
  EXPECT_EQ(count("20240502T093000", "20240502T094000"), 1U);
  EXPECT_EQ(count("20240502T090000", "20240502T090000"), 1U);
  EXPECT_EQ(count("20240502T095959", "20240502T095959"), 1U);
  EXPECT_EQ(count("20240502T100000", "20240502T100000"), 0U);
  EXPECT_EQ(count("20240503T000000", "20240502T000000"), 0U);
  EXPECT_EQ(count("20200101T000000", "20240501T090000"), 0U);
}

TEST_F(Windows, HoldMomentsWithoutLengthAtTheirStart) {
  daily_.duration = {};
  EXPECT_EQ(count("20240502T090000", "20240502T100000"), 1U);
  EXPECT_EQ(count("20240502T090000", "20240502T090000"), 1U);
  EXPECT_EQ(count("20240502T080000", "20240502T090000"), 0U);
  EXPECT_EQ(count("20240502T090001", "20240502T100000"), 0U);
}

TEST_F(Windows, SeeLongOccurrencesThatBeganBefore) {
  daily_.duration = {30, 0};
  EXPECT_EQ(count("20240815T120000", "20240815T120001"), 30U);
  daily_.rules = {rule("FREQ=YEARLY")};
  daily_.duration = {400, 0};
  EXPECT_EQ(count("20260501T090000", "20260501T090001"), 2U);
}

TEST_F(Windows, MayReachOverAllTime) {
  daily_.rules = {rule("FREQ=DAILY;COUNT=5")};
  prepare(daily_);
  EXPECT_EQ(occurrences(daily_, foundation::distantPast(), foundation::distantFuture()).size(), 5U);
  EXPECT_EQ(occurrences(daily_, Date::min(), Date::max()).size(), 5U);
}

TEST_F(Windows, HoldTheFirstOfMoreThanAnAnswerCan) {
  daily_.rules.front().frequency = Frequency::secondly;
  std::vector<Occurrence> found;
  occurrencesIn(daily_, {utcDate("20300101T000000"), utcDate("40000101T000000"), 3}, *TimeZone::utc(), found);
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0].start, utcDate("20291231T230001"));
  EXPECT_EQ(found[2].start, utcDate("20291231T230003"));
}

TEST(Series, LengthsInDaysFollowTheWallClockAndSecondsDoNot) {
  Series series = seriesOf("20240330T120000", "Europe/Berlin", "FREQ=DAILY;COUNT=1");
  series.duration = {1, 0};
  EXPECT_EQ(firstOccurrence(series, *TimeZone::utc())->end, utcDate("20240331T100000"));
  series.duration = {0, 86400};
  EXPECT_EQ(firstOccurrence(series, *TimeZone::utc())->end, utcDate("20240331T110000"));
}

TEST(Series, FloatingAndAllDayOnesLieInTheDefaultZone) {
  const auto berlin = TimeZone::named("Europe/Berlin"), tokyo = TimeZone::named("Asia/Tokyo");
  const Series timed = seriesOf("20240501T090000", nullptr, "FREQ=DAILY;COUNT=2");
  EXPECT_EQ(firstOccurrence(timed, *berlin)->start, utcDate("20240501T070000"));
  EXPECT_EQ(firstOccurrence(timed, *tokyo)->start, utcDate("20240501T000000"));
  const Series allDay = seriesOf("20240331", nullptr, "FREQ=DAILY;COUNT=2");
  const Occurrence first = *firstOccurrence(allDay, *berlin);
  EXPECT_EQ(first.start, utcDate("20240330T230000"));
  EXPECT_EQ(first.end, utcDate("20240331T220000"));
  EXPECT_EQ(occurrences(allDay, utcDate("20240331T220000"), utcDate("20240401T000000"), *berlin).size(), 1U);
  const auto saoPaulo = TimeZone::named("America/Sao_Paulo");  // had no midnight on 4 November 2018
  const Series brazil = seriesOf("20181103", nullptr, "FREQ=DAILY;COUNT=3");
  const std::vector<Occurrence> found =
      occurrences(brazil, utcDate("20181101T000000"), utcDate("20181110T000000"), *saoPaulo);
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0].end, utcDate("20181104T030000"));
  EXPECT_EQ(found[1].start, utcDate("20181104T030000"));
  EXPECT_EQ(found[1].end, utcDate("20181105T020000"));
}

TEST(Series, ExclusionsTakeAwayTimesAndWholeDays) {
  Series series = seriesOf("20240501T090000", "Europe/Berlin", "FREQ=DAILY;BYHOUR=9,15;COUNT=8");
  series.excludedDates = {wall("20240501T090000"), wall("20240502T120000"), wall("20240503T150000")};
  series.excludedDays = {wall("20240502")};
  EXPECT_THAT(startsIn(series, "20240101", "20250101"),
              ElementsAre("20240501T150000", "20240503T090000", "20240504T090000", "20240504T150000"));
  EXPECT_EQ(firstOccurrence(series, *TimeZone::utc())->recurrenceId, wall("20240501T150000"));
  EXPECT_EQ(countBefore(series, wall("20240504T090000")), 6);
}

TEST(Series, ThatExcludesItselfHasNothing) {
  Series series = seriesOf("20240501T090000", "UTC", "FREQ=SECONDLY");
  series.exclusionRules = {rule("FREQ=SECONDLY")};
  EXPECT_EQ(firstOccurrence(series, *TimeZone::utc()), std::nullopt);
  EXPECT_THAT(occurrences(series, utcDate("20240601T000000"), utcDate("20240601T010000")), IsEmpty());
}

TEST(Series, ExtraDatesJoinTheRulesAndMayHaveTheirOwnLength) {
  Series series = seriesOf("20240501T090000", "UTC", "FREQ=WEEKLY;COUNT=2");
  series.extraDates = {{wall("20240430T080000"), {}},
                       {wall("20240508T090000"), {}},
                       {wall("20240509T220000"), Duration{0, 14400}}};
  EXPECT_THAT(startsIn(series, "20240101", "20250101"),
              ElementsAre("20240430T080000", "20240501T090000", "20240508T090000", "20240509T220000"));
  const auto found = occurrences(series, utcDate("20240510T013000"), utcDate("20240510T020000"));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].end, utcDate("20240510T020000"));
  EXPECT_EQ(firstOccurrence(series, *TimeZone::utc())->recurrenceId, wall("20240430T080000"));
}

TEST(Series, SeveralRulesAreUnited) {
  Series series = seriesOf("20240501T090000", "UTC", "FREQ=WEEKLY;COUNT=3");
  series.rules.push_back(rule("FREQ=DAILY;INTERVAL=7;UNTIL=20240529T090000Z"));
  series.rules.push_back(rule("FREQ=MONTHLY;COUNT=2"));
  prepare(series);
  EXPECT_THAT(startsIn(series, "20240101", "20250101"),
              ElementsAre("20240501T090000", "20240508T090000", "20240515T090000", "20240522T090000",
                          "20240529T090000", "20240601T090000"));
}

class Overrides : public testing::Test {
 protected:
  void SetUp() override {
    series_.overrides = {
        movedTo("20240502T090000", instant("20240610T120000"), instant("20240610T130000")),
        movedTo("20240601T090000", instant("20240503T120000"), instant("20240503T130000")),
        movedTo("20240715T093000", floating("20240504T010000"), floating("20240504T020000")),
    };
  }
  Series series_ = seriesOf("20240501T090000", "UTC", "FREQ=DAILY");
};

TEST_F(Overrides, MoveOutOfAndIntoTheWindow) {
  const auto found = occurrences(series_, utcDate("20240502T000000"), utcDate("20240504T000000"),
                                 *TimeZone::named("Europe/Berlin"));
  std::vector<std::string> described;
  for (const Occurrence& occurrence : found)
    described.push_back(textOf(WallTime(occurrence.start.time_since_epoch())) + " of " +
                        textOf(occurrence.recurrenceId) + " " + std::to_string(occurrence.override));
  EXPECT_THAT(described, testing::UnorderedElementsAre("20240503T120000 of 20240601T090000 1",
                                                       "20240503T230000 of 20240715T093000 2",
                                                       "20240503T090000 of 20240503T090000 -1"));
}

TEST_F(Overrides, AreFoundByTheirOriginalPlace) {
  const TimeZone& utc = *TimeZone::utc();
  EXPECT_EQ(occurrenceAt(series_, wall("20240502T090000"), utc)->start, utcDate("20240610T120000"));
  EXPECT_EQ(occurrenceAt(series_, wall("20240502T090000"), utc)->override, 0);
  EXPECT_EQ(occurrenceAt(series_, wall("20240715T093000"), utc)->override, 2);
  EXPECT_EQ(occurrenceAt(series_, wall("20240715T090000"), utc)->override, -1);
  EXPECT_EQ(occurrenceAt(series_, wall("20240715T100000"), utc), std::nullopt);
  EXPECT_EQ(occurrenceAt(series_, wall("20240430T090000"), utc), std::nullopt);
  series_.excludedDates = {wall("20240510T090000")};
  EXPECT_EQ(occurrenceAt(series_, wall("20240510T090000"), utc), std::nullopt);
}

TEST_F(Overrides, CountAsTheFirstOccurrenceByTheirOriginalPlace) {
  const TimeZone& utc = *TimeZone::utc();
  EXPECT_EQ(firstOccurrence(series_, utc)->override, -1);
  series_.excludedDates = {wall("20240501T090000")};
  EXPECT_EQ(firstOccurrence(series_, utc)->override, 0);
  series_.rules.clear();
  series_.overrides.clear();
  EXPECT_EQ(firstOccurrence(series_, utc), std::nullopt);
}

// The reference: everything at once, filtered by hand.
TEST(Series, AnyWindowHoldsWhatAllOfTimeHoldsThere) {
  RandomRules random(99);
  const char* const zones[] = {
      "Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Asia/Kolkata", "UTC", nullptr};
  for (int i = 0; i < 300; ++i) {
    Series series = seriesOf(textOf(random.start()), zones[random.number(0, 5)], "");
    for (int left = random.number(1, 2); left > 0; --left) {
      Rule made = random.rule(Frequency::hourly);
      if (random.oneIn(3))
        made.count = random.number(1, 40);
      else if (random.oneIn(2))
        made.until = Until{series.start + days(random.number(0, 2000)), false, random.oneIn(2)};
      series.rules.push_back(made);
    }
    series.duration = {random.number(0, 2), random.number(0, 7200)};
    for (int day = random.number(0, 3); day > 0; --day)
      series.excludedDates.insert(series.excludedDates.begin(), series.start + days(day * 7));
    for (int day = random.number(0, 3); day > 0; --day)
      series.extraDates.insert(series.extraDates.begin(), {series.start + days(day * 11), {}});
    prepare(series);
    SCOPED_TRACE(formatRule(series.rules[0]) + " from " + textOf(series.start) + " in " +
                 zoneOf(series).name());
    const Date begin = zoneOf(series).instantOf(series.start), end = begin + days(1500);
    const std::vector<Occurrence> all = occurrences(series, begin - days(5), end);
    const Extent extent = extentOf(series);
    for (const Occurrence& occurrence : all) {
      ASSERT_LE(extent.lo, occurrence.start);
      ASSERT_GE(extent.hi, occurrence.end);
    }
    for (int window = 0; window < 8; ++window) {
      const Date from = begin + seconds(random.number(-86400, 1400 * 86400));
      const Date to = from + seconds(random.number(0, 60 * 86400));
      std::vector<Date> expected, found;
      for (const Occurrence& o : all)
        if ((o.start < to || (from == to && o.start == to)) &&
            (o.end > from || (o.start == o.end && o.start == from)))
          expected.push_back(o.start);
      for (const Occurrence& o : occurrences(series, from, to)) {
        found.push_back(o.start);
        const std::optional<Occurrence> same = occurrenceAt(series, o.recurrenceId, *TimeZone::utc());
        ASSERT_TRUE(same);
        ASSERT_EQ(same->start, o.start);
      }
      ASSERT_EQ(found, expected);
    }
  }
}

TEST(Extent, ReachesFromTheFirstToTheLast) {
  const Extent counted = extentOf(seriesOf("20240501T090000", "UTC", "FREQ=WEEKLY;COUNT=3"));
  EXPECT_EQ(counted.lo, utcDate("20240501T090000"));
  EXPECT_EQ(counted.hi, utcDate("20240515T100000"));
  EXPECT_EQ(extentOf(seriesOf("20240501T090000", "UTC", "FREQ=WEEKLY")).hi, Date::max());
  const Extent ended = extentOf(seriesOf("20240501T090000", "UTC", "FREQ=WEEKLY;UNTIL=20240516T090000Z"));
  EXPECT_GE(ended.hi, utcDate("20240515T100000"));
  EXPECT_LE(ended.hi, utcDate("20240517T000000"));
  // Floating: as early as in the easternmost zone, as late as in the westernmost.
  const Extent allDay = extentOf(seriesOf("20240501", nullptr, "FREQ=DAILY;COUNT=2"));
  EXPECT_LE(allDay.lo, utcDate("20240430T100000"));
  EXPECT_GE(allDay.hi, utcDate("20240503T120000"));
  Series moved = seriesOf("20240501T090000", "UTC", "FREQ=WEEKLY;COUNT=3");
  moved.overrides = {movedTo("20240508T090000", instant("20230101T000000"), instant("20230101T010000")),
                     movedTo("20240515T090000", instant("20250101T000000"), instant("20250101T010000"))};
  moved.extraDates = {{wall("20220101T000000"), Duration{2, 0}}};
  EXPECT_EQ(extentOf(moved).lo, utcDate("20220101T000000"));
  EXPECT_EQ(extentOf(moved).hi, utcDate("20250101T010000"));
}

}  // namespace
}  // namespace ek::recurrence
