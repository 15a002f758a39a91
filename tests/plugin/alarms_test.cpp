#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

using Alarms = BackendTest;

TEST_F(Alarms, OnAnItemThatTakesNoneAreRefused) {
  const auto event = openEvent();
  ASSERT_EQ(backend_.addAlarm("event", {}, "display", {}, -60, {}), 0);
  event->takesAlarms = false;
  expectOutcome(backend_.addAlarm("event", {}, "display", {}, -60, {}), 9026);
  expectOutcome(backend_.removeAlarmFrom("event", 1), 9027);
}

TEST_F(Alarms, WithoutAValueOrAPropertyStayAsTheyWere) {
  expectOutcome(backend_.setAlarmProp("sound", Value("Basso")), 9000);
  openEvent();
  ASSERT_EQ(backend_.addAlarm("event", {}, "display", {}, -60, {}), 0);
  ASSERT_EQ(backend_.openAlarmAt(1), 0);
  expectOutcome(backend_.setAlarmProp("sound", Value("Basso")), 0);
  expectOutcome(backend_.setAlarmProp("absolutetrigger", Value()), 9075);
  expectOutcome(backend_.setAlarmProp("action", Value()), 9044);
  expectOutcome(backend_.setAlarmProp(std::nullopt, Value("x")), 9005);
  EXPECT_EQ(alarm("sound") + " " + alarm("relativetrigger"), "Basso -60.000000");
  expectOutcome(backend_.setAlarmProp("AbsoluteTrigger", Value(utc(2024, 5, 1, 9))), 0);
  EXPECT_EQ(alarm("absolutetrigger"), "2024-05-01 11:00:00 +0200");
}

using AddingRules = BackendTest;

TEST_F(AddingRules, FrequenciesIntervalsAndEnds) {
  const auto event = openEvent();
  const auto add = [&](TextArgument type, int interval, std::optional<Date> end, int count) {
    expectOutcome(backend_.addRecurrence(type, interval, {}, {}, 0, {}, end, count), 0);
    return event->rules.back();
  };
  const char* const types[] = {"Daily", "WEEKLY", "monthly", "yearly"};
  for (int frequency = 0; frequency < 4; ++frequency) {
    const auto rule = add(types[frequency], 3, {}, -1);
    EXPECT_EQ(rule.frequency, static_cast<ek::RecurrenceFrequency>(frequency));
    EXPECT_EQ(rule.interval, 3);
    EXPECT_EQ(rule.end, std::nullopt);
  }
  EXPECT_EQ(add("daily", 1, {}, 10).end, ek::RecurrenceEnd::withOccurrenceCount(10));
  const Date last = utc(2024, 12, 31);
  EXPECT_EQ(add("daily", 1, last, 10).end, ek::RecurrenceEnd::withEndDate(last));
  expectOutcome(backend_.removeRecurrence(), 0);
  EXPECT_TRUE(event->rules.empty());
}

}  // namespace
}  // namespace zuno::test
