#include <utility>

#include "foundation/text.h"
#include "foundation/time_zone.h"
#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"

namespace zuno {

namespace {

// Wall-clock time as the user reads it, of no zone.
std::optional<ek::DateComponents> floatingComponents(std::optional<Date> date) {
  if (!date) return std::nullopt;
  ek::DateComponents components;
  components.wall = foundation::TimeZone::defaultZone()->wallTimeOf(*date);
  return components;
}

constexpr KeywordRow<int> kPriorities[] = {{"none", 0}, {"high", 1}, {"medium", 5}, {"low", 9}};

using EventSetter = void (*)(ek::Event&, const Value&);
constexpr KeywordRow<EventSetter> kEventSetters[] = {
    {"startdate", [](ek::Event& event, const Value& value) { event.setStartDate(dateOf(value)); }},
    {"enddate", [](ek::Event& event, const Value& value) { event.setEndDate(dateOf(value)); }},
    {"isallday", [](ek::Event& event, const Value& value) { event.setAllDay(isTrue(value)); }},
    {"location", [](ek::Event& event, const Value& value) { event.setLocation(owned(plainTextOf(value))); }},
};

}  // namespace

int iCalEKFunctions::setEventProp(TextArgument keyword, const Value& value) {
  if (!m_ekEvent) return fail(kErrSetNeedsEvent);
  if (!keyword) return fail(kErrPropertyMissing);
  if (const EventSetter* set = find(kEventSetters, Keyword(keyword)))
    (*set)(*m_ekEvent, value);
  else
    setCalendarItemProp(foundation::lowercased(*keyword), value, *m_ekEvent);
  return 0;
}

int iCalEKFunctions::setReminderProp(TextArgument keyword, const Value& value) {
  if (!m_ekReminder) return fail(kErrSetNeedsReminder);
  if (!keyword) return fail(kErrPropertyMissing);
  const Keyword word(keyword);
  if (word == "completeddate")
    ek::asReminder(*m_ekReminder).setCompletionDate(dateOf(value));
  else if (word == "duedate")
    ek::asReminder(*m_ekReminder).setDueDateComponents(floatingComponents(dateOf(value)));
  else if (word == "iscompleted")
    ek::asReminder(*m_ekReminder).setCompleted(isTrue(value));
  else if (word == "priority")
    setPriority(value);
  else
    setCalendarItemProp(foundation::lowercased(*keyword), value, *m_ekReminder);
  return 0;
}

// An unknown word is an error of which only the number tells: the priority stays.
void iCalEKFunctions::setPriority(const Value& value) {
  const int* priority = find(kPriorities, Keyword(plainTextOf(value).value_or("none")));
  if (priority != nullptr)
    ek::asReminder(*m_ekReminder).setPriority(*priority);
  else
    fail(kErrMissingArgument);
}

int iCalEKFunctions::setCalendarItemProp(TextArgument keyword, const Value& value, ek::CalendarItem& item) {
  try {
    std::optional<std::string> text = owned(plainTextOf(value));
    if (keyword == "calendaruid")
      return moveTo(m_ekEventStore->calendarWithIdentifier(text.value_or("")), item);
    if (keyword == "calendartitle") return moveTo(getCalendarWithTitle(text.value_or("")), item);
    if (keyword == "notes")
      item.setNotes(std::move(text));
    else if (keyword == "title")
      item.setTitle(std::move(text));
    else if (keyword == "url")
      item.setUrl(std::move(text));
    else
      return unknownItemProp(keyword);
    return 0;
  } catch (const std::exception& raised) {
    return failRaised(raised.what());
  }
}

int iCalEKFunctions::moveTo(const std::shared_ptr<ek::Calendar>& calendar, ek::CalendarItem& item) {
  if (!calendar) return fail(kErrCalendarByUid);
  item.setCalendar(calendar);
  return 0;
}

int iCalEKFunctions::unknownItemProp(TextArgument keyword) {
  fail(kErrInvalidArgument);
  if (!keyword) return 0;
  return *keyword < "url" ? -1 : 1;
}

}  // namespace zuno
