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

TEST_F(Alarms, AreAddedByDateOrByOffset) {
  const auto event = openEvent();
  expectOutcome(backend_.addAlarm("EVENT", {}, "Display", {}, -900, {}), 0);
  EXPECT_EQ(lastOf(*event)->offset, -900);
  expectOutcome(backend_.addAlarm("event", date_, "display", {}, -900, {}), 0);
  EXPECT_EQ(lastOf(*event)->date, date_);
  EXPECT_EQ(lastOf(*event)->offset, 0);
  const auto reminder = openReminder();
  expectOutcome(backend_.addAlarm("task", {}, "display", {}, 60, {}), 0);
  expectOutcome(backend_.addAlarm("reminder", date_, "display", {}, 0, {}), 0);
  EXPECT_EQ(reminder->alarmList.size(), 2U);
  EXPECT_EQ(event->alarmList.size(), 2U);
}

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
}

TEST_F(Alarms, ChecksComeInTheirOrder) {
  const struct {
    TextArgument type, action, address, sound;
    int offset;
    int error;
  } cases[] = {
      {{}, {}, {}, {}, 0, 9045},
      {"event", {}, {}, {}, 0, 9032},
      {"meeting", "display", {}, {}, 0, 9031},
      {"event", "display", {}, {}, -60, 9047},
      {"task", "wake", {}, {}, -60, 9046},
      {"reminder", "procedure", {}, {}, -60, 9046},
      {"meeting", "display", {}, {}, -60, 9006},
      {"calendar", "display", {}, {}, -60, 9006},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.error);
    expectOutcome(backend_.addAlarm(row.type, {}, row.action, row.address, row.offset, row.sound), row.error);
  }
  const auto event = openEvent();
  expectOutcome(add("email", {}, "Basso"), 9028);
  expectOutcome(add("sound", "ann@example.org"), 9030);
  expectOutcome(add("procedure", "ann@example.org", "Basso"), 9029);
  expectOutcome(add("wake"), 9005);
  EXPECT_EQ(event->alarmList.size(), 0U);
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

class RemovingAlarms : public BackendTest {
 protected:
  RemovingAlarms() : event_(openEvent()) {
    for (const double offset : {-1.0, -2.0, -3.0}) {
      event_->alarmList.push_back(std::make_shared<FakeAlarm>());
      event_->alarmList.back()->setRelativeOffset(offset);
    }
  }
  std::vector<double> left() const {
    std::vector<double> offsets;
    for (const auto& alarm : event_->alarmList) offsets.push_back(alarm->relativeOffset());
    return offsets;
  }
  std::shared_ptr<FakeEvent> event_;
};

TEST_F(RemovingAlarms, ByPosition) {
  for (const int position : {0, 4, -2}) expectOutcome(backend_.removeAlarmFrom("event", position), 9002);
  expectOutcome(backend_.removeAlarmFrom("Event", 2), 0);
  EXPECT_THAT(left(), testing::ElementsAre(-1, -3));
  event_->takesAlarms = false;
  expectOutcome(backend_.removeAlarmFrom("event", 1), 9027);
}

TEST_F(RemovingAlarms, PositionMinusOneRemovesAllAndReportsAFailure) {
  expectOutcome(backend_.removeAlarmFrom("event", -1), 9027);
  EXPECT_TRUE(left().empty());
  expectOutcome(backend_.removeAlarmFrom("event", -1), 0);
  expectOutcome(backend_.removeAlarmFrom("event", 7), 0);
}

TEST_F(RemovingAlarms, All) {
  expectOutcome(backend_.removeAllAlarmsFrom("EVENT"), 0);
  EXPECT_TRUE(left().empty());
  expectOutcome(backend_.removeAllAlarmsFrom("event"), 0);
  openReminder()->alarmList.resize(2, std::make_shared<FakeAlarm>());
  expectOutcome(backend_.removeAllAlarmsFrom("task"), 0);
  EXPECT_TRUE(store_.reminders().front()->alarmList.empty());
}

TEST_F(RemovingAlarms, NeedAnOwner) {
  const struct {
    TextArgument type;
    int one;
    int all;
  } cases[] = {{std::nullopt, 9045, 9005}, {"event", 9047, 9000},    {"task", 9046, 9000},
               {"reminder", 9046, 9000},   {"calendar", 9006, 9006}, {"alarms", 9006, 9006}};
  backend_.releaseItems();
  for (const auto& [type, one, all] : cases) {
    SCOPED_TRACE(type.value_or("(none)"));
    expectOutcome(backend_.removeAlarmFrom(type, 1), one);
    expectOutcome(backend_.removeAllAlarmsFrom(type), all);
  }
}

class AddingRules : public BackendTest {
 protected:
  int add(TextArgument type, int interval = 1, std::optional<Date> end = {}, int count = 0) {
    return backend_.addRecurrence(type, interval, {}, {}, 0, {}, end, count);
  }
};

TEST_F(AddingRules, FrequenciesIntervalsAndEnds) {
  const auto event = openEvent();
  const char* const types[] = {"Daily", "WEEKLY", "monthly", "yearly"};
  for (int frequency = 0; frequency < 4; ++frequency) {
    expectOutcome(add(types[frequency], 3), 0);
    EXPECT_EQ(event->rules.back().frequency, static_cast<ek::RecurrenceFrequency>(frequency));
    EXPECT_EQ(event->rules.back().interval, 3);
    EXPECT_EQ(event->rules.back().end, std::nullopt);
  }
  expectOutcome(add("daily", 1, {}, 10), 0);
  EXPECT_EQ(event->rules.back().end, ek::RecurrenceEnd::withOccurrenceCount(10));
  expectOutcome(add("daily", 1, utc(2024, 12, 31), 10), 0);
  EXPECT_EQ(event->rules.back().end, ek::RecurrenceEnd::withEndDate(utc(2024, 12, 31)));
  expectOutcome(add("daily", 1, {}, -1), 0);
  EXPECT_EQ(event->rules.back().end, std::nullopt);
  EXPECT_EQ(event->rules.size(), 7U);
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

TEST_F(AddingRules, ChecksComeInTheirOrder) {
  for (const TextArgument type : {TextArgument("hourly"), TextArgument("daily "), TextArgument()})
    expectOutcome(add(type, 0), 9021);
  for (const int interval : {0, -1}) expectOutcome(add("daily", interval), 9024);
  openReminder();
  expectOutcome(add("daily"), 9043);
}

TEST_F(AddingRules, RemovingTakesAllAway) {
  expectOutcome(backend_.removeRecurrence(), 9048);
  const auto event = openEvent();
  expectOutcome(backend_.removeRecurrence(), 0);
  add("daily");
  add("weekly");
  expectOutcome(backend_.removeRecurrence(), 0);
  EXPECT_TRUE(event->rules.empty());
}

}  // namespace
}  // namespace zuno::test
