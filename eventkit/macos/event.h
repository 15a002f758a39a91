// An event of EventKit's, or one occurrence of a repeating one.
#pragma once

#include "eventkit/macos/item.h"

namespace ek::macos {

class EventKitEvent final : public EventKitItem<Event> {
 public:
  EventKitEvent(Ref<EKEventStore> store, const Ref<EKEvent>& event)
      : EventKitItem(std::move(store), Ref<EKCalendarItem>(event.get())) {}
  // Null for nil.
  static std::shared_ptr<Event> of(const Ref<EKEventStore>& store, EKEvent* event);

  std::optional<std::string> eventIdentifier() const override;
  std::optional<Date> startDate() const override;
  void setStartDate(std::optional<Date> date) override;
  std::optional<Date> endDate() const override;
  void setEndDate(std::optional<Date> date) override;
  bool isAllDay() const override;
  void setAllDay(bool allDay) override;
  bool isDetached() const override;
  std::optional<Date> occurrenceDate() const override;

 private:
  EKEvent* event() const { return static_cast<EKEvent*>(object()); }
};

}  // namespace ek::macos
