#include "eventkit/macos/calendar.h"

#include "eventkit/macos/conversions.h"
#include "eventkit/macos/guard.h"

namespace ek::macos {

std::shared_ptr<Calendar> EventKitCalendar::of(const Ref<EKEventStore>& store, EKCalendar* calendar) {
  return calendar != nil ? std::make_shared<EventKitCalendar>(store, Ref<EKCalendar>(calendar)) : nullptr;
}

std::string EventKitCalendar::calendarIdentifier() const {
  return guarded([&] { return textFrom([object() calendarIdentifier]).value_or(""); });
}

const std::optional<std::string>& EventKitCalendar::title() const {
  title_ = guarded([&] { return textFrom([object() title]); });
  return title_;
}

void EventKitCalendar::setTitle(std::optional<std::string> title) {
  guarded([&] { [object() setTitle:nsString(title)]; });
}

CalendarType EventKitCalendar::type() const {
  return guarded([&] { return static_cast<CalendarType>([object() type]); });
}

bool EventKitCalendar::isImmutable() const {
  return guarded([&] { return [object() isImmutable] == YES; });
}

bool EventKitCalendar::isSubscribed() const {
  return guarded([&] { return [object() isSubscribed] == YES; });
}

bool EventKitCalendar::allowsContentModifications() const {
  return guarded([&] { return [object() allowsContentModifications] == YES; });
}

std::optional<Color> EventKitCalendar::color() const {
  return guarded([&] { return colorFrom([object() color]); });
}

void EventKitCalendar::setColor(const Color& color) {
  guarded([&] { [object() setColor:nsColor(color)]; });
}

std::optional<Source> EventKitCalendar::source() const {
  return guarded([&]() -> std::optional<Source> {
    EKSource* source = [object() source];
    if (source == nil) return std::nullopt;
    return Source{.identifier = textFrom([source sourceIdentifier]).value_or(""),
                  .type = static_cast<SourceType>([source sourceType]),
                  .title = textFrom([source title]).value_or("")};
  });
}

void EventKitCalendar::setSource(std::optional<Source> source) {
  guarded([&] {
    NSString* identifier = source ? nsString(source->identifier) : nil;
    // Given anew at every save by callers; only a different one is the platform's concern.
    if (identifier != nil && [identifier isEqualToString:[[object() source] sourceIdentifier]]) return;
    [object() setSource:identifier != nil ? [store().get() sourceWithIdentifier:identifier] : nil];
  });
}

}  // namespace ek::macos
