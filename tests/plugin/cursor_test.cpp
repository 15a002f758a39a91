#include <array>
#include <functional>
#include <set>

#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

// What is open, as scripts notice it: by the errors of reading.
class Cursors : public BackendTest {
 protected:
  std::set<std::string> open() {
    std::set<std::string> items;
    const auto note = [&items](const char* item) {
      if (takeError() == 0) items.insert(item);
    };
    calendar("title"), note("calendar");
    event("title"), note("event");
    reminder("title"), note("reminder");
    alarm("action"), note("alarm");
    attendee("status"), note("attendee");
    backend_.getObjectCount("event"), note("event fetch");
    backend_.getObjectCount("reminder"), note("reminder fetch");
    return items;
  }

  // An event of a fetch with an alarm and an attendee open.
  void openAllOfAnEvent() {
    const auto& event = store_.events().front();
    event->people.resize(1);
    event->alarmList = {std::make_shared<FakeAlarm>()};
    openEvent();
    ASSERT_EQ(backend_.openAlarmAt(1), 0);
    ASSERT_EQ(backend_.openParticipantAt(1), 0);
    ASSERT_EQ(open(), (std::set<std::string>{"event fetch", "event", "alarm", "attendee"}));
  }
};

using Items = std::set<std::string>;

TEST_F(Cursors, FetchesAndOpensFromOutsideForgetEverything) {
  const std::string event = store_.events().back()->identifier;
  const std::string reminder = store_.reminders().back()->identifier;
  const std::pair<std::function<int()>, Items> operations[] = {
      {[&] { return backend_.fetchEventsWithStartDate({}, {}, {}, {}); }, {"event fetch"}},
      {[&] { return backend_.fetchEventsWithModificationDate({}, {}, {}, {}, {}); }, {"event fetch"}},
      {[&] { return backend_.fetchReminders({}, {}, {}); }, {"reminder fetch"}},
      {[&] { return backend_.fetchRemindersWithCalendars({}); }, {"reminder fetch"}},
      {[&] { return backend_.fetchRemindersUncompleted(TextArgument()); }, {"reminder fetch"}},
      {[&] { return backend_.fetchRemindersUncompleted(Date(), {}); }, {"reminder fetch"}},
      {[&] { return backend_.fetchRemindersCompletedSince({}, {}); }, {"reminder fetch"}},
      {[&] { return backend_.openEventWithUID(event, {}); }, {"event"}},
      {[&] { return backend_.openReminderWithUID(reminder); }, {"reminder"}},
      {[&] { return backend_.openCalendarAt(1); }, {"calendar"}},
      {[&] { return backend_.openReminderListAt(1); }, {"calendar"}},
      {[&] { return backend_.openCalendarWithUID(work_->identifier); }, {"calendar"}},
      {[&] { return backend_.openCalendarWithTitle("Chores"); }, {"calendar"}},
      {[&] { return backend_.newItem("event"); }, {"event"}},
      {[&] { return backend_.newItem("task"); }, {"reminder"}},
      {[&] { return backend_.newItem("reminderlist"); }, {"calendar"}},
      {[&] { return backend_.removeItem("task", reminder, {}, {}); }, {}},
  };
  int number = 0;
  for (const auto& [operation, left] : operations) {
    SCOPED_TRACE(number++);
    openAllOfAnEvent();
    expectOutcome(operation(), 0);
    EXPECT_EQ(open(), left);
  }
}

TEST_F(Cursors, AlsoWhenTheyFail) {
  const std::function<int()> operations[] = {
      [&] { return backend_.fetchEventsWithStartDate({}, {}, {}, "Nowhere"); },
      [&] { return backend_.fetchReminders({}, "soon", {}); },
      [&] { return backend_.openEventWithUID("nobody", {}); },
      [&] { return backend_.openReminderWithUID("nobody"); },
      [&] { return backend_.openCalendarAt(0); },
      [&] { return backend_.openCalendarWithUID("nobody"); },
      [&] { return backend_.openCalendarWithTitle("Nowhere"); },
      [&] { return backend_.newItem("meeting"); },
      [&] { return backend_.removeItem("event", "nobody", {}, "later"); },
  };
  int number = 0;
  for (const auto& operation : operations) {
    SCOPED_TRACE(number++);
    openAllOfAnEvent();
    EXPECT_EQ(operation(), -1);
    EXPECT_NE(takeError(), 0);
    EXPECT_EQ(open(), Items{});
  }
}

TEST_F(Cursors, OpeningByPositionKeepsTheFetch) {
  openAllOfAnEvent();
  expectOutcome(backend_.openEventAt(2), 0);
  EXPECT_EQ(open(), (Items{"event fetch", "event"}));
  EXPECT_EQ(event("title"), "Review");

  openAllOfAnEvent();
  expectOutcome(backend_.openEventAt(4), 9002);
  EXPECT_EQ(open(), Items{"event fetch"});
}

// Without a fetch opening a reminder fails, but only after the clearing.
TEST_F(Cursors, OpeningAReminderByPositionForgetsTheEventButNoCalendar) {
  const auto& reminder = store_.reminders().front();
  reminder->alarmList = {std::make_shared<FakeAlarm>()};
  openReminder();
  ASSERT_EQ(backend_.openAlarmAt(1), 0);
  expectOutcome(backend_.openReminderAt(2), 0);
  EXPECT_EQ(open(), (Items{"reminder fetch", "reminder"}));

  openCalendar();
  EXPECT_THROW(backend_.openReminderAt(1), ek::Exception);
  EXPECT_EQ(open(), Items{"calendar"});
  openAllOfAnEvent();
  EXPECT_THROW(backend_.openReminderAt(1), ek::Exception);
  EXPECT_EQ(open(), Items{"event fetch"});
}

TEST_F(Cursors, WhatIsOpenedInsideAnItemReplacesOnlyItsLike) {
  openAllOfAnEvent();
  expectOutcome(backend_.openAlarmAt(2), 9002);
  EXPECT_EQ(open(), (Items{"event fetch", "event", "attendee"}));
  openAllOfAnEvent();
  expectOutcome(backend_.openParticipantAt(2), 9002);
  EXPECT_EQ(open(), (Items{"event fetch", "event", "alarm"}));
}

TEST_F(Cursors, CountingSettingAndSavingForgetNothing) {
  openAllOfAnEvent();
  const Items before = open();
  backend_.getObjectCount("calendar");
  backend_.getObjectCount("attendee");
  backend_.setEventProp("title", Value("Talk"));
  backend_.saveItem("event", "this");
  takeError();
  EXPECT_EQ(open(), before);
}

TEST_F(Cursors, AddingAnAlarmForgetsTheOpenOneFromTheCheckOfItsTriggerOn) {
  openAllOfAnEvent();
  expectOutcome(backend_.addAlarm("event", {}, {}, {}, -60, {}), 9032);
  EXPECT_TRUE(open().contains("alarm"));
  expectOutcome(backend_.addAlarm("event", {}, "display", {}, 0, {}), 9031);
  EXPECT_FALSE(open().contains("alarm"));
}

TEST_F(Cursors, TheHeldRuleStaysUntilAnotherEventIsOpened) {
  const auto& first = store_.events().front();
  ek::RecurrenceRule weekly;
  weekly.frequency = ek::RecurrenceFrequency::weekly;
  first->rules = {weekly};
  openEvent(1);
  EXPECT_EQ(rule("recurrencetype"), "weekly");
  first->rules.front().frequency = ek::RecurrenceFrequency::yearly;
  EXPECT_EQ(rule("recurrencetype"), "weekly");
  backend_.openEventAt(1);
  EXPECT_EQ(rule("recurrencetype"), "yearly");
}

TEST_F(Cursors, ThereIsOneBackendForEver) {
  EXPECT_EQ(iCalEKFunctions::allocWithZone(), nullptr);
  EXPECT_EQ(iCalEKFunctions::sharedICalFunctions(), &backend_);
  backend_.releaseItems();
  backend_.releaseItems();
  EXPECT_EQ(open(), Items{});
}

}  // namespace
}  // namespace zuno::test
