// A reminder of EventKit's.
#pragma once

#include "eventkit/macos/item.h"

namespace ek::macos {

class EventKitReminder final : public EventKitItem<Reminder> {
 public:
  EventKitReminder(Ref<EKEventStore> store, const Ref<EKReminder>& reminder)
      : EventKitItem(std::move(store), Ref<EKCalendarItem>(reminder.get())) {}
  // Null for nil.
  static std::shared_ptr<Reminder> of(const Ref<EKEventStore>& store, EKReminder* reminder);

  std::optional<DateComponents> dueDateComponents() const override;
  void setDueDateComponents(std::optional<DateComponents> due) override;
  bool isCompleted() const override;
  void setCompleted(bool completed) override;
  std::optional<Date> completionDate() const override;
  void setCompletionDate(std::optional<Date> date) override;
  int priority() const override;
  void setPriority(int priority) override;

 private:
  EKReminder* reminder() const { return static_cast<EKReminder*>(object()); }
};

}  // namespace ek::macos
