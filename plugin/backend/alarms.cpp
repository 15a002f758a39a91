#include <algorithm>
#include <limits>

#include "foundation/text.h"
#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"

namespace zuno {

namespace {

enum class AlarmAction { display, email, sound, procedure };

constexpr KeywordRow<AlarmAction> kActions[] = {
    {"display", AlarmAction::display},
    {"email", AlarmAction::email},
    {"sound", AlarmAction::sound},
    {"procedure", AlarmAction::procedure},
};

void makeDisplayOnly(ek::Alarm& alarm) {
  alarm.setEmailAddress(std::nullopt);
  alarm.setSoundName(std::nullopt);
  alarm.setUrl(std::nullopt);
}

// A whole number of seconds, in 32 bits.
double secondsFrom(std::string_view text) {
  constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
  return static_cast<double>(std::clamp(foundation::integerValue(text), lowest, highest));
}

}  // namespace

int iCalEKFunctions::addAlarm(TextArgument type, std::optional<Date> absTrigger, TextArgument action,
                              TextArgument eaddr, std::int32_t relTrigger, TextArgument sound) {
  if (!type) return fail(kErrAlarmTypeMissing);
  if (!action) return fail(kErrAlarmNeedsAction);
  m_ekAlarm.reset();
  if (!absTrigger && relTrigger == 0) return fail(kErrAlarmNeedsTrigger);
  ek::CalendarItem* owner = alarmOwner(type);
  if (owner == nullptr) return -1;

  const std::shared_ptr<ek::Alarm> alarm = absTrigger ? m_ekEventStore->alarmWithAbsoluteDate(*absTrigger)
                                                      : m_ekEventStore->alarmWithRelativeOffset(relTrigger);
  if (!alarm) return fail(kErrAddAlarm);
  // Each of the two undoes the other: an alarm given both ends as a sound alarm.
  if (eaddr) alarm->setEmailAddress(owned(eaddr));
  if (sound) alarm->setSoundName(owned(sound));

  const AlarmAction* wanted = find(kActions, Keyword(action));
  if (wanted == nullptr) return fail(kErrMissingArgument);
  if (*wanted == AlarmAction::display) makeDisplayOnly(*alarm);
  if (*wanted == AlarmAction::email && !eaddr) return fail(kErrAlarmNeedsEmail);
  if (*wanted == AlarmAction::sound && !sound) return fail(kErrAlarmNeedsSound);
  if (*wanted == AlarmAction::procedure) return fail(kErrAlarmProcedure);

  const std::size_t before = owner->alarms().size();
  owner->addAlarm(alarm);
  return owner->alarms().size() != before ? 0 : fail(kErrAddAlarm);
}

ek::CalendarItem* iCalEKFunctions::alarmOwner(TextArgument type) {
  const ItemType kind = itemTypeFrom(type);
  if (kind == ItemType::reminder) {
    if (!m_ekReminder) fail(kErrAlarmNeedsReminder);
    return m_ekReminder.get();
  }
  if (kind == ItemType::event) {
    if (!m_ekEvent) fail(kErrAlarmNeedsEvent);
    return m_ekEvent.get();
  }
  fail(kErrInvalidArgument);
  return nullptr;
}

int iCalEKFunctions::setAlarmProp(TextArgument keyword, const Value& value) {
  if (!m_ekAlarm) return fail(kErrInvalidCallOrder);
  const Keyword word(keyword);
  const TextArgument text = plainTextOf(value);
  if (word == "absolutetrigger") {
    const std::optional<Date> date = dateOf(value);
    if (!date) return fail(kErrAbsoluteDateMissing);
    m_ekAlarm->setAbsoluteDate(date);
  } else if (word == "relativetrigger") {
    if (!text) return fail(kErrRelativeOffsetMissing);
    m_ekAlarm->setRelativeOffset(secondsFrom(*text));
  } else if (word == "action") {
    return setAlarmAction(text);
  } else if (word == "emailaddress") {
    m_ekAlarm->setEmailAddress(owned(text));
  } else if (word == "sound") {
    m_ekAlarm->setSoundName(owned(text));
  } else {
    return fail(kErrMissingArgument);
  }
  return 0;
}

// What an alarm does follows from its address and sound; only "display", which takes both away, changes it.
int iCalEKFunctions::setAlarmAction(TextArgument word) {
  const AlarmAction* wanted = find(kActions, Keyword(word));
  if (wanted == nullptr) return fail(kErrAlarmActionUnknown);
  if (*wanted == AlarmAction::display) makeDisplayOnly(*m_ekAlarm);
  return 0;
}

int iCalEKFunctions::removeAlarmFrom(TextArgument type, std::int32_t at) {
  if (!type) return fail(kErrAlarmTypeMissing);
  ek::CalendarItem* owner = alarmOwner(type);
  if (owner == nullptr) return -1;
  const std::vector<std::shared_ptr<ek::Alarm>> alarms = owner->alarms();
  if (alarms.empty()) return 0;
  if (at == -1) {
    for (const std::shared_ptr<ek::Alarm>& alarm : alarms) owner->removeAlarm(alarm);
    return fail(kErrDeleteAlarm);
  }
  if (at < 1 || static_cast<std::size_t>(at) > alarms.size()) return fail(kErrIndexOutOfBounds);
  owner->removeAlarm(alarms[static_cast<std::size_t>(at) - 1]);
  return owner->alarms().size() != alarms.size() ? 0 : fail(kErrDeleteAlarm);
}

int iCalEKFunctions::removeAllAlarmsFrom(TextArgument type) {
  if (!type) return fail(kErrMissingArgument);
  const ItemType kind = itemTypeFrom(type);
  if (kind != ItemType::reminder && kind != ItemType::event) return fail(kErrInvalidArgument);
  ek::CalendarItem* owner = m_ekEvent.get();
  if (kind == ItemType::reminder) owner = m_ekReminder.get();
  if (owner == nullptr) return fail(kErrInvalidCallOrder);
  for (const std::shared_ptr<ek::Alarm>& alarm : owner->alarms()) owner->removeAlarm(alarm);
  return 0;
}

}  // namespace zuno
