// What the bridge makes of refusals, of exceptions and of missing consent.
#include <chrono>
#include <thread>

#include "tests/macos/bridge_fixture.h"

namespace ek::macos {
namespace {

using stand_in::Access;

class Failures : public BridgeTest {};

TEST_F(Failures, ARefusalKeepsItsCodeAndText) {
  const struct {
    const char* domain;
    int code;
    ErrorCode expected;
  } cases[] = {
      {"EKErrorDomain", 6, ErrorCode::calendarReadOnly},
      {"EKErrorDomain", 0, ErrorCode::eventNotMutable},
      {"EKErrorDomain", 36, ErrorCode::reminderAlarmContainsEmailOrUrl},
      {"EKCADErrorDomain", 1013, ErrorCode::eventStoreNotAuthorized},
      {"EKCADErrorDomain", 1014, ErrorCode::eventStoreNotAuthorized},
      {"NSCocoaErrorDomain", 6, ErrorCode::internalFailure},
  };
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  for (const auto& [domain, code, expected] : cases) {
    SCOPED_TRACE(domain);
    event->setTitle("changed");
    stand_in::failNext(domain, code, "Why it was refused.");
    std::optional<Error> error;
    EXPECT_FALSE(store_->saveEvent(event, Span::thisEvent, error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, expected);
    EXPECT_EQ(error->text, "Why it was refused.");
  }
}

TEST_F(Failures, AnErrorOfBeforeIsForgotten) {
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  std::optional<Error> error = Error{ErrorCode::noCalendar, "old"};
  EXPECT_FALSE(store_->saveEvent(event, Span::thisEvent, error));
  EXPECT_EQ(error, std::nullopt);
}

TEST_F(Failures, WhatEventKitRaisesIsThrownWithItsReason) {
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  const auto predicate = eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1));
  const auto reminders = store_->predicateForReminders({store_->defaultCalendarForNewReminders()});
  std::optional<Error> error;
  const struct {
    const char* reason;
    std::function<void()> call;
  } cases[] = {
      {"of the calendars", [&] { store_->calendarsForEntityType(EntityType::event); }},
      {"of the look-up", [&] { store_->eventWithIdentifier("STORE:x"); }},
      {"of the query", [&] { store_->eventsMatchingPredicate(predicate); }},
      {"of the fetch", [&] { store_->fetchRemindersMatchingPredicate(reminders, [](const auto&) {}); }},
      {"of saving", [&] { store_->saveEvent(event, Span::thisEvent, error); }},
      {"of removing \u00e4\u00f6\u00fc", [&] { store_->removeEvent(event, Span::thisEvent, error); }},
  };
  for (const auto& [reason, call] : cases) {
    SCOPED_TRACE(reason);
    stand_in::raiseNext(reason);
    try {
      call();
      ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception& raised) {
      EXPECT_EQ(raised.reason(), reason);
    }
  }
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 1U) << "the store goes on";
}

TEST_F(Failures, ItemsOfAReadOnlyCalendarAreRefused) {
  stand_in::makeReadOnly(database_, "Calendar");
  const auto calendar = store_->defaultCalendarForNewEvents();
  EXPECT_FALSE(calendar->allowsContentModifications());
  const auto event = store_->newEvent();
  event->setCalendar(calendar);
  event->setStartDate(utc(2024, 5, 1, 9));
  event->setEndDate(utc(2024, 5, 1, 10));
  std::optional<Error> error;
  EXPECT_FALSE(store_->saveEvent(event, Span::thisEvent, error));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, ErrorCode::calendarReadOnly);
}

TEST_F(Failures, WithoutConsentEverythingIsEmptyAndSavesAreRefused) {
  const auto identifier = addEvent("Review", utc(2024, 5, 1, 9))->eventIdentifier().value();
  const auto calendar = store_->defaultCalendarForNewEvents();
  stand_in::setAccess(Access::denied);
  const auto refused = open();
  EXPECT_EQ(stand_in::openRequests(), 0) << "a user who has decided is not asked again";
  EXPECT_TRUE(refused->calendarsForEntityType(EntityType::event).empty());
  EXPECT_EQ(refused->defaultCalendarForNewEvents(), nullptr);
  EXPECT_EQ(refused->defaultCalendarForNewReminders(), nullptr);
  EXPECT_EQ(refused->eventWithIdentifier(identifier), nullptr);
  EXPECT_EQ(refused->calendarItemWithIdentifier(identifier), nullptr);
  EXPECT_EQ(
      refused->eventsMatchingPredicate(refused->predicateForEvents(utc(2024, 1, 1), utc(2025, 1, 1), {}))
          ->size(),
      0U);
  const auto event = refused->newEvent();
  ASSERT_TRUE(event);
  std::optional<Error> error;
  EXPECT_FALSE(refused->saveEvent(event, Span::thisEvent, error));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, ErrorCode::eventStoreNotAuthorized);
}

TEST_F(Failures, ConsentThatComesLaterIsSeenByTheNextCall) {
  addEvent("Review", utc(2024, 5, 1, 9));
  stand_in::setAccess(Access::undecided);
  const auto asking = open();
  EXPECT_EQ(stand_in::openRequests(), 2) << "once for events, once for reminders";
  EXPECT_TRUE(asking->calendarsForEntityType(EntityType::event).empty()) << "and nothing waits for it";

  stand_in::answerRequests(true);
  for (int wait = 0; wait < 400 && asking->calendarsForEntityType(EntityType::event).empty(); ++wait)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  const auto calendars = asking->calendarsForEntityType(EntityType::event);
  ASSERT_EQ(calendars.size(), 1U);
  EXPECT_EQ(
      asking->eventsMatchingPredicate(asking->predicateForEvents(utc(2024, 1, 1), utc(2025, 1, 1), calendars))
          ->size(),
      1U);
}

TEST_F(Failures, AnAnswerThatComesAfterTheStoreIsGoneIsHarmless) {
  addReminder("Milk");
  std::atomic<bool> isDelivered = false;
  std::size_t count = 0;
  store_->fetchRemindersMatchingPredicate(
      store_->predicateForReminders({store_->defaultCalendarForNewReminders()}), [&](const auto& found) {
        count = found->size();
        isDelivered = true;
      });
  store_.reset();
  for (int wait = 0; wait < 400 && !isDelivered; ++wait)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  ASSERT_TRUE(isDelivered);
  EXPECT_EQ(count, 1U);
}

}  // namespace
}  // namespace ek::macos
