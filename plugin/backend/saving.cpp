#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"
#include "plugin/backend/spans.h"

namespace zuno {

namespace {

bool isInverted(const ek::Event& event) {
  const std::optional<Date> start = event.startDate();
  const std::optional<Date> end = event.endDate();
  return start && end && *start > *end;
}

std::optional<ek::Source> sourceOf(const std::shared_ptr<ek::Calendar>& calendar) {
  return calendar ? calendar->source() : std::nullopt;
}

}  // namespace

// Whether the item of that kind is open is not tested: the store refuses to save nothing.
int iCalEKFunctions::saveItem(TextArgument type, TextArgument span) {
  const std::optional<ek::Span> reach = spanFrom(span);
  if (span && !reach) return fail(kErrSpanUnknown);
  const ItemType kind = itemTypeFrom(type);
  try {
    if (kind == ItemType::calendar) return saveCalendar();
    if (kind == ItemType::reminderList) return saveReminderList();
    if (kind == ItemType::reminder) return saveReminder();
    if (kind == ItemType::event) return saveEvent(reach.value_or(ek::Span::thisEvent));
  } catch (const std::exception& raised) {
    failRaised(raised.what());
    return 0;
  }
  return fail(kErrMissingArgument);
}

int iCalEKFunctions::saveCalendar() {
  if (saveWithSource(sourceOf(m_ekEventStore->defaultCalendarForNewEvents()))) return 0;
  return fail(m_ekCalendar->allowsContentModifications() ? kErrSaveCalendar : kErrCalendarModification);
}

int iCalEKFunctions::saveReminderList() {
  return saveWithSource(sourceOf(m_ekEventStore->defaultCalendarForNewReminders())) ? 0
                                                                                    : fail(kErrSaveCalendar);
}

// A calendar is given the source every time, one that already exists too: the same source is no change.
bool iCalEKFunctions::saveWithSource(std::optional<ek::Source> source) {
  if (m_ekCalendar) m_ekCalendar->setSource(std::move(source));
  std::optional<ek::Error> refusal;
  return m_ekEventStore->saveCalendar(m_ekCalendar, refusal);
}

int iCalEKFunctions::saveReminder() {
  std::optional<ek::Error> refusal;
  return m_ekEventStore->saveReminder(m_ekReminder, refusal) ? 0 : fail(kErrSaveReminder);
}

int iCalEKFunctions::saveEvent(ek::Span span) {
  if (m_ekEvent && isInverted(*m_ekEvent)) return fail(kErrDatesInverted);
  std::optional<ek::Error> refusal;
  // Refusing without an error means that there was nothing to save.
  if (m_ekEventStore->saveEvent(m_ekEvent, span, refusal) || !refusal) return 0;
  return fail(m_ekEvent->attendees().empty() ? kErrSaveEvent : kErrEventHasAttendees);
}

}  // namespace zuno
