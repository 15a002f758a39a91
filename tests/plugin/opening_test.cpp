#include <functional>

#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

class Opening : public BackendTest {
 protected:
  // Each position around the bounds, and the title that is open after it.
  void expectPositions(const std::function<int(int)>& open, const std::function<std::string()>& title,
                       const std::vector<std::string>& titles) {
    const int count = static_cast<int>(titles.size());
    for (const int position : {-1, 0, 1, count, count + 1}) {
      SCOPED_TRACE(position);
      const bool exists = position >= 1 && position <= count;
      expectOutcome(open(position), exists ? 0 : 9002);
      if (exists) {
        EXPECT_EQ(title(), titles.at(static_cast<std::size_t>(position) - 1));
      }
    }
  }
};

TEST_F(Opening, PositionsCountFromOneInTheStoresOrder) {
  fetchEvents();
  expectPositions([&](int at) { return backend_.openEventAt(at); }, [&] { return event("title"); },
                  {"Standup", "Review", "Lunch"});
  fetchReminders();
  expectPositions([&](int at) { return backend_.openReminderAt(at); }, [&] { return reminder("title"); },
                  {"Bulbs", "Taxes"});
  store_.addCalendar("Home");
  expectPositions([&](int at) { return backend_.openCalendarAt(at); }, [&] { return calendar("title"); },
                  {"Work", "Home"});
  expectPositions([&](int at) { return backend_.openReminderListAt(at); }, [&] { return calendar("title"); },
                  {"Chores"});
}

TEST_F(Opening, TheQueryRunsAgainEachTime) {
  fetchEvents();
  store_.addEvent("Late", work_);
  expectOutcome(backend_.openEventAt(4), 0);
  EXPECT_EQ(event("title"), "Late");
  EXPECT_EQ(backend_.getObjectCount("event"), 4);
}

TEST_F(Opening, WithoutAFetchAnEventIsRefusedAndTheOpenOneStays) {
  ASSERT_EQ(backend_.openEventWithUID(store_.events().front()->identifier, {}), 0);
  expectOutcome(backend_.openEventAt(1), 9077);
  EXPECT_EQ(event("title"), "Standup");
}

TEST_F(Opening, ByIdentifierOrTitle) {
  const std::string event = store_.events().at(1)->identifier;
  const std::string reminder = store_.reminders().at(1)->identifier;
  expectOutcome(backend_.openEventWithUID(event, utc(2030, 1, 1)), 0);
  EXPECT_EQ(this->event("title"), "Review");
  expectOutcome(backend_.openReminderWithUID(reminder), 0);
  EXPECT_EQ(this->reminder("title"), "Taxes");
  for (const auto& identifier : {work_->identifier, chores_->identifier}) {
    expectOutcome(backend_.openCalendarWithUID(identifier), 0);
    EXPECT_EQ(calendar("uid"), identifier);
  }
  expectOutcome(backend_.openCalendarWithTitle("Chores"), 0);
  EXPECT_EQ(calendar("uid"), chores_->identifier);

  expectOutcome(backend_.openEventWithUID(reminder, {}), 9001);
  expectOutcome(backend_.openReminderWithUID("nobody"), 9059);
  expectOutcome(backend_.openCalendarWithUID(event), 9013);
  expectOutcome(backend_.openCalendarWithTitle("chores"), 9058);
}

TEST_F(Opening, AnEventIsHeldAsTheReminderButIsNone) {
  const auto& event = store_.events().front();
  event->alarmList = {std::make_shared<FakeAlarm>()};
  expectOutcome(backend_.openReminderWithUID(event->identifier), 0);
  EXPECT_EQ(reminder("title"), "Standup");
  EXPECT_EQ(reminder("hasalarms"), "True");
  EXPECT_EQ(reminder("calendartitle"), "Work");
  for (const char* keyword : {"duedate", "completeddate", "iscompleted", "priority"})
    EXPECT_THROW(reminder(keyword), ek::Exception) << keyword;
  EXPECT_THROW(backend_.setReminderProp("iscompleted", Value("true")), ek::Exception);
  expectOutcome(backend_.openAlarmAt(1), 0);
  backend_.getEventAttribute("title", 1, {});
  EXPECT_EQ(takeError(), 9066);
  EXPECT_EQ(backend_.saveItem("reminder", {}), 0);
  EXPECT_EQ(takeError(), 9999);
}

TEST_F(Opening, WhatHasGoneSinceIsNotOpened) {
  fetchEvents();
  store_.givesNull = true;
  expectOutcome(backend_.openEventAt(1), 9001);
  store_.givesNull = false;
  fetchReminders();
  store_.givesNull = true;
  expectOutcome(backend_.openReminderAt(1), 9060);
}

TEST_F(Opening, AStoreThatRaises) {
  store_.raiseAt(1);
  expectOutcome(backend_.openEventWithUID("any", {}), 9999);
  EXPECT_EQ(backend_.getLastErrorString(), "the store broke");
}

TEST_F(Opening, RemindersThatArriveLateAreWaitedFor) {
  fetchReminders();
  store_.answersLate = true;
  EXPECT_EQ(backend_.getObjectCount("task"), 2);
  expectOutcome(backend_.openReminderAt(2), 0);
  EXPECT_EQ(reminder("title"), "Taxes");
}

TEST_F(Opening, NoListOfRemindersIsNone) {
  fetchReminders();
  store_.answersNoList = true;
  EXPECT_EQ(backend_.getObjectCount("reminder"), 0);
  expectOutcome(backend_.openReminderAt(1), 9002);
}

TEST_F(Opening, AlarmsOfTheReminderBeforeThoseOfTheEvent) {
  expectOutcome(backend_.openAlarmAt(1), 9000);
  const auto event = openEvent();
  expectOutcome(backend_.openAlarmAt(1), 9008);
  for (const double offset : {-60.0, -120.0}) {
    event->alarmList.push_back(std::make_shared<FakeAlarm>());
    event->alarmList.back()->setRelativeOffset(offset);
  }
  expectPositions([&](int at) { return backend_.openAlarmAt(at); }, [&] { return alarm("relativetrigger"); },
                  {"-60.000000", "-120.000000"});
}

TEST_F(Opening, AttendeesOfTheOpenEvent) {
  openReminder();
  expectOutcome(backend_.openParticipantAt(1), 9000);
  const auto event = openEvent();
  expectOutcome(backend_.openParticipantAt(1), 9002);
  event->people.resize(2);
  event->people[0].name = "Ann";
  event->people[1].name = "Bob";
  expectPositions([&](int at) { return backend_.openParticipantAt(at); },
                  [&] { return attendee("commonname"); }, {"Ann", "Bob"});
}

class Counting : public BackendTest {};

TEST_F(Counting, CountsByTypeInAnyCase) {
  store_.addCalendar("Home");
  EXPECT_EQ(backend_.getObjectCount("Calendar"), 2);
  EXPECT_EQ(backend_.getObjectCount("REMINDERLIST"), 1);
  fetchEvents();
  EXPECT_EQ(backend_.getObjectCount("event"), 3);
  const auto event = openEvent(2);
  EXPECT_EQ(backend_.getObjectCount("attendee"), 0);
  EXPECT_EQ(backend_.getObjectCount("alarm"), 0);
  event->people.resize(3);
  event->alarmList.resize(2, std::make_shared<FakeAlarm>());
  EXPECT_EQ(backend_.getObjectCount("attendee"), 3);
  EXPECT_EQ(backend_.getObjectCount("alarm"), 2);
  fetchReminders();
  EXPECT_EQ(backend_.getObjectCount("Task"), 2);
  EXPECT_EQ(backend_.getObjectCount("reminder"), 2);
  openReminder()->alarmList.resize(1, std::make_shared<FakeAlarm>());
  EXPECT_EQ(backend_.getObjectCount("alarm"), 1);
  EXPECT_EQ(takeError(), 0);
}

TEST_F(Counting, NeedsWhatItCounts) {
  const struct {
    TextArgument type;
    int error;
  } cases[] = {{"event", 9054},    {"task", 9055},       {"reminder", 9055},
               {"attendee", 9056}, {"alarm", 9057},      {"meeting", 9042},
               {" event", 9042},   {std::nullopt, 9042}, {"recurrencerule", 9042}};
  for (const auto& [type, error] : cases) {
    SCOPED_TRACE(type.value_or("(none)"));
    EXPECT_EQ(backend_.getObjectCount(type), -1);
    EXPECT_EQ(takeError(), error);
  }
  fetchReminders();
  expectOutcome(backend_.getObjectCount("event"), 9054);
  openReminder();
  expectOutcome(backend_.getObjectCount("attendee"), 9056);
}

}  // namespace
}  // namespace zuno::test
