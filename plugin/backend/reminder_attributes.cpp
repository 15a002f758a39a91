#include "foundation/time_zone.h"
#include "plugin/backend/attribute_tables.h"
#include "plugin/backend/ical_ek_functions.h"

namespace zuno {

namespace {

// A due date without a zone of its own is meant in the zone of whoever reads it.
Value dueDate(const ek::Reminder& reminder) {
  const std::optional<ek::DateComponents> due = reminder.dueDateComponents();
  if (!due) return {};
  return (due->zone ? due->zone : foundation::TimeZone::defaultZone())->instantOf(due->wall);
}

constexpr std::string_view kPriorities[] = {"None",   "High", "High", "High", "High",
                                            "Medium", "Low",  "Low",  "Low",  "Low"};

// An event may be held as the open reminder. What events have too is read from it; the rest raises.
constexpr ReaderRow<ek::CalendarItem> kCommonReaders[] = {
    {"hasalarms", [](const ek::CalendarItem& item) { return truthValue(!item.alarms().empty()); }},
    {"notes", [](const ek::CalendarItem& item) { return borrowed(item.notes()); }},
    {"title", [](const ek::CalendarItem& item) { return borrowed(item.title()); }},
    {"externaluid",
     [](const ek::CalendarItem& item) { return valueOf(item.calendarItemExternalIdentifier()); }},
};

constexpr ReaderRow<ek::Reminder> kReaders[] = {
    {"duedate", dueDate},
    {"completeddate", [](const ek::Reminder& reminder) { return valueOf(reminder.completionDate()); }},
    {"iscompleted", [](const ek::Reminder& reminder) { return truthValue(reminder.isCompleted()); }},
    {"priority", [](const ek::Reminder& reminder) { return wordFor(kPriorities, reminder.priority()); }},
};

}  // namespace

Value iCalEKFunctions::getReminderAttribute(const Keyword& keyword, std::int32_t /*at*/,
                                            TextArgument /*uid*/) {
  if (!m_ekReminder) return noValue(kErrGetNeedsReminder);
  if (keyword.isNone()) return noValue(kErrPropertyMissing);
  if (const Reader<ek::Reminder>* read = find(kReaders, keyword))
    return (*read)(ek::asReminder(*m_ekReminder));
  if (const Reader<ek::CalendarItem>* read = find(kCommonReaders, keyword)) return (*read)(*m_ekReminder);
  return getCalendarItemAttribute(keyword, *m_ekReminder);
}

}  // namespace zuno
