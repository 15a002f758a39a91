#include "plugin/backend/attribute_tables.h"
#include "plugin/backend/ical_ek_functions.h"

namespace zuno {

namespace {

constexpr ReaderRow<ek::Event> kReaders[] = {
    {"title", [](const ek::Event& event) { return borrowed(event.title()); }},
    {"startdate", [](const ek::Event& event) { return valueOf(event.startDate()); }},
    {"enddate", [](const ek::Event& event) { return valueOf(event.endDate()); }},
    {"occurrence",
     [](const ek::Event& event) {
       return event.recurrenceRules().empty() ? Value() : valueOf(event.occurrenceDate());
     }},
    {"modifieddate", [](const ek::Event& event) { return valueOf(event.lastModifiedDate()); }},
    {"timezone", [](const ek::Event& event) { return valueOf(event.timeZoneAbbreviation()); }},
    {"uid", [](const ek::Event& event) { return valueOf(event.eventIdentifier()); }},
    {"externaluid", [](const ek::Event& event) { return valueOf(event.calendarItemExternalIdentifier()); }},
    {"attendeecount", [](const ek::Event& event) { return Value(std::to_string(event.attendees().size())); }},
    {"isallday", [](const ek::Event& event) { return truthValue(event.isAllDay()); }},
    {"isdetached", [](const ek::Event& event) { return truthValue(event.isDetached()); }},
    {"isrecurring", [](const ek::Event& event) { return truthValue(!event.recurrenceRules().empty()); }},
    {"location", [](const ek::Event& event) { return borrowed(event.location()); }},
    {"hasattendees", [](const ek::Event& event) { return truthValue(!event.attendees().empty()); }},
    {"hasalarms", [](const ek::Event& event) { return truthValue(!event.alarms().empty()); }},
    {"notes", [](const ek::Event& event) { return borrowed(event.notes()); }},
    {"url", [](const ek::Event& event) { return borrowed(event.url()); }},
};

}  // namespace

Value iCalEKFunctions::getEventAttribute(const Keyword& keyword, std::int32_t /*at*/, TextArgument /*uid*/) {
  if (!m_ekEvent) return noValue(kErrGetNeedsEvent);
  if (keyword.isNone()) return noValue(kErrPropertyMissing);
  const Reader<ek::Event>* read = find(kReaders, keyword);
  return read ? (*read)(*m_ekEvent) : getCalendarItemAttribute(keyword, *m_ekEvent);
}

}  // namespace zuno
