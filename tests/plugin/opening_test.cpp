#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

using Opening = BackendTest;

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

TEST_F(Opening, TheHeldRuleStaysUntilAnotherEventIsOpened) {
  auto& rules = store_.events().front()->rules;
  rules.push_back({.frequency = ek::RecurrenceFrequency::weekly});
  openEvent(1);
  EXPECT_EQ(rule("recurrencetype"), "weekly");
  rules.front().frequency = ek::RecurrenceFrequency::yearly;
  EXPECT_EQ(rule("recurrencetype"), "weekly");
  backend_.openEventAt(1);
  EXPECT_EQ(rule("recurrencetype"), "yearly");
}

TEST_F(Opening, ThereIsOneBackendForEver) {
  EXPECT_EQ(iCalEKFunctions::allocWithZone(), nullptr);
  EXPECT_EQ(iCalEKFunctions::sharedICalFunctions(), &backend_);
}

}  // namespace
}  // namespace zuno::test
