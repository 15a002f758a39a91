#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"

namespace zuno {

namespace {

template <class Items>
int countOf(const Items& items) {
  return static_cast<int>(items.size());
}

}  // namespace

int iCalEKFunctions::getObjectCount(const Keyword& type) {
  switch (itemTypeFrom(type)) {
    case ItemType::calendar:
      return countOf(m_ekEventStore->calendarsForEntityType(ek::EntityType::event));
    case ItemType::reminderList:
      return countOf(m_ekEventStore->calendarsForEntityType(ek::EntityType::reminder));
    case ItemType::event:
      if (!m_ekEventPredicate) return fail(kErrCountNeedsEventFetch);
      return countOf(*m_ekEventStore->eventsMatchingPredicate(m_ekEventPredicate));
    case ItemType::reminder:
      return countReminders();
    case ItemType::attendee:
      return m_ekEvent ? countOf(m_ekEvent->attendees()) : fail(kErrCountNeedsEvent);
    case ItemType::alarm:
      return countAlarms();
    case ItemType::recurrenceRule:
    case ItemType::none:
      break;
  }
  return fail(kErrInvalidType);
}

int iCalEKFunctions::countReminders() {
  if (!m_ekReminderPredicate) return fail(kErrCountNeedsReminderFetch);
  const std::shared_ptr<const ek::ReminderList> fetched = reminders();
  return fetched ? countOf(*fetched) : 0;
}

int iCalEKFunctions::countAlarms() {
  // The event wins when both are open; opening an alarm prefers the reminder.
  if (m_ekEvent) return countOf(m_ekEvent->alarms());
  return m_ekReminder ? countOf(m_ekReminder->alarms()) : fail(kErrCountNeedsItem);
}

}  // namespace zuno
