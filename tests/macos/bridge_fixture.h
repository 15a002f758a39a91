// The bridge over a stand-in database of its own, in Berlin.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

#include "eventkit/event_store.h"
#include "tests/contract/store_contract.h"
#include "tests/objc/stand_in.h"

namespace ek::macos {

using contract::utc;

class BridgeTest : public testing::Test {
 protected:
  BridgeTest() { stand_in::setLocalTimeZone("Europe/Berlin"); }
  ~BridgeTest() override { stand_in::setAccess(stand_in::Access::granted); }

  static std::shared_ptr<EventStore> open() { return makeEventStore(kEntityMaskEvent | kEntityMaskReminder); }

  std::shared_ptr<Event> addEvent(const std::string& title, Date start) {
    auto event = store_->newEvent();
    event->setCalendar(store_->defaultCalendarForNewEvents());
    event->setTitle(title);
    event->setStartDate(start);
    event->setEndDate(start + std::chrono::hours(1));
    std::optional<Error> error;
    EXPECT_TRUE(store_->saveEvent(event, Span::thisEvent, error));
    return event;
  }
  std::shared_ptr<Reminder> addReminder(const std::string& title) {
    auto reminder = store_->newReminder();
    reminder->setCalendar(store_->defaultCalendarForNewReminders());
    reminder->setTitle(title);
    std::optional<Error> error;
    EXPECT_TRUE(store_->saveReminder(reminder, error));
    return reminder;
  }
  std::shared_ptr<const Predicate> eventsBetween(Date from, Date to) {
    return store_->predicateForEvents(from, to, {store_->defaultCalendarForNewEvents()});
  }

  ScopedVariable localTime_{"TZ", "Europe/Berlin"};
  stand_in::Database database_;
  std::shared_ptr<EventStore> store_ = open();
};

}  // namespace ek::macos
