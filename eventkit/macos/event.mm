#include "eventkit/macos/event.h"

#include "eventkit/macos/conversions.h"
#include "eventkit/macos/guard.h"

namespace ek::macos {

std::shared_ptr<Event> EventKitEvent::of(const Ref<EKEventStore>& store, EKEvent* event) {
  return event != nil ? std::make_shared<EventKitEvent>(store, Ref<EKEvent>(event)) : nullptr;
}

std::optional<std::string> EventKitEvent::eventIdentifier() const {
  return guarded([&] { return textFrom([event() eventIdentifier]); });
}

std::optional<Date> EventKitEvent::startDate() const {
  return guarded([&] { return dateFrom([event() startDate]); });
}

void EventKitEvent::setStartDate(std::optional<Date> date) {
  guarded([&] { [event() setStartDate:nsDate(date)]; });
}

std::optional<Date> EventKitEvent::endDate() const {
  return guarded([&] { return dateFrom([event() endDate]); });
}

void EventKitEvent::setEndDate(std::optional<Date> date) {
  guarded([&] { [event() setEndDate:nsDate(date)]; });
}

bool EventKitEvent::isAllDay() const {
  return guarded([&] { return [event() isAllDay] == YES; });
}

void EventKitEvent::setAllDay(bool allDay) {
  guarded([&] { [event() setAllDay:allDay ? YES : NO]; });
}

bool EventKitEvent::isDetached() const {
  return guarded([&] { return [event() isDetached] == YES; });
}

std::optional<Date> EventKitEvent::occurrenceDate() const {
  return guarded([&] { return dateFrom([event() occurrenceDate]); });
}

}  // namespace ek::macos
