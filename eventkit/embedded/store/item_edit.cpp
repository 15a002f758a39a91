#include "eventkit/embedded/store/item_edit.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <vector>

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/store/rule_text.h"
#include "eventkit/embedded/store/rules.h"

namespace ek::embedded {

namespace {

using std::chrono::days;
using std::chrono::floor;

constexpr const char* kOutlookAllDay = "X-MICROSOFT-CDO-ALLDAYEVENT";

bool isAlike(const TimeForm& a, const TimeForm& b) { return a.kind == b.kind && a.tzid == b.tzid; }

std::size_t findAlarm(const ical::Component& component, const ical::Component& alarm) {
  const auto& inner = component.components();
  const auto place = std::ranges::find_if(
      inner, [text = alarm.text()](const ical::Component& each) { return each.text() == text; });
  return static_cast<std::size_t>(place - inner.begin());
}

// The sources that the item's alarms had when it was read, without those that an alarm still stands for.
std::vector<const ical::Component*> removedAlarms(const ItemState& item) {
  std::vector<const ical::Component*> removed;
  for (const AlarmSource& source : item.fields().alarms) removed.push_back(&source.component);
  for (const auto& alarm : item.alarmList()) {
    if (!alarm->source()) continue;
    const auto same = std::ranges::find_if(removed, [&](const ical::Component* each) {
      return each->text() == alarm->source()->component.text();
    });
    if (same != removed.end()) removed.erase(same);
  }
  return removed;
}

bool isOwnAlarm(const ItemState& item, const EmbeddedAlarm& alarm) {
  return alarm.source() && std::ranges::any_of(item.fields().alarms, [&](const AlarmSource& source) {
           return source.component.text() == alarm.source()->component.text();
         });
}

// The line that says a stored rule now; its end may differ from the one that was read.
const ical::Line* lineOf(const StoredRule& stored, const std::vector<ical::Line>& lines) {
  const std::string wanted = ruleWithoutEnd(stored.line.value());
  const auto line = std::ranges::find_if(
      lines, [&](const ical::Line& each) { return ruleWithoutEnd(each.value()) == wanted; });
  return line == lines.end() ? nullptr : &*line;
}

}  // namespace

ical::Line utcLine(std::string_view name, Date date) {
  const ical::DateTime utc{.wall = WallTime(date.time_since_epoch()), .isDate = false, .isUtc = true};
  return ical::Line::make(name, ical::formatDateTime(utc));
}

void setValue(ical::Component& component, const ical::Line& line) {
  const ical::Line* old = component.find(line.name());
  const bool fits = old != nullptr && old->parameter("TZID") == line.parameter("TZID") &&
                    old->parameter("VALUE") == line.parameter("VALUE");
  component.set(fits ? old->withValue(line.value()) : line);
}

ical::Component newComponent(std::string_view name, std::string_view uid, Date now) {
  ical::Component component(name);
  component.add(ical::Line::make("UID", ical::encodeText(uid)));
  component.add(utcLine("DTSTAMP", now));
  component.add(utcLine("CREATED", now));
  component.add(utcLine("LAST-MODIFIED", now));
  component.add(ical::Line::make("SEQUENCE", "0"));
  return component;
}

void stamp(ical::Component& component, Date now, bool isRevision) {
  setValue(component, utcLine("DTSTAMP", now));
  setValue(component, utcLine("LAST-MODIFIED", now));
  if (!isRevision) return;
  const std::string_view value = component.value("SEQUENCE").value_or("0");
  long sequence = 0;
  std::from_chars(value.data(), value.data() + value.size(), sequence);
  setValue(component, ical::Line::make("SEQUENCE", std::to_string(sequence + 1)));
}

void writeTexts(ical::Component& component, const ItemState& item) {
  for (std::size_t i = 0; i < ItemState::kTextFields; ++i) {
    const auto name = static_cast<ItemState::TextName>(i);
    if (!item.isTextChanged(name)) continue;
    const ItemState::TextField& field = ItemState::textFields()[i];
    const Text& text = item.text(name);
    // Another form of the text that is replaced would contradict it.
    if (field.rival != nullptr) component.remove(field.rival);
    if (!text) {
      component.remove(field.property);
      continue;
    }
    const std::string value = field.isUri ? *text : ical::encodeText(*text);
    const ical::Line* old = component.find(field.property);
    component.set(old == nullptr ? ical::Line::make(field.property, value)
                                 : old->withValue(value).withParameter("ALTREP", std::nullopt));
  }
}

void writeAlarms(ical::Component& component, const ItemState& item, const AlarmAnchor& anchor) {
  if (!item.areAlarmsChanged()) return;
  auto& inner = component.components();
  for (const ical::Component* removed : removedAlarms(item))
    if (const std::size_t place = findAlarm(component, *removed); place < inner.size())
      component.removeComponent(place);
  for (const auto& alarm : item.alarmList()) {
    const bool isOwn = isOwnAlarm(item, *alarm);
    if (isOwn && !alarm->isChanged()) continue;
    const ical::Component valarm = alarm->component(anchor, item.text(ItemState::title).value_or(""));
    const std::size_t place = isOwn ? findAlarm(component, alarm->source()->component) : inner.size();
    if (place < inner.size())
      inner[place] = valarm;
    else
      component.add(valarm);
  }
}

void writeRules(ical::Component& component, const ItemState& item, const ZonedTime& start) {
  if (!item.areRulesChanged()) return;
  std::vector<ical::Line> before;
  for (const ical::Line* line : component.all("RRULE")) before.push_back(*line);
  component.remove("RRULE");
  for (const RecurrenceRule& rule : item.rules()) {
    const auto stored = std::ranges::find(item.fields().rules, rule, &StoredRule::rule);
    if (stored == item.fields().rules.end())
      component.add(ical::Line::make("RRULE", recurrence::formatRule(toRule(rule, start))));
    else if (const ical::Line* line = lineOf(*stored, before))
      component.add(*line);
  }
}

void writeTimes(ical::Component& component, const ZoneFinder& zones, const TimeForm& form, Date start,
                Date end) {
  const bool isDay = form.kind == TimeForm::Kind::day;
  const WallTime startWall = form.wallOf(start);
  const ical::Line* startLine = component.find("DTSTART");
  const auto oldStart = startLine == nullptr ? std::nullopt : readTime(*startLine, zones);
  // Outlook believes this rather than the dates.
  if (oldStart && oldStart->isDate != isDay && component.find(kOutlookAllDay) != nullptr) {
    component.set(ical::Line::make(kOutlookAllDay, isDay ? "TRUE" : "FALSE"));
    startLine = component.find("DTSTART");
  }
  // A start in an hour that the zone skips keeps its name, though the clock shows a later one.
  const bool isSameStart =
      oldStart && (oldStart->wall == startWall || form.instantOf(oldStart->wall) == start);
  if (!isSameStart || !isAlike(formOf(*startLine, zones), form))
    setValue(component, form.line("DTSTART", startWall));

  const WallTime endWall = isDay ? WallTime(floor<days>(form.wallOf(end)) + days(1)) : form.wallOf(end);
  const std::optional<ZonedTime> oldEnd = readEnd(component, zones);
  if (!oldEnd && endWall == (isDay ? startWall + days(1) : startWall)) return;  // as it is without an end
  const bool keepsForm = oldEnd && oldEnd->isDate == isDay;
  if (keepsForm && instantOf(momentOf(*oldEnd), *form.zone) == form.instantOf(endWall)) return;
  const ical::Line* endLine = component.find("DTEND");
  const TimeForm endForm = keepsForm && endLine != nullptr ? formOf(*endLine, zones) : form;
  if (!isDay) return writeEnd(component, endForm, start, end);
  component.remove("DURATION");
  setValue(component, endForm.line("DTEND", endWall));
}

void writeEnd(ical::Component& component, const TimeForm& form, Date start, Date end) {
  const WallTime wall = form.wallOf(end);
  if (form.instantOf(wall) == end) {
    component.remove("DURATION");
    setValue(component, form.line("DTEND", wall));
  } else {
    component.remove("DTEND");
    const recurrence::Duration length{.seconds = (end - start).count()};
    setValue(component, ical::Line::make("DURATION", ical::formatDuration(length)));
  }
}

}  // namespace ek::embedded
