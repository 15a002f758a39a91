#include "eventkit/macos/event_store.h"

#include "eventkit/macos/access.h"
#include "eventkit/macos/alarm.h"
#include "eventkit/macos/calendar.h"
#include "eventkit/macos/conversions.h"
#include "eventkit/macos/event.h"
#include "eventkit/macos/guard.h"
#include "eventkit/macos/recurrence.h"
#include "eventkit/macos/reminder.h"

namespace ek::macos {

EventKitStore::EventKitStore(Ref<EKEventStore> store, unsigned entityMask)
    : store_(std::move(store)), changes_(store_.get()) {
  guarded([&] { requestAccess(store_.get(), entityMask, isGranted_); });
}

EKEventStore* EventKitStore::current() {
  if (isGranted_->exchange(false)) {
    [store_.get() reset];
    changes_.note();
  }
  return store_.get();
}

Calendars EventKitStore::calendarsForEntityType(EntityType type) {
  return guarded([&] {
    Calendars calendars;
    for (EKCalendar* calendar in [current() calendarsForEntityType:static_cast<EKEntityType>(type)])
      calendars.push_back(EventKitCalendar::of(store_, calendar));
    return calendars;
  });
}

std::shared_ptr<Calendar> EventKitStore::defaultCalendarForNewEvents() {
  return guarded([&] { return EventKitCalendar::of(store_, [current() defaultCalendarForNewEvents]); });
}

std::shared_ptr<Calendar> EventKitStore::defaultCalendarForNewReminders() {
  return guarded([&] { return EventKitCalendar::of(store_, [current() defaultCalendarForNewReminders]); });
}

std::shared_ptr<Calendar> EventKitStore::calendarWithIdentifier(const std::string& identifier) {
  if (identifier.empty()) return nullptr;
  return guarded(
      [&] { return EventKitCalendar::of(store_, [current() calendarWithIdentifier:nsString(identifier)]); });
}

std::shared_ptr<CalendarItem> EventKitStore::calendarItemWithIdentifier(const std::string& identifier) {
  if (identifier.empty()) return nullptr;
  return guarded([&]() -> std::shared_ptr<CalendarItem> {
    NSString* wanted = nsString(identifier);
    if (auto item = itemOf(store_, [current() calendarItemWithIdentifier:wanted])) return item;
    if (auto item = itemOf(store_, [[store_.get() calendarItemsWithExternalIdentifier:wanted] firstObject]))
      return item;
    return EventKitEvent::of(store_, [store_.get() eventWithIdentifier:wanted]);
  });
}

std::shared_ptr<Event> EventKitStore::eventWithIdentifier(const std::string& identifier) {
  if (identifier.empty()) return nullptr;
  auto event = guarded(
      [&] { return EventKitEvent::of(store_, [current() eventWithIdentifier:nsString(identifier)]); });
  return event ? event : std::dynamic_pointer_cast<Event>(calendarItemWithIdentifier(identifier));
}

std::shared_ptr<Calendar> EventKitStore::newCalendar(EntityType type) {
  return guarded([&] {
    return EventKitCalendar::of(store_, [EKCalendar calendarForEntityType:static_cast<EKEntityType>(type)
                                                               eventStore:store_.get()]);
  });
}

std::shared_ptr<Event> EventKitStore::newEvent() {
  return guarded([&] { return EventKitEvent::of(store_, [EKEvent eventWithEventStore:store_.get()]); });
}

std::shared_ptr<Reminder> EventKitStore::newReminder() {
  return guarded(
      [&] { return EventKitReminder::of(store_, [EKReminder reminderWithEventStore:store_.get()]); });
}

std::shared_ptr<Alarm> EventKitStore::alarmWithAbsoluteDate(Date date) {
  return guarded([&] {
    return std::make_shared<EventKitAlarm>(Ref<EKAlarm>([EKAlarm alarmWithAbsoluteDate:nsDate(date)]));
  });
}

std::shared_ptr<Alarm> EventKitStore::alarmWithRelativeOffset(double seconds) {
  return guarded([&] {
    return std::make_shared<EventKitAlarm>(Ref<EKAlarm>([EKAlarm alarmWithRelativeOffset:seconds]));
  });
}

std::optional<RecurrenceRule> EventKitStore::recurrenceRule(RecurrenceRule wanted) {
  return guarded([&] {
    const auto rule = ruleTo(wanted);
    return rule ? std::optional(ruleFrom(rule.get())) : std::nullopt;
  });
}

template <class Operation>
bool EventKitStore::commit(std::optional<Error>& error, Operation&& operation) {
  changes_.note();
  return guarded([&] {
    NSError* reason = nil;
    const bool isDone = operation(&reason) == YES;
    error = !isDone && reason != nil ? std::optional(errorFrom(reason)) : std::nullopt;
    return isDone;
  });
}

bool EventKitStore::saveCalendar(const std::shared_ptr<Calendar>& calendar, std::optional<Error>& error) {
  EKCalendar* native = nativeOf<EKCalendar>(calendar, store_.get());
  const bool isDone = commit(
      error, [&](NSError** reason) { return [store_.get() saveCalendar:native commit:YES error:reason]; });
  // No reason given: there was nothing to do.
  return isDone || !error;
}

bool EventKitStore::removeCalendar(const std::shared_ptr<Calendar>& calendar, std::optional<Error>& error) {
  EKCalendar* native = nativeOf<EKCalendar>(calendar, store_.get());
  return commit(
      error, [&](NSError** reason) { return [store_.get() removeCalendar:native commit:YES error:reason]; });
}

bool EventKitStore::saveEvent(const std::shared_ptr<Event>& event, Span span, std::optional<Error>& error) {
  auto* native = static_cast<EKEvent*>(nativeOf<EKCalendarItem>(event, store_.get()));
  return commit(error, [&](NSError** reason) {
    return [store_.get() saveEvent:native span:static_cast<EKSpan>(span) commit:YES error:reason];
  });
}

bool EventKitStore::removeEvent(const std::shared_ptr<Event>& event, Span span, std::optional<Error>& error) {
  auto* native = static_cast<EKEvent*>(nativeOf<EKCalendarItem>(event, store_.get()));
  return commit(error, [&](NSError** reason) {
    return [store_.get() removeEvent:native span:static_cast<EKSpan>(span) commit:YES error:reason];
  });
}

bool EventKitStore::saveReminder(const std::shared_ptr<CalendarItem>& reminder, std::optional<Error>& error) {
  EKCalendarItem* native = nativeOf<EKCalendarItem>(reminder, store_.get());
  asReminder(*reminder);
  const bool isDone = commit(error, [&](NSError** reason) {
    return [store_.get() saveReminder:static_cast<EKReminder*>(native) commit:YES error:reason];
  });
  return isDone || !error;
}

bool EventKitStore::removeReminder(const std::shared_ptr<CalendarItem>& reminder,
                                   std::optional<Error>& error) {
  EKCalendarItem* native = nativeOf<EKCalendarItem>(reminder, store_.get());
  if (dynamic_cast<Reminder*>(reminder.get()) == nullptr) {
    error = Error{ErrorCode::calendarDoesNotAllowReminders, "An event is no reminder."};
    return false;
  }
  return commit(error, [&](NSError** reason) {
    return [store_.get() removeReminder:static_cast<EKReminder*>(native) commit:YES error:reason];
  });
}

}  // namespace ek::macos
