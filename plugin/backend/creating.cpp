#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"

namespace zuno {

int iCalEKFunctions::newItem(TextArgument type) {
  releaseItems();
  const ItemType kind = itemTypeFrom(type);
  if (kind == ItemType::calendar) {
    m_ekCalendar = m_ekEventStore->newCalendar(ek::EntityType::event);
    return m_ekCalendar ? 0 : fail(kErrCreateCalendar);
  }
  if (kind == ItemType::reminderList) {
    m_ekCalendar = m_ekEventStore->newCalendar(ek::EntityType::reminder);
    return m_ekCalendar ? 0 : fail(kErrCreateReminderList);
  }
  if (kind == ItemType::event) {
    m_ekEvent = m_ekEventStore->newEvent();
    return m_ekEvent ? 0 : fail(kErrCreateEvent);
  }
  if (kind == ItemType::reminder) {
    m_ekReminder = m_ekEventStore->newReminder();
    return m_ekReminder ? 0 : fail(kErrCreateReminder);
  }
  return fail(kErrInvalidType);
}

}  // namespace zuno
