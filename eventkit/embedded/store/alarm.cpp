#include "eventkit/embedded/store/alarm.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/store/fields.h"

namespace ek::embedded {

namespace {

constexpr struct {
  std::string_view action;
  AlarmType type;
} kActions[] = {
    {"DISPLAY", AlarmType::display},
    {"AUDIO", AlarmType::audio},
    {"PROCEDURE", AlarmType::procedure},
    {"EMAIL", AlarmType::email},
};

AlarmType typeOf(std::string_view action) {
  const auto* entry = std::ranges::find_if(
      kActions, [action](const auto& each) { return equalsIgnoringCase(each.action, action); });
  return entry == std::end(kActions) ? AlarmType::display : entry->type;
}

std::string_view actionOf(AlarmType type) {
  return std::ranges::find(kActions, type, [](const auto& each) { return each.type; })->action;
}

void readTrigger(const ical::Component& valarm, const AlarmAnchor& anchor, const ZoneFinder& zones,
                 AlarmValues& values) {
  const ical::Line* trigger = valarm.find("TRIGGER");
  if (trigger == nullptr) return;
  if (const auto duration = ical::parseDuration(trigger->value())) {
    constexpr std::int64_t kDay = 86400;
    const bool fromEnd = equalsIgnoringCase(trigger->parameter("RELATED").value_or(""), "END");
    const std::int64_t shift = fromEnd ? anchor.endShift : anchor.startShift;
    values.relativeOffset = static_cast<double>(duration->days * kDay + duration->seconds + shift);
  } else {
    values.absoluteDate = readInstant(valarm, "TRIGGER", zones);
  }
}

ical::Line triggerLine(const AlarmValues& values, const AlarmAnchor& anchor) {
  if (values.absoluteDate) {
    const ical::DateTime utc{.wall = foundation::WallTime(values.absoluteDate->time_since_epoch()),
                             .isDate = false,
                             .isUtc = true};
    return ical::Line::make("TRIGGER", ical::formatDateTime(utc), {{"VALUE", "DATE-TIME"}});
  }
  const std::string duration = ical::formatDuration({.seconds = std::llround(values.relativeOffset)});
  if (anchor.countsFromEnd) return ical::Line::make("TRIGGER", duration, {{"RELATED", "END"}});
  return ical::Line::make("TRIGGER", duration);
}

// What RFC 5545 asks of an alarm of that kind, where it is not there already.
void complete(ical::Component& valarm, const AlarmValues& values, const std::string& itemTitle) {
  const std::string text = ical::encodeText(itemTitle.empty() ? "Reminder" : itemTitle);
  const bool needsDescription = values.type == AlarmType::display || values.type == AlarmType::email;
  if (needsDescription && valarm.find("DESCRIPTION") == nullptr)
    valarm.add(ical::Line::make("DESCRIPTION", text));
  if (values.type == AlarmType::email && valarm.find("SUMMARY") == nullptr)
    valarm.add(ical::Line::make("SUMMARY", text));
}

void setAction(ical::Component& valarm, const AlarmValues& values) {
  valarm.set(ical::Line::make("ACTION", actionOf(values.type)));
  valarm.remove("ATTENDEE");
  valarm.remove("ATTACH");
  if (values.email) valarm.add(ical::Line::make("ATTENDEE", calendarAddressOf(*values.email)));
  if (values.sound) valarm.add(ical::Line::make("ATTACH", *values.sound, {{"VALUE", "URI"}}));
  if (values.url) valarm.add(ical::Line::make("ATTACH", *values.url, {{"VALUE", "URI"}}));
}

bool sameAction(const AlarmValues& a, const AlarmValues& b) {
  return a.type == b.type && a.email == b.email && a.sound == b.sound && a.url == b.url;
}

bool sameTrigger(const AlarmValues& a, const AlarmValues& b) {
  return a.absoluteDate == b.absoluteDate && a.relativeOffset == b.relativeOffset;
}

}  // namespace

AlarmValues readAlarm(const ical::Component& valarm, const AlarmAnchor& anchor, const ZoneFinder& zones) {
  AlarmValues values;
  values.type = typeOf(valarm.value("ACTION").value_or("DISPLAY"));
  readTrigger(valarm, anchor, zones, values);
  const auto textOf = [&valarm](std::string_view name) -> std::optional<std::string> {
    const auto value = valarm.value(name);
    return value ? std::optional(std::string(*value)) : std::nullopt;
  };
  if (values.type == AlarmType::audio) values.sound = textOf("ATTACH");
  if (values.type == AlarmType::procedure) values.url = textOf("ATTACH");
  if (values.type == AlarmType::email) {
    values.email = textOf("ATTENDEE");
    if (values.email) values.email = addressIn(*values.email);
  }
  return values;
}

void EmbeddedAlarm::setRelativeOffset(double seconds) {
  values_.relativeOffset = seconds;
  values_.absoluteDate.reset();
}

void EmbeddedAlarm::setAbsoluteDate(std::optional<Date> date) {
  values_.absoluteDate = date;
  values_.relativeOffset = 0;
}

void EmbeddedAlarm::setEmailAddress(std::optional<std::string> address) {
  choose(AlarmType::email, &AlarmValues::email, std::move(address));
}

void EmbeddedAlarm::setSoundName(std::optional<std::string> name) {
  choose(AlarmType::audio, &AlarmValues::sound, std::move(name));
}

void EmbeddedAlarm::setUrl(std::optional<std::string> url) {
  choose(AlarmType::procedure, &AlarmValues::url, std::move(url));
}

void EmbeddedAlarm::choose(AlarmType type, std::optional<std::string> AlarmValues::*value,
                           std::optional<std::string> text) {
  if (text) {
    values_.email.reset();
    values_.sound.reset();
    values_.url.reset();
    values_.type = type;
  }
  values_.*value = std::move(text);
  if (!values_.email && !values_.sound && !values_.url) values_.type = AlarmType::display;
}

ical::Component EmbeddedAlarm::component(const AlarmAnchor& anchor, const std::string& itemTitle) const {
  if (!isChanged()) return source_->component;
  ical::Component valarm = source_ ? source_->component : ical::Component("VALARM");
  if (!source_ || !sameAction(source_->values, values_)) setAction(valarm, values_);
  if (!source_ || !sameTrigger(source_->values, values_)) valarm.set(triggerLine(values_, anchor));
  complete(valarm, values_, itemTitle);
  return valarm;
}

}  // namespace ek::embedded
