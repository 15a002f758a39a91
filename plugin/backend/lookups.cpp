#include <algorithm>
#include <utility>

#include "foundation/text.h"
#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"

namespace zuno {

namespace {

std::shared_ptr<ek::Calendar> titled(const ek::Calendars& calendars, const std::string& title) {
  const auto found = std::find_if(calendars.begin(), calendars.end(),
                                  [&title](const auto& calendar) { return calendar->title() == title; });
  return found == calendars.end() ? nullptr : *found;
}

}  // namespace

std::optional<ek::Calendars> iCalEKFunctions::calendarArrayFromString(TextArgument names, TextArgument type) {
  if (!names) {
    if (m_ekCalendar) return ek::Calendars{m_ekCalendar};
    const ItemType kind = itemTypeFrom(type);
    if (kind == ItemType::calendar) return m_ekEventStore->calendarsForEntityType(ek::EntityType::event);
    if (kind == ItemType::reminderList)
      return m_ekEventStore->calendarsForEntityType(ek::EntityType::reminder);
    return std::nullopt;
  }
  ek::Calendars calendars;
  for (const std::string_view title : foundation::splitAtNewlines(*names)) {
    std::shared_ptr<ek::Calendar> calendar = getCalendarWithTitle(std::string(title));
    if (!calendar) {
      fail(kErrCalendarByUid);
      return std::nullopt;
    }
    calendars.push_back(std::move(calendar));
  }
  return calendars;
}

std::shared_ptr<ek::Calendar> iCalEKFunctions::getCalendarWithTitle(const std::string& title) {
  std::shared_ptr<ek::Calendar> calendar = calendarTitled(title);
  if (!calendar) fail(kErrItemNotFound);
  return calendar;
}

// An event calendar is found before a reminder list of the same title.
std::shared_ptr<ek::Calendar> iCalEKFunctions::calendarTitled(const std::string& title) {
  for (const ek::EntityType kind : {ek::EntityType::event, ek::EntityType::reminder})
    if (auto calendar = titled(m_ekEventStore->calendarsForEntityType(kind), title)) return calendar;
  return nullptr;
}

}  // namespace zuno
