#include "eventkit/macos/alarm.h"

#include "eventkit/macos/conversions.h"
#include "eventkit/macos/guard.h"

namespace ek::macos {

double EventKitAlarm::relativeOffset() const {
  return guarded([&] { return [object() relativeOffset]; });
}

void EventKitAlarm::setRelativeOffset(double seconds) {
  guarded([&] { [object() setRelativeOffset:seconds]; });
}

std::optional<Date> EventKitAlarm::absoluteDate() const {
  return guarded([&] { return dateFrom([object() absoluteDate]); });
}

void EventKitAlarm::setAbsoluteDate(std::optional<Date> date) {
  guarded([&] { [object() setAbsoluteDate:nsDate(date)]; });
}

AlarmType EventKitAlarm::type() const {
  return guarded([&] { return static_cast<AlarmType>([object() type]); });
}

std::optional<std::string> EventKitAlarm::emailAddress() const {
  return guarded([&] { return textFrom([object() emailAddress]); });
}

void EventKitAlarm::setEmailAddress(std::optional<std::string> address) {
  guarded([&] { [object() setEmailAddress:nsString(address)]; });
}

std::optional<std::string> EventKitAlarm::soundName() const {
  return guarded([&] { return textFrom([object() soundName]); });
}

void EventKitAlarm::setSoundName(std::optional<std::string> name) {
  guarded([&] { [object() setSoundName:nsString(name)]; });
}

std::optional<std::string> EventKitAlarm::url() const {
  return guarded([&] { return textFrom([object() url]); });
}

void EventKitAlarm::setUrl(std::optional<std::string> url) {
  guarded([&] { [object() setUrl:nsUrl(url)]; });
}

}  // namespace ek::macos
