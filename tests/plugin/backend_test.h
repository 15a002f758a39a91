// The backend over a store in memory: one event calendar "Work" with three events, one list "Chores" with two
// reminders.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

#include "plugin/backend/ical_ek_functions.h"
#include "plugin/shell/globals.h"
#include "tests/foundation/scoped_variable.h"
#include "tests/plugin/fake_store.h"

namespace zuno::test {

inline Date utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0) {
  using namespace std::chrono;
  return sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day)) + hours(hour) +
         minutes(minute) + seconds(second);
}

class BackendTest : public testing::Test {
 protected:
  BackendTest() {
    store_.reset();
    backend_.releaseItems();
    backend_.resetLastErrorString();
    g_llasterror = 0;
    work_ = store_.addCalendar("Work");
    chores_ = store_.addCalendar("Chores", ek::EntityType::reminder);
    for (const char* title : {"Standup", "Review", "Lunch"}) store_.addEvent(title, work_);
    for (const char* title : {"Bulbs", "Taxes"}) store_.addReminder(title, chores_);
  }
  ~BackendTest() override {
    backend_.releaseItems();
    store_.reset();
    g_llasterror = 0;
  }

  // The error number that the last operation left; the next one starts without.
  static std::int64_t takeError() { return std::exchange(g_llasterror, 0); }

  // The operation's result is -1 and its error this one; or 0 and none.
  static void expectOutcome(int result, std::int64_t error) {
    EXPECT_EQ(result, error == 0 ? 0 : -1);
    EXPECT_EQ(takeError(), error);
  }

  // A fetch stops at an error that is still set; the functions clear it first.
  void fetchEvents() {
    g_llasterror = 0;
    ASSERT_EQ(backend_.fetchEventsWithStartDate(foundation::distantPast(), foundation::distantFuture(),
                                                std::nullopt, std::nullopt),
              0);
  }
  void fetchReminders() {
    g_llasterror = 0;
    ASSERT_EQ(backend_.fetchReminders(std::nullopt, std::nullopt, std::nullopt), 0);
  }
  std::shared_ptr<FakeEvent> openEvent(int position = 1) {
    fetchEvents();
    EXPECT_EQ(backend_.openEventAt(position), 0);
    return store_.events().at(static_cast<std::size_t>(position) - 1);
  }
  std::shared_ptr<FakeReminder> openReminder(int position = 1) {
    fetchReminders();
    EXPECT_EQ(backend_.openReminderAt(position), 0);
    return store_.reminders().at(static_cast<std::size_t>(position) - 1);
  }
  void openCalendar() { ASSERT_EQ(backend_.openCalendarAt(1), 0); }

  // The property as text; "(none)" for no value.
  std::string event(TextArgument keyword) { return shown(backend_.getEventAttribute(keyword, 1, {})); }
  std::string reminder(TextArgument keyword) { return shown(backend_.getReminderAttribute(keyword, 1, {})); }
  std::string calendar(TextArgument keyword) { return shown(backend_.getCalendarAttribute(keyword, 1, {})); }
  std::string alarm(TextArgument keyword) { return shown(backend_.getAlarmAttribute(keyword, 1, {})); }
  std::string attendee(TextArgument keyword) {
    return shown(backend_.getParticipantAttribute(keyword, 1, {}));
  }
  std::string rule(TextArgument keyword, TextArgument end = std::nullopt) {
    return shown(backend_.getEventRecurrenceRuleAttribute(keyword, end));
  }
  static std::string shown(const Value& value) { return textOf(value).value_or("(none)"); }

  ScopedVariable zone_{"TZ", "Europe/Berlin"};
  iCalEKFunctions& backend_ = *iCalEKFunctions::sharedICalFunctions();
  FakeStore& store_ = FakeStore::shared();
  std::shared_ptr<FakeCalendar> work_;
  std::shared_ptr<FakeCalendar> chores_;
};

}  // namespace zuno::test
