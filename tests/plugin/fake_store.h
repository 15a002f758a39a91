// A calendar store in memory that does what it is told: it answers, refuses, gives nothing, or raises.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "eventkit/event_store.h"
#include "tests/plugin/fake_items.h"

namespace zuno::test {

// A query keeps its conditions where tests can see them.
struct FakePredicate : ek::Predicate {
  enum class Kind { events, reminders, incomplete, completed } kind = Kind::events;
  std::optional<Date> from;
  std::optional<Date> to;
  ek::Calendars calendars;
};

// Opened items are the store's own objects, so that a test sees what was changed.
class FakeStore : public ek::EventStore, public ek::AddressBook {
 public:
  // What ek::makeEventStore and ek::makeAddressBook give: one for the program.
  static FakeStore& shared();
  // Empty, and obliging again.
  void reset();

  std::shared_ptr<FakeCalendar> addCalendar(const std::string& title,
                                            ek::EntityType kind = ek::EntityType::event);
  std::shared_ptr<FakeEvent> addEvent(const std::string& title,
                                      const std::shared_ptr<FakeCalendar>& calendar);
  std::shared_ptr<FakeReminder> addReminder(const std::string& title,
                                            const std::shared_ptr<FakeCalendar>& list);
  const std::vector<std::shared_ptr<FakeEvent>>& events() const { return events_; }
  const std::vector<std::shared_ptr<FakeReminder>>& reminders() const { return reminders_; }

  // The n-th use of the store from now raises; 1 is the next.
  void raiseAt(int n) { usesUntilRaise_ = n; }
  // Saving and removing are refused, with an error or, for none, without one.
  void refuse(std::optional<ek::Error> error) {
    refuses_ = true;
    refusal_ = std::move(error);
  }
  // New items, queries and positions in answers come back null.
  bool givesNull = false;
  // Reminders come from another thread, a while after the query was started.
  bool answersLate = false;
  bool answersNoList = false;
  // What the last query and the last save or removal were given.
  std::shared_ptr<const FakePredicate> lastPredicate;
  std::optional<ek::Span> lastSpan;
  int saves = 0;

  ek::Calendars calendarsForEntityType(ek::EntityType type) override;
  std::shared_ptr<ek::Calendar> defaultCalendarForNewEvents() override;
  std::shared_ptr<ek::Calendar> defaultCalendarForNewReminders() override;
  std::shared_ptr<ek::Calendar> calendarWithIdentifier(const std::string& identifier) override;
  std::shared_ptr<ek::CalendarItem> calendarItemWithIdentifier(const std::string& identifier) override;
  std::shared_ptr<ek::Event> eventWithIdentifier(const std::string& identifier) override;
  std::shared_ptr<ek::Calendar> newCalendar(ek::EntityType type) override;
  std::shared_ptr<ek::Event> newEvent() override;
  std::shared_ptr<ek::Reminder> newReminder() override;
  std::shared_ptr<ek::Alarm> alarmWithAbsoluteDate(Date date) override;
  std::shared_ptr<ek::Alarm> alarmWithRelativeOffset(double seconds) override;
  std::optional<ek::RecurrenceRule> recurrenceRule(ek::RecurrenceRule wanted) override;
  std::shared_ptr<const ek::Predicate> predicateForEvents(Date start, Date end,
                                                          const ek::Calendars& calendars) override;
  std::shared_ptr<const ek::Predicate> predicateForReminders(const ek::Calendars& calendars) override;
  std::shared_ptr<const ek::Predicate> predicateForIncompleteReminders(
      std::optional<Date> dueFrom, std::optional<Date> dueTo, const ek::Calendars& calendars) override;
  std::shared_ptr<const ek::Predicate> predicateForCompletedReminders(
      std::optional<Date> from, std::optional<Date> to, const ek::Calendars& calendars) override;
  std::shared_ptr<const ek::EventList> eventsMatchingPredicate(
      const std::shared_ptr<const ek::Predicate>& predicate) override;
  void fetchRemindersMatchingPredicate(const std::shared_ptr<const ek::Predicate>& predicate,
                                       ReminderCompletion completion) override;
  bool saveCalendar(const std::shared_ptr<ek::Calendar>& calendar, std::optional<ek::Error>& error) override;
  bool removeCalendar(const std::shared_ptr<ek::Calendar>& calendar,
                      std::optional<ek::Error>& error) override;
  bool saveEvent(const std::shared_ptr<ek::Event>& event, ek::Span span,
                 std::optional<ek::Error>& error) override;
  bool removeEvent(const std::shared_ptr<ek::Event>& event, ek::Span span,
                   std::optional<ek::Error>& error) override;
  bool saveReminder(const std::shared_ptr<ek::CalendarItem>& reminder,
                    std::optional<ek::Error>& error) override;
  bool removeReminder(const std::shared_ptr<ek::CalendarItem>& reminder,
                      std::optional<ek::Error>& error) override;
  std::optional<std::string> addressOf(const ek::Participant& participant) override;

 private:
  void use();
  std::string newIdentifier(const char* kind);
  bool accepts(const void* item, std::optional<ek::Error>& error);
  std::shared_ptr<const ek::Predicate> keep(FakePredicate::Kind kind, std::optional<Date> from,
                                            std::optional<Date> to, const ek::Calendars& calendars);
  std::shared_ptr<const ek::ReminderList> remindersOf(const FakePredicate& predicate) const;

  std::vector<std::shared_ptr<FakeCalendar>> calendars_;
  std::vector<std::shared_ptr<FakeCalendar>> lists_;
  std::vector<std::shared_ptr<FakeEvent>> events_;
  std::vector<std::shared_ptr<FakeReminder>> reminders_;
  int identifiers_ = 0;
  int usesUntilRaise_ = 0;
  bool refuses_ = false;
  std::optional<ek::Error> refusal_;
  std::vector<std::thread> answering_;
};

}  // namespace zuno::test
