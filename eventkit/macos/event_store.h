// The user's calendars, as EventKit has them.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>

#include "eventkit/event_store.h"
#include "eventkit/macos/changes.h"
#include "eventkit/macos/predicate.h"

namespace ek::macos {

class EventKitStore final : public EventStore {
 public:
  EventKitStore(Ref<EKEventStore> store, unsigned entityMask);

  Calendars calendarsForEntityType(EntityType type) override;
  std::shared_ptr<Calendar> defaultCalendarForNewEvents() override;
  std::shared_ptr<Calendar> defaultCalendarForNewReminders() override;
  std::shared_ptr<Calendar> calendarWithIdentifier(const std::string& identifier) override;
  std::shared_ptr<CalendarItem> calendarItemWithIdentifier(const std::string& identifier) override;
  std::shared_ptr<Event> eventWithIdentifier(const std::string& identifier) override;

  std::shared_ptr<Calendar> newCalendar(EntityType type) override;
  std::shared_ptr<Event> newEvent() override;
  std::shared_ptr<Reminder> newReminder() override;
  std::shared_ptr<Alarm> alarmWithAbsoluteDate(Date date) override;
  std::shared_ptr<Alarm> alarmWithRelativeOffset(double seconds) override;
  std::optional<RecurrenceRule> recurrenceRule(RecurrenceRule wanted) override;

  std::shared_ptr<const Predicate> predicateForEvents(Date start, Date end,
                                                      const Calendars& calendars) override;
  std::shared_ptr<const Predicate> predicateForReminders(const Calendars& calendars) override;
  std::shared_ptr<const Predicate> predicateForIncompleteReminders(std::optional<Date> dueFrom,
                                                                   std::optional<Date> dueTo,
                                                                   const Calendars& calendars) override;
  std::shared_ptr<const Predicate> predicateForCompletedReminders(std::optional<Date> completedFrom,
                                                                  std::optional<Date> completedTo,
                                                                  const Calendars& calendars) override;
  std::shared_ptr<const EventList> eventsMatchingPredicate(
      const std::shared_ptr<const Predicate>& predicate) override;
  void fetchRemindersMatchingPredicate(const std::shared_ptr<const Predicate>& predicate,
                                       ReminderCompletion completion) override;

  bool saveCalendar(const std::shared_ptr<Calendar>& calendar, std::optional<Error>& error) override;
  bool removeCalendar(const std::shared_ptr<Calendar>& calendar, std::optional<Error>& error) override;
  bool saveEvent(const std::shared_ptr<Event>& event, Span span, std::optional<Error>& error) override;
  bool removeEvent(const std::shared_ptr<Event>& event, Span span, std::optional<Error>& error) override;
  bool saveReminder(const std::shared_ptr<CalendarItem>& reminder, std::optional<Error>& error) override;
  bool removeReminder(const std::shared_ptr<CalendarItem>& reminder, std::optional<Error>& error) override;

 private:
  // Scripts count and open in loops, and each step asks again. The last answer serves the next steps: until
  // something changed, and for a second at most, since a busy host hears of other processes' changes late.
  template <class List>
  struct Kept {
    std::shared_ptr<const Predicate> predicate;
    std::shared_ptr<const List> answer;
    std::optional<Changes::Moment> moment;
    std::chrono::steady_clock::time_point asked;
  };
  struct KeptReminders {
    std::mutex mutex;  // the answer comes on a thread of EventKit's
    Kept<ReminderList> last;
  };
  template <class List>
  std::shared_ptr<const List> stillGood(const Kept<List>& kept,
                                        const std::shared_ptr<const Predicate>& predicate) const;

  // The store, shown what the user has consented to meanwhile.
  EKEventStore* current();
  Ref<NSArray> natives(const Calendars& calendars) const;
  std::shared_ptr<const Predicate> reminderPredicate(Ref<NSPredicate> query) const;
  template <class Conditions>
  const Conditions& conditionsOf(const std::shared_ptr<const Predicate>& predicate) const;
  template <class Operation>
  bool commit(std::optional<Error>& error, Operation&& operation);

  Ref<EKEventStore> store_;
  Changes changes_;
  std::shared_ptr<std::atomic<bool>> isGranted_ = std::make_shared<std::atomic<bool>>(false);
  Kept<EventList> keptEvents_;
  std::shared_ptr<KeptReminders> keptReminders_ = std::make_shared<KeptReminders>();
};

}  // namespace ek::macos
