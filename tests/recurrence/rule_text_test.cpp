#include <gtest/gtest.h>

#include "eventkit/embedded/recurrence/rule.h"
#include "foundation/text.h"
#include "tests/recurrence/random_rule.h"
#include "tests/recurrence/vocabulary.h"

namespace ek::recurrence {
namespace {

TEST(RuleText, EveryPartIsRead) {
  const std::optional<Rule> read = parseRule(
      "FREQ=YEARLY;INTERVAL=2;COUNT=9;WKST=SU;BYMONTH=1,12;BYWEEKNO=1,-53;BYYEARDAY=366,-1;BYMONTHDAY=-31,+4;"
      "BYDAY=MO,SA;BYHOUR=0,23;BYMINUTE=59;BYSECOND=0,60;BYSETPOS=-366,1");
  ASSERT_TRUE(read);
  Rule expected;
  expected.frequency = Frequency::yearly;
  expected.interval = 2;
  expected.count = 9;
  expected.weekStart = 0;
  expected.hasWeekStart = true;
  expected.byMonth = {1, 12};
  expected.byWeekNo = {1, -53};
  expected.byYearDay = {366, -1};
  expected.byMonthDay = {-31, 4};
  expected.byDay = {{0, 1}, {0, 6}};
  expected.byHour = {0, 23};
  expected.byMinute = {59};
  expected.bySecond = {0, 60};
  expected.bySetPos = {-366, 1};
  EXPECT_EQ(*read, expected);
  EXPECT_EQ(rule("FREQ=MONTHLY;BYDAY=+1TU,-2WE,FR").byDay,
            (std::vector<WeekdayNum>{{1, 2}, {-2, 3}, {0, 5}}));
}

TEST(RuleText, UntilIsADateALocalTimeOrAnInstant) {
  EXPECT_EQ(rule("FREQ=DAILY;UNTIL=20240229").until, (Until{wall("20240229"), true, false}));
  EXPECT_EQ(rule("FREQ=DAILY;UNTIL=20240229T235960").until, (Until{wall("20240229T235959"), false, false}));
  EXPECT_EQ(rule("FREQ=DAILY;UNTIL=20240229T120000Z").until, (Until{wall("20240229T120000"), false, true}));
}

TEST(RuleText, TakesWhatProgramsWrite) {
  const Rule plain = rule("FREQ=WEEKLY;BYDAY=MO,TU;COUNT=2");
  for (const char* text : {"freq=weekly;byday=mo,tu;count=2", "FREQ=WEEKLY;BYDAY=MO,TU;COUNT=2;",
                           " FREQ=WEEKLY; BYDAY=MO, TU ;COUNT = 2 ", "COUNT=2;BYDAY=MO,TU;FREQ=WEEKLY",
                           "FREQ=WEEKLY;X-THING=1;BYDAY=MO,TU;COUNT=2",
                           "RSCALE=GREGORIAN;FREQ=WEEKLY;SKIP=OMIT;BYDAY=MO,TU;COUNT=2",
                           "FREQ=WEEKLY;INTERVAL=01;BYDAY=MO,TU;COUNT=002"})
    EXPECT_EQ(rule(text), plain) << text;
}

TEST(RuleText, RefusesWhatBreaksTheStandard) {
  const struct {
    std::string start, ends;
  } cases[] = {
      {"", "|;|FREQ|FREQ=|FREQ=FORTNIGHTLY|INTERVAL=2"},
      {"FREQ=DAILY;",
       "FREQ=DAILY|;COUNT=1|COUNT=1;COUNT=2|COUNT=1;UNTIL=20240101|BYSETPOS=1|BYWODAN=1|X-THING"},
      {"FREQ=DAILY;COUNT=", "0|-1|99999999999999999999|1.5"},
      {"FREQ=DAILY;INTERVAL=", "0|-1||+-1"},
      {"FREQ=DAILY;UNTIL=",
       "2024|20240230|20240229Z|20240229T240000|20240229T12000|2024-2-9|20240229 120000"},
      {"FREQ=DAILY;WKST=", "XX|1MO"},
      {"FREQ=DAILY;BY", "SECOND=61|MINUTE=60|HOUR=24|HOUR=-1|MONTH=0|MONTH=13|MONTH=-1|YEARDAY=1|DAY=1MO"},
      {"FREQ=DAILY;BYMONTHDAY=", "0|32|-32|-2147483648|1,|,1|1,,2|"},
      {"FREQ=DAILY;BYDAY=MO;BYSETPOS=", "0|367"},
      {"FREQ=WEEKLY;BY", "YEARDAY=1|MONTHDAY=1|DAY=-1MO"},
      {"FREQ=HOURLY;BYWEEKNO=", "10"},
      {"FREQ=MONTHLY;", "BYYEARDAY=1|BYWEEKNO=10|RSCALE=CHINESE|SKIP=FORWARD"},
      {"FREQ=YEARLY;BY", "YEARDAY=367|YEARDAY=0|WEEKNO=54|WEEKNO=0|WEEKNO=10;BYDAY=2MO"},
      {"FREQ=YEARLY;BYDAY=", "0MO|54MO|M|MO=|MO1"},
  };
  for (const auto& [start, ends] : cases)
    for (const std::string_view end : foundation::split(ends, '|')) {
      const std::string text = start + std::string(end);
      std::string why;
      EXPECT_FALSE(parseRule(text, &why)) << text;
      EXPECT_FALSE(why.empty()) << text;
    }
}

TEST(RuleText, IsWrittenInOneOrder) {
  for (const char* text :
       {"FREQ=DAILY", "FREQ=SECONDLY;COUNT=3;INTERVAL=30", "FREQ=YEARLY;UNTIL=20240229;BYDAY=-1SU;BYMONTH=10",
        "FREQ=WEEKLY;UNTIL=00010203T040506Z;BYSECOND=1;BYMINUTE=2;BYHOUR=3;BYDAY=SU,MO,TU,WE,TH,FR,SA;WKST="
        "MO",
        "FREQ=YEARLY;UNTIL=20240229T010203;BYMONTHDAY=1,-1;BYYEARDAY=-7;BYWEEKNO=20;BYMONTH=1;BYSETPOS=1,-1;"
        "WKST=SU"})
    EXPECT_EQ(formatRule(rule(text)), text);
}

TEST(RuleText, ReadsBackWhatItWrites) {
  RandomRules random(5);
  for (int i = 0; i < 500; ++i) {
    Rule made = random.rule();
    made.hasWeekStart = made.weekStart != 1;
    const std::string text = formatRule(made);
    ASSERT_EQ(parseRule(text), made) << text;
  }
}

}  // namespace
}  // namespace ek::recurrence
