#include "plugin/backend/attribute_tables.h"
#include "plugin/backend/ical_ek_functions.h"

namespace zuno {

namespace {

constexpr std::string_view kActions[] = {"display", "sound", "procedure", "email"};

Value action(const ek::Alarm& alarm) {
  Value word = wordFor(kActions, alarm.type());
  return word.index() == 0 ? Value("") : word;
}

Value relativeTrigger(const ek::Alarm& alarm) {
  if (alarm.absoluteDate()) return "";
  const double offset = alarm.relativeOffset();
  return offset == 0 ? Value() : formatted("%f", offset);
}

constexpr ReaderRow<ek::Alarm> kReaders[] = {
    {"absolutetrigger", [](const ek::Alarm& alarm) { return valueOf(alarm.absoluteDate()); }},
    {"action", action},
    {"emailaddress", [](const ek::Alarm& alarm) { return valueOf(alarm.emailAddress()); }},
    {"relativetrigger", relativeTrigger},
    {"sound", [](const ek::Alarm& alarm) { return valueOf(alarm.soundName()); }},
    {"url", [](const ek::Alarm& alarm) { return valueOf(alarm.url()); }},
};

// Of the open event's first alarm, whichever alarm is open.
Value firstEmailAddress(const ek::Event* event) {
  if (event == nullptr) return {};
  const std::vector<std::shared_ptr<ek::Alarm>> alarms = event->alarms();
  return alarms.empty() ? Value() : valueOf(alarms.front()->emailAddress());
}

}  // namespace

Value iCalEKFunctions::getAlarmAttribute(const Keyword& keyword, std::int32_t /*at*/, TextArgument /*uid*/) {
  if (keyword == "email") return firstEmailAddress(m_ekEvent.get());
  if (!m_ekAlarm) return noValue(kErrGetNeedsAlarm);
  if (keyword.isNone()) return noValue(kErrPropertyMissing);
  const Reader<ek::Alarm>* read = find(kReaders, keyword);
  return read ? (*read)(*m_ekAlarm) : noValue(kErrPropertyUnknown);
}

}  // namespace zuno
