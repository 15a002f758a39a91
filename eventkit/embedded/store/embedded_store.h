// The calendar store of every platform without EventKit: one SQLite file that holds iCalendar text.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "eventkit/embedded/store/calendar.h"
#include "eventkit/embedded/store/event_answer.h"
#include "eventkit/embedded/store/kept_answers.h"
#include "eventkit/embedded/store/records.h"
#include "eventkit/embedded/store/reminder_answer.h"
#include "eventkit/event_store.h"

namespace ek::embedded {

// Stores on the same file, in this process and in others, see each other's saved changes. A file that cannot
// be opened makes an empty store whose saves are refused, until it can be opened.
class EmbeddedStore final : public EventStore {
 public:
  explicit EmbeddedStore(std::string path);

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

  // No calendars at all mean all of the kind, as a missing list does on a Mac.
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
  std::shared_ptr<EmbeddedCalendar> calendar(const CalendarRow* row);
  std::shared_ptr<Calendar> defaultCalendar(EntityType kind);
  std::vector<std::string> identifiersOf(const Calendars& calendars) const;
  template <class Answer>
  std::shared_ptr<const Answer> answer(KeptAnswers<Answer>& kept,
                                       const std::shared_ptr<const Predicate>& predicate);

  Database* writable(std::optional<Error>& error);

  std::shared_ptr<Records> records_;
  KeptAnswers<EventAnswer> eventAnswers_;
  KeptAnswers<ReminderAnswer> reminderAnswers_;
};

}  // namespace ek::embedded
