#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

class Alarms : public BackendTest {
 protected:
  // To the open event, a minute before it.
  int add(TextArgument action, TextArgument address = {}, TextArgument sound = {}) {
    return backend_.addAlarm("event", {}, action, address, -60, sound);
  }
  std::shared_ptr<FakeAlarm> lastOf(const FakeItem<ek::Event>& item) {
    return std::dynamic_pointer_cast<FakeAlarm>(item.alarmList.back());
  }
  const Date date_ = utc(2024, 5, 1, 9);
};

TEST_F(Alarms, DoWhatTheActionSays) {
  const auto event = openEvent();
  expectOutcome(add("Email", "ann@example.org"), 0);
  EXPECT_EQ(lastOf(*event)->type(), ek::AlarmType::email);
  EXPECT_EQ(lastOf(*event)->address, "ann@example.org");
  expectOutcome(add("SOUND", {}, "Basso"), 0);
  EXPECT_EQ(lastOf(*event)->type(), ek::AlarmType::audio);
  EXPECT_EQ(lastOf(*event)->sound, "Basso");
  expectOutcome(add("display", "ann@example.org", "Basso"), 0);
  EXPECT_EQ(lastOf(*event)->type(), ek::AlarmType::display);
  // The sound is set last, and the check goes by the argument.
  expectOutcome(add("email", "ann@example.org", "Basso"), 0);
  EXPECT_EQ(lastOf(*event)->type(), ek::AlarmType::audio);
  event->takesAlarms = false;
  expectOutcome(add("display"), 9026);
}

TEST_F(Alarms, AreChangedWhenOpen) {
  expectOutcome(backend_.setAlarmProp("sound", Value("Basso")), 9000);
  const auto event = openEvent();
  ASSERT_EQ(add("display"), 0);
  ASSERT_EQ(backend_.openAlarmAt(1), 0);
  const auto alarm = lastOf(*event);
  expectOutcome(backend_.setAlarmProp("AbsoluteTrigger", Value(date_)), 0);
  EXPECT_EQ(alarm->date, date_);
  const std::pair<const char*, double> offsets[] = {
      {"-300", -300}, {" 12 minutes", 12},        {"1.9", 1},
      {"soon", 0},    {"9999999999", 2147483647}, {"-9999999999", -2147483648.0}};
  for (const auto& [text, offset] : offsets) {
    expectOutcome(backend_.setAlarmProp("relativetrigger", Value(text)), 0);
    EXPECT_EQ(alarm->offset, offset) << text;
  }
  expectOutcome(backend_.setAlarmProp("emailaddress", Value("ann@example.org")), 0);
  EXPECT_EQ(alarm->address, "ann@example.org");
  expectOutcome(backend_.setAlarmProp("sound", Value("Basso")), 0);
  EXPECT_EQ(alarm->sound, "Basso");
  for (const char* action : {"email", "PROCEDURE", "sound"}) {
    expectOutcome(backend_.setAlarmProp("action", Value(action)), 0);
    EXPECT_EQ(alarm->sound, "Basso");
  }
  expectOutcome(backend_.setAlarmProp("action", Value("Display")), 0);
  EXPECT_EQ(alarm->type(), ek::AlarmType::display);

  expectOutcome(backend_.setAlarmProp("absolutetrigger", Value()), 9075);
  expectOutcome(backend_.setAlarmProp("relativetrigger", Value()), 9074);
  expectOutcome(backend_.setAlarmProp("action", Value("wake")), 9044);
  expectOutcome(backend_.setAlarmProp("action", Value()), 9044);
  expectOutcome(backend_.setAlarmProp("email", Value("x")), 9005);
  expectOutcome(backend_.setAlarmProp(std::nullopt, Value("x")), 9005);
}

TEST_F(Alarms, AreRemovedByPosition) {
  const auto event = openEvent();
  for (int i = 0; i < 3; ++i) ASSERT_EQ(add("display"), 0);
  const auto before = event->alarmList;
  for (const int position : {0, 4, -2}) expectOutcome(backend_.removeAlarmFrom("event", position), 9002);
  expectOutcome(backend_.removeAlarmFrom("Event", 2), 0);
  EXPECT_THAT(event->alarmList, testing::ElementsAre(before[0], before[2]));
  event->takesAlarms = false;
  expectOutcome(backend_.removeAlarmFrom("event", 1), 9027);
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

TEST_F(AddingRules, ListsAreHandedOn) {
  const auto event = openEvent();
  using Days = std::vector<ek::DayOfWeek>;
  expectOutcome(
      backend_.addRecurrence("yearly", 1, Days{{2, 0}}, std::vector{15, -1}, 0, std::vector{5}, {}, 0), 0);
  EXPECT_EQ(event->rules.back().daysOfTheWeek, (Days{{2, 0}}));
  EXPECT_EQ(event->rules.back().daysOfTheMonth, (std::vector{15, -1}));
  EXPECT_EQ(event->rules.back().monthsOfTheYear, (std::vector{5}));
  expectOutcome(backend_.addRecurrence("monthly", 1, {}, std::vector{40}, 0, {}, {}, 0), 9020);
  EXPECT_EQ(event->rules.size(), 1U);
}

}  // namespace
}  // namespace zuno::test
