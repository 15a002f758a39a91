#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"
#include "plugin/backend/spans.h"

namespace zuno {

int iCalEKFunctions::removeItem(TextArgument type, TextArgument uid, std::optional<Date> /*occurrence*/,
                                TextArgument span) {
  releaseItems();
  const std::optional<ek::Span> reach = spanFrom(span);
  if (span && !reach) return fail(kErrInvalidArgument);
  const ItemType kind = itemTypeFrom(type);
  const std::string identifier(uid.value_or(""));
  try {
    if (kind == ItemType::calendar || kind == ItemType::reminderList) return removeCalendar(identifier);
    if (kind == ItemType::reminder) return removeReminder(identifier);
    if (kind == ItemType::event) return removeEvent(identifier, reach);
  } catch (const std::exception& raised) {
    failRaised(raised.what());
    return 0;
  }
  return fail(kErrMissingArgument);
}

int iCalEKFunctions::removeCalendar(const std::string& uid) {
  const std::shared_ptr<ek::Calendar> calendar = m_ekEventStore->calendarWithIdentifier(uid);
  if (!calendar) return fail(kErrCalendarNotFound);
  std::optional<ek::Error> refusal;
  return m_ekEventStore->removeCalendar(calendar, refusal) ? 0 : fail(kErrDeleteCalendar);
}

int iCalEKFunctions::removeReminder(const std::string& uid) {
  const std::shared_ptr<ek::CalendarItem> reminder = m_ekEventStore->calendarItemWithIdentifier(uid);
  if (!reminder) return fail(kErrReminderNotFound);
  std::optional<ek::Error> refusal;
  return m_ekEventStore->removeReminder(reminder, refusal) ? 0 : fail(kErrDeleteReminder);
}

int iCalEKFunctions::removeEvent(const std::string& uid, std::optional<ek::Span> span) {
  const std::shared_ptr<ek::Event> event = m_ekEventStore->eventWithIdentifier(uid);
  if (!event) return fail(kErrEventNotFound);
  if (!span) return fail(kErrSpanMissing);
  std::optional<ek::Error> refusal;
  return m_ekEventStore->removeEvent(event, *span, refusal) ? 0 : fail(kErrDeleteEvent);
}

}  // namespace zuno
