#include "plugin/backend/attribute_tables.h"
#include "plugin/backend/ical_ek_functions.h"

namespace zuno {

namespace {

constexpr std::string_view kCalendarTypes[] = {"Local", "CalDav", "Exchange", "Subscription", "Birthday"};

Value colorText(const std::optional<ek::Color>& color) {
  if (!color) return {};
  char text[64];
  std::snprintf(text, sizeof text, "%.0f %.0f %.0f", color->red * 255, color->green * 255, color->blue * 255);
  return text;
}

constexpr ReaderRow<ek::Calendar> kReaders[] = {
    {"title", [](const ek::Calendar& calendar) { return valueOf(calendar.title()); }},
    {"notes", [](const ek::Calendar&) { return Value(); }},  // accepted: calendars have none
    {"type", [](const ek::Calendar& calendar) { return wordFor(kCalendarTypes, calendar.type()); }},
    {"uid", [](const ek::Calendar& calendar) { return valueOf(calendar.calendarIdentifier()); }},
    {"iseditable", [](const ek::Calendar& calendar) { return truthValue(!calendar.isImmutable()); }},
    {"issubscribed", [](const ek::Calendar& calendar) { return truthValue(calendar.isSubscribed()); }},
    {"allowsmodification",
     [](const ek::Calendar& calendar) { return truthValue(calendar.allowsContentModifications()); }},
    {"color", [](const ek::Calendar& calendar) { return colorText(calendar.color()); }},
};

}  // namespace

Value iCalEKFunctions::getCalendarAttribute(const Keyword& keyword, std::int32_t /*at*/,
                                            TextArgument /*uid*/) {
  if (!m_ekCalendar) return noValue(kErrGetNeedsCalendar);
  if (keyword.isNone()) return noValue(kErrPropertyMissing);
  const Reader<ek::Calendar>* read = find(kReaders, keyword);
  if (read == nullptr) return noValue(kErrPropertyUnknown);
  try {
    return (*read)(*m_ekCalendar);
  } catch (const std::exception& raised) {
    failRaised(raised.what());
    return "!!ERROR!!";
  }
}

}  // namespace zuno
