#include "eventkit/embedded/recurrence/expansion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/recurrence/definition.h"
#include "tests/recurrence/random_rule.h"
#include "tests/recurrence/vocabulary.h"

namespace ek::recurrence {
namespace {

using std::chrono::days;
using std::chrono::seconds;

// How far the slow definition can be followed.
seconds reachOf(Frequency frequency) {
  constexpr seconds reaches[] = {
      std::chrono::hours(1), days(1), days(40), days(800), days(1200), days(2500), days(4500)};
  return reaches[static_cast<std::size_t>(frequency)];
}

std::vector<WallTime> take(Expansion& expansion, WallTime last, std::size_t most) {
  std::vector<WallTime> taken;
  while (taken.size() < most) {
    const std::optional<WallTime> next = expansion.next();
    if (!next || *next > last) break;
    taken.push_back(*next);
  }
  return taken;
}

std::string described(const Rule& rule, WallTime start) {
  return formatRule(rule) + " from " + textOf(start);
}

TEST(Expansion, NamesWhatTheDefinitionNames) {
  RandomRules random(20240229);
  std::size_t named = 0;
  for (int i = 0; i < 500; ++i) {
    const Rule rule = random.rule();
    const WallTime start = random.start(), last = start + reachOf(rule.frequency);
    SCOPED_TRACE(described(rule, start));
    const std::vector<WallTime> expected = namedByDefinition(rule, start, last, 60);
    Expansion expansion(rule, start, false);
    expansion.limit(last);
    ASSERT_EQ(take(expansion, last, 60), expected);
    named += expected.size();
  }
  EXPECT_GT(named, 5000U);
}

TEST(Expansion, SeekingGoesOnAsIfAllBeforeHadBeenWalked) {
  RandomRules random(31);
  for (int i = 0; i < 500; ++i) {
    const Rule rule = random.rule();
    const WallTime start = random.start();
    SCOPED_TRACE(described(rule, start));
    Expansion walked(rule, start, false);
    walked.limit(start + 3 * reachOf(rule.frequency));
    const std::vector<WallTime> all = take(walked, start + 3 * reachOf(rule.frequency), 300);
    if (all.empty()) continue;
    for (int window = 0; window < 5; ++window) {
      const WallTime from =
          all[static_cast<std::size_t>(random.number(0, static_cast<int>(all.size()) - 1))] +
          seconds(random.number(-1, 1) * random.number(0, 100000));
      const WallTime last = std::min(from + days(random.number(0, 4000)), all.back());
      Expansion sought(rule, start, false);
      sought.limit(last);
      sought.seek(from);
      std::vector<WallTime> expected;
      std::ranges::copy_if(all, std::back_inserter(expected),
                           [&](WallTime time) { return time >= from && time <= last; });
      ASSERT_EQ(take(sought, last, 1000), expected) << textOf(from) << " to " << textOf(last);
    }
  }
}

TEST(Expansion, CountsAsIfWalked) {
  RandomRules random(7);
  for (int i = 0; i < 300; ++i) {
    Rule rule = random.rule();
    const WallTime start = random.start();
    SCOPED_TRACE(described(rule, start));
    Expansion walked(rule, start, false);
    walked.limit(start + 3 * reachOf(rule.frequency));
    std::vector<WallTime> all = take(walked, start + 3 * reachOf(rule.frequency), 200);
    if (all.empty() || all.front() != start) all.insert(all.begin(), start);
    const auto count = static_cast<std::size_t>(random.number(1, static_cast<int>(all.size())));
    rule.count = count;
    EXPECT_EQ(lastOfCount(rule, start, false), all[count - 1]) << count;
    EXPECT_EQ(countOfRuleBefore(rule, start, false, all[count - 1]), count - 1);
    EXPECT_EQ(countOfRuleBefore(rule, start, false, all[count - 1] + seconds(1)), count);
  }
}

TEST(Expansion, LargeCountsAreNotWalked) {
  const WallTime start = wall("20240101T000000");
  constexpr struct {
    const char* rule;
    const char* last;
  } cases[] = {{"FREQ=SECONDLY;COUNT=1000000001", "20550909T014640"},
               {"FREQ=MINUTELY;INTERVAL=7;COUNT=100000001", "33541205T024000"},
               {"FREQ=DAILY;COUNT=1000001", "47611128T000000"},
               {"FREQ=WEEKLY;BYDAY=MO,TU;COUNT=200001", "39400715T000000"},
               {"FREQ=DAILY;COUNT=2000000000", "99991231T000000"},
               {"FREQ=YEARLY;COUNT=2000000000", "99990101T000000"}};
  for (const auto& [text, last] : cases) {
    SCOPED_TRACE(text);
    const std::optional<WallTime> found = lastOfCount(rule(text), start, false);
    ASSERT_TRUE(found);
    EXPECT_EQ(textOf(*found), last);
  }
}

// Each of these would be silent for all time; what is checked is that they end.
TEST(Expansion, RulesThatNeverMatchEnd) {
  for (const char* text :
       {"FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=MONTHLY;BYMONTH=2;BYMONTHDAY=30",
        "FREQ=DAILY;BYMONTH=2;BYMONTHDAY=30", "FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30",
        "FREQ=MONTHLY;BYDAY=6MO", "FREQ=YEARLY;BYDAY=MO;BYSETPOS=60", "FREQ=DAILY;BYDAY=MO;BYSETPOS=2",
        "FREQ=DAILY;INTERVAL=7;BYDAY=SU", "FREQ=HOURLY;INTERVAL=24;BYHOUR=5",
        "FREQ=MINUTELY;INTERVAL=2;BYMINUTE=31", "FREQ=SECONDLY;INTERVAL=2;BYSECOND=31",
        "FREQ=SECONDLY;INTERVAL=60;BYSECOND=31;BYMONTH=6", "FREQ=YEARLY;BYYEARDAY=366;BYMONTH=1",
        "FREQ=YEARLY;BYWEEKNO=30;BYMONTH=1", "FREQ=MINUTELY;INTERVAL=10080;BYDAY=SU",
        "FREQ=HOURLY;BYSETPOS=5;BYMINUTE=1"}) {
    SCOPED_TRACE(text);
    const Rule never = rule(text);
    const WallTime start = wall("20240101T000000");
    const auto begin = std::chrono::steady_clock::now();
    Expansion expansion(never, start, false);
    EXPECT_EQ(expansion.next(), std::nullopt);
    EXPECT_EQ(expansion.next(), std::nullopt);
    EXPECT_EQ(countOfRuleBefore(never, start, false, wall("99991231T235959")), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, seconds(10));
  }
}

TEST(Expansion, StaysWithinTheYearsOfTheCalendar) {
  for (const char* text :
       {"FREQ=YEARLY", "FREQ=MONTHLY", "FREQ=WEEKLY", "FREQ=DAILY;BYMONTH=12", "FREQ=HOURLY",
        "FREQ=SECONDLY;INTERVAL=2000000000", "FREQ=DAILY;INTERVAL=9223372036854775807"}) {
    SCOPED_TRACE(text);
    const Rule endless = rule(text);
    Expansion expansion(endless, wall("99991226T000000"), false);
    std::optional<WallTime> last;
    while (const std::optional<WallTime> next = expansion.next()) last = next;
    EXPECT_LE(last.value_or(WallTime()), wall("99991231T235959"));
    Expansion ancient(endless, WallTime(days(-800000)), false);
    EXPECT_EQ(ancient.next(), std::nullopt);
    Expansion late(endless, wall("99991231T000000") + days(2), false);
    EXPECT_EQ(late.next(), std::nullopt);
  }
}

}  // namespace
}  // namespace ek::recurrence
