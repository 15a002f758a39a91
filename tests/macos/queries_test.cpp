// How often EventKit is asked: long ranges in slices, and once for the steps of a loop.
#include <future>
#include <thread>

#include "tests/macos/bridge_fixture.h"

namespace ek::macos {
namespace {

using std::chrono::days;

class Queries : public BridgeTest {
 protected:
  // What EventKit was asked for one event query.
  int queriesFor(Date from, Date to) {
    const auto predicate = eventsBetween(from, to);
    stand_in::takeQueryCount();
    store_->eventsMatchingPredicate(predicate);
    return stand_in::takeQueryCount();
  }
  std::shared_ptr<const ReminderList> fetch(const std::shared_ptr<const Predicate>& predicate) {
    std::promise<std::shared_ptr<const ReminderList>> answer;
    store_->fetchRemindersMatchingPredicate(predicate,
                                            [&](auto found) { answer.set_value(std::move(found)); });
    return answer.get_future().get();
  }
};

TEST_F(Queries, UpToFourYearsAreOneQueryAndAllTimeIsTheYears1900To2100) {
  EXPECT_EQ(queriesFor(utc(2024, 1, 1), utc(2024, 1, 1)), 1);
  EXPECT_EQ(queriesFor(utc(2024, 1, 1), utc(2024, 1, 1) + days(4 * 365)), 1);
  EXPECT_EQ(queriesFor(utc(2024, 1, 1), utc(2024, 1, 1) + days(4 * 365) + std::chrono::seconds(1)), 2);
  EXPECT_EQ(queriesFor(utc(2024, 1, 1), utc(2023, 1, 1)), 0);
  // 201 years of 365 days and a quarter, in slices of four times 365 days.
  EXPECT_EQ(queriesFor(foundation::distantPast(), foundation::distantFuture()), 51);
  EXPECT_EQ(queriesFor(utc(1, 1, 1), utc(1800, 1, 1)), 0);
  EXPECT_EQ(queriesFor(utc(1750, 1, 1), utc(1751, 1, 1)), 1) << "a short range is asked for as it is";
}

TEST_F(Queries, WalkingAnAnswerAsksOnce) {
  for (int i = 0; i < 20; ++i) addEvent("Event " + std::to_string(i), utc(2024, 5, 1) + days(i));
  const auto predicate = eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1));
  stand_in::takeQueryCount();
  for (std::size_t i = 0; i < store_->eventsMatchingPredicate(predicate)->size(); ++i)
    EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->at(i)->title(), "Event " + std::to_string(i));
  EXPECT_EQ(stand_in::takeQueryCount(), 1);

  // An item that was opened before comes from the store again, without what was changed in it and not saved.
  store_->eventsMatchingPredicate(predicate)->at(3)->setTitle("not saved");
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->at(3)->title(), "Event 3");
}

TEST_F(Queries, OwnChangesAreSeenBeforeEventKitTellsOfThem) {
  stand_in::setTellsOfChanges(false);
  const auto predicate = eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1));
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 0U);
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 1U);
  std::optional<Error> error;
  EXPECT_TRUE(store_->removeEvent(event, Span::thisEvent, error));
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 0U);

  // Nobody tells of this one: the answer is too old in the end.
  const auto other = open();
  const auto theirs = other->newEvent();
  theirs->setCalendar(other->defaultCalendarForNewEvents());
  theirs->setStartDate(utc(2024, 5, 1, 9));
  theirs->setEndDate(utc(2024, 5, 1, 10));
  EXPECT_TRUE(other->saveEvent(theirs, Span::thisEvent, error));
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 1U);
  stand_in::setTellsOfChanges(true);
}

TEST_F(Queries, WhatHasGoneSinceTheAnswerIsNull) {
  const auto milk = addReminder("Milk");
  addReminder("Bread");
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  addEvent("Lunch", utc(2024, 5, 1, 12));
  const auto events = store_->eventsMatchingPredicate(eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1)));
  const auto reminders = fetch(store_->predicateForReminders({store_->defaultCalendarForNewReminders()}));
  std::optional<Error> error;
  EXPECT_TRUE(store_->removeEvent(event, Span::thisEvent, error));
  EXPECT_TRUE(store_->removeReminder(milk, error));
  EXPECT_EQ(events->at(0), nullptr);
  EXPECT_EQ(events->at(1)->title(), "Lunch");
  EXPECT_EQ(reminders->at(0), nullptr);
  EXPECT_EQ(reminders->at(1)->title(), "Bread");
}

TEST_F(Queries, WalkingRemindersAsksOnceToo) {
  for (const char* title : {"Milk", "Bread", "Salt"}) addReminder(title);
  const auto predicate = store_->predicateForReminders({store_->defaultCalendarForNewReminders()});
  stand_in::takeQueryCount();
  std::vector<std::string> titles;
  for (std::size_t i = 0; i < fetch(predicate)->size(); ++i)
    titles.push_back(fetch(predicate)->at(i)->title().value_or(""));
  EXPECT_THAT(titles, testing::ElementsAre("Milk", "Bread", "Salt"));
  EXPECT_EQ(stand_in::takeQueryCount(), 1);

  fetch(predicate)->at(0)->setTitle("not saved");
  EXPECT_EQ(fetch(predicate)->at(0)->title(), "Milk");
  addReminder("Pepper");
  EXPECT_EQ(fetch(predicate)->size(), 4U);
}

}  // namespace
}  // namespace ek::macos
