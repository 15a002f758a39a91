#include "eventkit/macos/reminder.h"

#include "eventkit/macos/conversions.h"
#include "eventkit/macos/guard.h"

namespace ek::macos {

std::shared_ptr<Reminder> EventKitReminder::of(const Ref<EKEventStore>& store, EKReminder* reminder) {
  return reminder != nil ? std::make_shared<EventKitReminder>(store, Ref<EKReminder>(reminder)) : nullptr;
}

std::optional<DateComponents> EventKitReminder::dueDateComponents() const {
  return guarded([&] { return componentsFrom([reminder() dueDateComponents]); });
}

void EventKitReminder::setDueDateComponents(std::optional<DateComponents> due) {
  guarded([&] { [reminder() setDueDateComponents:nsDateComponents(due)]; });
}

bool EventKitReminder::isCompleted() const {
  return guarded([&] { return [reminder() isCompleted] == YES; });
}

void EventKitReminder::setCompleted(bool completed) {
  guarded([&] {
    // Whether EventKit renews the date of a reminder that is completed already is unknown; it is to stay.
    if (completed && [reminder() isCompleted]) return;
    [reminder() setCompleted:completed ? YES : NO];
  });
}

std::optional<Date> EventKitReminder::completionDate() const {
  return guarded([&] { return dateFrom([reminder() completionDate]); });
}

void EventKitReminder::setCompletionDate(std::optional<Date> date) {
  guarded([&] { [reminder() setCompletionDate:nsDate(date)]; });
}

int EventKitReminder::priority() const {
  return guarded([&] { return static_cast<int>([reminder() priority]); });
}

void EventKitReminder::setPriority(int priority) {
  guarded([&] { [reminder() setPriority:static_cast<NSUInteger>(priority)]; });
}

}  // namespace ek::macos
