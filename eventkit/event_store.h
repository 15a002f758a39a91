// One calendar database, seen as EventKit shows it. Used from one thread. A refusal is an answer (false,
// with the reason in error); what EventKit raises is thrown as ek::Exception.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "eventkit/items.h"
#include "eventkit/types.h"

namespace ek {

using EventList = List<Event>;
using ReminderList = List<CalendarItem>;
using Calendars = std::vector<std::shared_ptr<Calendar>>;

class EventStore {
 public:
  virtual ~EventStore() = default;

  // In order of creation. Empty when access was refused or the store cannot be opened.
  virtual Calendars calendarsForEntityType(EntityType type) = 0;
  // Null when there is none.
  virtual std::shared_ptr<Calendar> defaultCalendarForNewEvents() = 0;
  virtual std::shared_ptr<Calendar> defaultCalendarForNewReminders() = 0;

  // Lookups by identifier: null when there is no such thing. An item answers to its own and to its external
  // identifier; a series gives its first occurrence; a detached occurrence has an identifier of its own.
  virtual std::shared_ptr<Calendar> calendarWithIdentifier(const std::string& identifier) = 0;
  virtual std::shared_ptr<CalendarItem> calendarItemWithIdentifier(const std::string& identifier) = 0;
  virtual std::shared_ptr<Event> eventWithIdentifier(const std::string& identifier) = 0;

  // New and unsaved; null when the store cannot make one. They can be made even where the store cannot be
  // opened: the save fails then.
  virtual std::shared_ptr<Calendar> newCalendar(EntityType type) = 0;
  virtual std::shared_ptr<Event> newEvent() = 0;
  virtual std::shared_ptr<Reminder> newReminder() = 0;
  virtual std::shared_ptr<Alarm> alarmWithAbsoluteDate(Date date) = 0;
  virtual std::shared_ptr<Alarm> alarmWithRelativeOffset(double seconds) = 0;

  // Checks and completes a rule: lists that the frequency does not use become empty, the first day of the
  // week is set. Nothing for a rule that cannot be made (a day of the month outside 1..31 and -31..-1, a
  // month outside 1..12, where the frequency uses them). Throws for an interval below 1 and for a week
  // number that the frequency forbids.
  virtual std::optional<RecurrenceRule> recurrenceRule(RecurrenceRule wanted) = 0;

  // Queries. A predicate holds its conditions only; the store is asked when it is run, and sees saved
  // changes only. Null never comes back from these.
  virtual std::shared_ptr<const Predicate> predicateForEvents(Date start, Date end,
                                                              const Calendars& calendars) = 0;
  virtual std::shared_ptr<const Predicate> predicateForReminders(const Calendars& calendars) = 0;
  virtual std::shared_ptr<const Predicate> predicateForIncompleteReminders(std::optional<Date> dueFrom,
                                                                           std::optional<Date> dueTo,
                                                                           const Calendars& calendars) = 0;
  virtual std::shared_ptr<const Predicate> predicateForCompletedReminders(std::optional<Date> completedFrom,
                                                                          std::optional<Date> completedTo,
                                                                          const Calendars& calendars) = 0;

  // Every occurrence that overlaps the range: start < range end and end > range start, or of no length and
  // exactly at the range's start. By start, then title, then insertion; equal on every run. Throws for a
  // null predicate or one that this store did not make for events.
  virtual std::shared_ptr<const EventList> eventsMatchingPredicate(
      const std::shared_ptr<const Predicate>& predicate) = 0;
  // Calls completion once, on any thread, possibly before it returns, with the reminders (by creation date,
  // then insertion) or null for none. Bounds are inclusive. Throws like eventsMatchingPredicate.
  using ReminderCompletion = std::function<void(std::shared_ptr<const ReminderList>)>;
  virtual void fetchRemindersMatchingPredicate(const std::shared_ptr<const Predicate>& predicate,
                                               ReminderCompletion completion) = 0;

  // Saves and removals commit at once: durable when they return true. False with an error: refused, nothing
  // written. An unchanged event gives false without an error. Null, or an item of another store, throws.
  // Saving brings the object up to date with the store; saving one that was removed elsewhere makes it anew.
  virtual bool saveCalendar(const std::shared_ptr<Calendar>& calendar, std::optional<Error>& error) = 0;
  virtual bool removeCalendar(const std::shared_ptr<Calendar>& calendar, std::optional<Error>& error) = 0;
  virtual bool saveEvent(const std::shared_ptr<Event>& event, Span span, std::optional<Error>& error) = 0;
  virtual bool removeEvent(const std::shared_ptr<Event>& event, Span span, std::optional<Error>& error) = 0;
  // Given an event: saving throws; removing refuses and keeps it.
  virtual bool saveReminder(const std::shared_ptr<CalendarItem>& reminder, std::optional<Error>& error) = 0;
  virtual bool removeReminder(const std::shared_ptr<CalendarItem>& reminder, std::optional<Error>& error) = 0;
};

// The user's contacts, for an attendee's postal address.
class AddressBook {
 public:
  virtual ~AddressBook() = default;
  // One line: street, city, region, code, country, what is absent left out, joined by ", ". Nothing when no
  // contact has the participant's e-mail address, or it has no postal address.
  virtual std::optional<std::string> addressOf(const Participant& participant) = 0;
};

// The one place that chooses the store: EventKit on macOS, else the embedded store. Never null, and neither
// throws when the data cannot be reached. entityMask: the kinds of item that access is asked for.
std::shared_ptr<EventStore> makeEventStore(unsigned entityMask);
std::shared_ptr<AddressBook> makeAddressBook();

}  // namespace ek
