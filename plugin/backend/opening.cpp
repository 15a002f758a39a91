#include <utility>

#include "plugin/backend/ical_ek_functions.h"

namespace zuno {

namespace {

bool isPosition(std::int32_t position, std::size_t count) {
  return position >= 1 && static_cast<std::size_t>(position) <= count;
}

std::size_t indexOf(std::int32_t position) { return static_cast<std::size_t>(position) - 1; }

}  // namespace

int iCalEKFunctions::openEventWithUID(const std::string& uid, std::optional<Date> /*occurrence*/) {
  releaseItems();
  try {
    m_ekEvent = m_ekEventStore->eventWithIdentifier(uid);
  } catch (const std::exception& raised) {
    return failRaised(raised.what());
  }
  return m_ekEvent ? 0 : fail(kErrItemNotFound);
}

int iCalEKFunctions::openEventAt(std::int32_t position) {
  if (!m_ekEventPredicate) return fail(kErrNoEventPredicate);
  m_ekCalendar.reset();
  forgetParts();
  const std::shared_ptr<const ek::EventList> events =
      m_ekEventStore->eventsMatchingPredicate(m_ekEventPredicate);
  if (!isPosition(position, events->size())) return fail(kErrIndexOutOfBounds);
  m_ekEvent = events->at(indexOf(position));
  return m_ekEvent ? 0 : fail(kErrItemNotFound);
}

int iCalEKFunctions::openReminderWithUID(const std::string& uid) {
  releaseItems();
  m_ekReminder = m_ekEventStore->calendarItemWithIdentifier(uid);
  return m_ekReminder ? 0 : fail(kErrReminderByUid);
}

// Without a fetch the store is asked with no query, which it refuses with an exception.
int iCalEKFunctions::openReminderAt(std::int32_t position) {
  forgetParts();
  const std::shared_ptr<const ek::ReminderList> fetched = reminders();
  if (!isPosition(position, fetched ? fetched->size() : 0)) return fail(kErrIndexOutOfBounds);
  m_ekReminder = fetched->at(indexOf(position));
  return m_ekReminder ? 0 : fail(kErrOpenReminder);
}

// Everything that belongs to the event or reminder that was open, and itself.
void iCalEKFunctions::forgetParts() {
  m_ekAlarm.reset();
  m_ekParticipant.reset();
  m_ekRecurrenceRule.reset();
  m_ekRecurrenceEnd.reset();
  m_ekReminder.reset();
  m_ekEvent.reset();
}

int iCalEKFunctions::openCalendarAt(std::int32_t position) {
  return openListedCalendar(ek::EntityType::event, position, kErrOpenCalendar);
}

int iCalEKFunctions::openReminderListAt(std::int32_t position) {
  return openListedCalendar(ek::EntityType::reminder, position, kErrOpenReminderList);
}

int iCalEKFunctions::openListedCalendar(ek::EntityType kind, std::int32_t position, ErrorNumber whenGone) {
  releaseItems();
  const ek::Calendars calendars = m_ekEventStore->calendarsForEntityType(kind);
  if (!isPosition(position, calendars.size())) return fail(kErrIndexOutOfBounds);
  m_ekCalendar = calendars[indexOf(position)];
  return m_ekCalendar ? 0 : fail(whenGone);
}

int iCalEKFunctions::openCalendarWithUID(const std::string& uid) {
  releaseItems();
  m_ekCalendar = m_ekEventStore->calendarWithIdentifier(uid);
  return m_ekCalendar ? 0 : fail(kErrCalendarByUid);
}

int iCalEKFunctions::openCalendarWithTitle(const std::string& title) {
  releaseItems();
  m_ekCalendar = calendarTitled(title);
  return m_ekCalendar ? 0 : fail(kErrCalendarByTitle);
}

int iCalEKFunctions::openAlarmAt(std::int32_t position) {
  // The reminder wins when both are open; the count of alarms prefers the event.
  const ek::CalendarItem* owner = m_ekReminder ? m_ekReminder.get() : m_ekEvent.get();
  if (owner == nullptr) return fail(kErrInvalidCallOrder);
  m_ekAlarm.reset();
  const std::vector<std::shared_ptr<ek::Alarm>> alarms = owner->alarms();
  if (alarms.empty()) return fail(kErrNoAlarms);
  if (!isPosition(position, alarms.size())) return fail(kErrIndexOutOfBounds);
  m_ekAlarm = alarms[indexOf(position)];
  return m_ekAlarm ? 0 : fail(kErrOpenAlarm);
}

int iCalEKFunctions::openParticipantAt(std::int32_t position) {
  if (!m_ekEvent) return fail(kErrInvalidCallOrder);
  m_ekParticipant.reset();
  std::vector<ek::Participant> attendees = m_ekEvent->attendees();
  if (!isPosition(position, attendees.size())) return fail(kErrIndexOutOfBounds);
  m_ekParticipant = std::move(attendees[indexOf(position)]);
  return 0;
}

}  // namespace zuno
