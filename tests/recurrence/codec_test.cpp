#include <gtest/gtest.h>

#include "eventkit/embedded/recurrence/series.h"
#include "tests/recurrence/random_rule.h"
#include "tests/recurrence/vocabulary.h"

namespace ek::recurrence {
namespace {

Series rich() {
  Series series = seriesOf("20240501T090000", nullptr, "FREQ=MONTHLY;BYDAY=-1SU,2MO;COUNT=7;WKST=SU");
  series.rules.push_back(rule("FREQ=YEARLY;INTERVAL=3;UNTIL=20300101T000000Z;BYWEEKNO=-1,53;BYMONTH=1,12"));
  series.rules.push_back(
      rule("FREQ=SECONDLY;UNTIL=20300101;BYSECOND=60;BYMINUTE=0;BYHOUR=23;BYYEARDAY=-366;BYMONTHDAY=-31;"
           "BYSETPOS=-1"));
  prepare(series);
  series.duration = {2, -30};
  series.exclusionRules = {rule("FREQ=DAILY;INTERVAL=9223372036854775807")};
  series.extraDates = {{wall("19690101T000000"), {}}, {wall("20240601T000000"), Duration{0, 60}}};
  series.excludedDates = {wall("20240502T000000"), wall("20240503T000001")};
  series.excludedDays = {wall("20240504")};
  series.overrides = {
      {wall("20240505T090000"), {-5, true}, {1714554000, false}, true, "Verschoben \xE2\x9C\x93"},
      {wall("20240506T090000"), {0, false}, {0, false}, false, ""}};
  series.title = "T\xC3\xA4glich";
  return series;
}

TEST(Codec, GivesBackWhatItWasGiven) {
  for (const Series& series : {Series(), rich(), seriesOf("20240501", nullptr, "FREQ=DAILY")}) {
    const std::optional<Decoded> decoded = decode(encode(series, "Europe/Berlin"));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->series, series);
    EXPECT_EQ(decoded->zoneKey, "Europe/Berlin");
  }
  RandomRules random(1);
  for (int i = 0; i < 300; ++i) {
    Series series;
    series.start = random.start();
    series.rules = {random.rule(Frequency::daily)};
    series.rules[0].count = random.number(1, 20);
    prepare(series);
    const std::optional<Decoded> decoded = decode(encode(series, ""));
    ASSERT_TRUE(decoded);
    ASSERT_EQ(decoded->series, series);
  }
}

TEST(Codec, IsCompact) {
  Series series = seriesOf("20240501T090000", nullptr, "FREQ=WEEKLY;BYDAY=MO,WE,FR;UNTIL=20301231T000000Z");
  EXPECT_LE(encode(series, "").size(), 32U);
}

TEST(Codec, RefusesOtherVersionsAndCutOffOrProlongedBytes) {
  const std::string bytes = encode(rich(), "Z");
  for (std::size_t length = 0; length < bytes.size(); ++length)
    EXPECT_FALSE(decode(bytes.substr(0, length))) << length;
  EXPECT_FALSE(decode(bytes + '\0'));
  for (const char version : {'\0', '\2', '\x7F'}) {
    std::string other = bytes;
    other[0] = version;
    EXPECT_FALSE(decode(other));
  }
}

TEST(Codec, DamagedBytesGiveNothingOrALegalSeries) {
  const std::string bytes = encode(rich(), "Z");
  RandomRules random(4);
  int readable = 0;
  for (int i = 0; i < 30000; ++i) {
    std::string damaged = bytes;
    for (int change = random.number(1, 3); change > 0; --change)
      damaged[static_cast<std::size_t>(random.number(1, static_cast<int>(bytes.size()) - 1))] =
          static_cast<char>(random.number(0, 255));
    const std::optional<Decoded> decoded = decode(damaged);
    if (!decoded) continue;
    ++readable;
    for (const Rule& rule : decoded->series.rules) ASSERT_EQ(faultIn(rule), nullptr);
    std::vector<Occurrence> found;
    occurrencesIn(decoded->series, {utcDate("20240501T000000"), utcDate("20240501T010000")},
                  *foundation::TimeZone::utc(), found);
    extentOf(decoded->series);
  }
  EXPECT_GT(readable, 1000);
}

}  // namespace
}  // namespace ek::recurrence
