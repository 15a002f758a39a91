#include "eventkit/macos/item.h"

#include "eventkit/macos/alarm.h"
#include "eventkit/macos/calendar.h"
#include "eventkit/macos/conversions.h"
#include "eventkit/macos/event.h"
#include "eventkit/macos/guard.h"
#include "eventkit/macos/recurrence.h"
#include "eventkit/macos/reminder.h"

namespace ek::macos {

namespace {

EKAlarm* nativeAlarm(const std::shared_ptr<Alarm>& alarm) {
  const auto* native = dynamic_cast<const EventKitAlarm*>(alarm.get());
  if (native == nullptr) throwException("the alarm belongs to another calendar store");
  return native->object();
}

Participant participantFrom(EKParticipant* participant) {
  return {.url = textFrom([participant URL]),
          .name = textFrom([participant name]),
          .status = static_cast<ParticipantStatus>([participant participantStatus]),
          .role = static_cast<ParticipantRole>([participant participantRole]),
          .type = static_cast<ParticipantType>([participant participantType]),
          .native = std::make_shared<const Ref<EKParticipant>>(participant)};
}

Ref<EKRecurrenceRule> requiredRule(const RecurrenceRule& rule) {
  auto made = ruleTo(rule);
  if (!made) throwException("EventKit makes no such recurrence rule");
  return made;
}

}  // namespace

std::shared_ptr<CalendarItem> itemOf(const Ref<EKEventStore>& store, EKCalendarItem* item) {
  if ([item isKindOfClass:[EKEvent class]]) return EventKitEvent::of(store, static_cast<EKEvent*>(item));
  if ([item isKindOfClass:[EKReminder class]])
    return EventKitReminder::of(store, static_cast<EKReminder*>(item));
  return nullptr;
}

template <class Interface>
std::shared_ptr<Calendar> EventKitItem<Interface>::calendar() const {
  return guarded([&] { return EventKitCalendar::of(store(), [object() calendar]); });
}

template <class Interface>
void EventKitItem<Interface>::setCalendar(std::shared_ptr<Calendar> calendar) {
  EKCalendar* native = calendar ? nativeOf<EKCalendar>(calendar, store().get()) : nil;
  guarded([&] { [object() setCalendar:native]; });
}

template <class Interface>
std::string EventKitItem<Interface>::calendarItemIdentifier() const {
  return guarded([&] { return textFrom([object() calendarItemIdentifier]).value_or(""); });
}

template <class Interface>
std::optional<std::string> EventKitItem<Interface>::calendarItemExternalIdentifier() const {
  return guarded([&] { return textFrom([object() calendarItemExternalIdentifier]); });
}

template <class Interface>
const std::optional<std::string>& EventKitItem<Interface>::title() const {
  title_ = guarded([&] { return linesFromStore([object() title]); });
  return title_;
}

template <class Interface>
void EventKitItem<Interface>::setTitle(std::optional<std::string> title) {
  guarded([&] { [object() setTitle:linesToStore(title)]; });
}

template <class Interface>
const std::optional<std::string>& EventKitItem<Interface>::location() const {
  location_ = guarded([&] { return linesFromStore([object() location]); });
  return location_;
}

template <class Interface>
void EventKitItem<Interface>::setLocation(std::optional<std::string> location) {
  guarded([&] { [object() setLocation:linesToStore(location)]; });
}

template <class Interface>
const std::optional<std::string>& EventKitItem<Interface>::notes() const {
  notes_ = guarded([&] { return linesFromStore([object() notes]); });
  return notes_;
}

template <class Interface>
void EventKitItem<Interface>::setNotes(std::optional<std::string> notes) {
  guarded([&] { [object() setNotes:linesToStore(notes)]; });
}

template <class Interface>
const std::optional<std::string>& EventKitItem<Interface>::url() const {
  url_ = guarded([&] { return textFrom([object() URL]); });
  return url_;
}

template <class Interface>
void EventKitItem<Interface>::setUrl(std::optional<std::string> url) {
  guarded([&] { [object() setURL:nsUrl(url)]; });
}

template <class Interface>
std::optional<Date> EventKitItem<Interface>::lastModifiedDate() const {
  return guarded([&] { return dateFrom([object() lastModifiedDate]); });
}

template <class Interface>
std::optional<Date> EventKitItem<Interface>::creationDate() const {
  return guarded([&] { return dateFrom([object() creationDate]); });
}

template <class Interface>
std::optional<std::string> EventKitItem<Interface>::timeZoneAbbreviation() const {
  return guarded([&] { return textFrom([[object() timeZone] abbreviation]); });
}

template <class Interface>
std::vector<std::shared_ptr<Alarm>> EventKitItem<Interface>::alarms() const {
  return guarded([&] {
    std::vector<std::shared_ptr<Alarm>> alarms;
    for (EKAlarm* alarm in [object() alarms])
      alarms.push_back(std::make_shared<EventKitAlarm>(Ref<EKAlarm>(alarm)));
    return alarms;
  });
}

template <class Interface>
void EventKitItem<Interface>::addAlarm(std::shared_ptr<Alarm> alarm) {
  EKAlarm* native = nativeAlarm(alarm);
  guarded([&] { [object() addAlarm:native]; });
}

template <class Interface>
void EventKitItem<Interface>::removeAlarm(const std::shared_ptr<Alarm>& alarm) {
  if (!alarm) return;
  EKAlarm* native = nativeAlarm(alarm);
  guarded([&] { [object() removeAlarm:native]; });
}

template <class Interface>
std::vector<Participant> EventKitItem<Interface>::attendees() const {
  return guarded([&] {
    std::vector<Participant> attendees;
    for (EKParticipant* participant in [object() attendees])
      attendees.push_back(participantFrom(participant));
    return attendees;
  });
}

template <class Interface>
std::vector<RecurrenceRule> EventKitItem<Interface>::recurrenceRules() const {
  return guarded([&] { return rulesFrom([object() recurrenceRules]); });
}

template <class Interface>
void EventKitItem<Interface>::addRecurrenceRule(const RecurrenceRule& rule) {
  guarded([&] { [object() addRecurrenceRule:requiredRule(rule).get()]; });
}

template <class Interface>
void EventKitItem<Interface>::removeRecurrenceRule(const RecurrenceRule& rule) {
  guarded([&] {
    for (EKRecurrenceRule* present in [object() recurrenceRules]) {
      if (!(ruleFrom(present) == rule)) continue;
      [object() removeRecurrenceRule:present];
      return;
    }
  });
}

template <class Interface>
void EventKitItem<Interface>::setRecurrenceRules(std::vector<RecurrenceRule> rules) {
  guarded([&] {
    NSMutableArray* natives = [NSMutableArray arrayWithCapacity:rules.size()];
    for (const RecurrenceRule& rule : rules) [natives addObject:requiredRule(rule).get()];
    [object() setRecurrenceRules:rules.empty() ? nil : natives];
  });
}

template class EventKitItem<Event>;
template class EventKitItem<Reminder>;

}  // namespace ek::macos
