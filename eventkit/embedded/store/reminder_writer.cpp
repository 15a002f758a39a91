#include "eventkit/embedded/store/reminder_writer.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/recurrence/expansion.h"
#include "eventkit/embedded/store/item_edit.h"
#include "eventkit/embedded/store/refusals.h"
#include "eventkit/embedded/store/resource.h"
#include "eventkit/embedded/store/rule_text.h"
#include "eventkit/embedded/store/rules.h"

namespace ek::embedded {

namespace {

constexpr auto kWriting = Database::Transaction::Kind::writing;

TimeForm formOfDue(const DateComponents& due) {
  using Kind = TimeForm::Kind;
  if (due.isDateOnly) return dayForm();
  if (!due.zone) return {Kind::floating, {}, TimeZone::defaultZone()};
  if (due.zone->name() == "UTC") return {Kind::utc, {}, due.zone};
  return {Kind::zoned, due.zone->name().empty() ? due.zone->posixRule() : due.zone->name(), due.zone};
}

// A task starts before it is due, and both are days or both are times.
void fitStart(ical::Component& task, const ZoneFinder& zones, const TimeForm& form, WallTime due) {
  const ical::Line* line = task.find("DTSTART");
  const std::optional<ZonedTime> start = line == nullptr ? std::nullopt : readTime(*line, zones);
  const bool repeats = task.find("RRULE") != nullptr;
  if (!start && !repeats) return;
  const bool isDay = form.kind == TimeForm::Kind::day;
  const bool isEarly = start && instantOf(momentOf(*start), *form.zone) <= form.instantOf(due);
  if (isEarly && start->isDate == isDay) return;
  if (isEarly)
    setValue(task,
             form.line("DTSTART", isDay ? std::chrono::floor<std::chrono::days>(start->wall) : start->wall));
  else if (repeats)
    setValue(task, form.line("DTSTART", due));
  else
    task.remove("DTSTART");
}

bool isSameTime(const ZonedTime& a, const ZonedTime& b) {
  const auto zone = TimeZone::defaultZone();
  return a.isDate == b.isDate && instantOf(momentOf(a), *zone) == instantOf(momentOf(b), *zone);
}

// Many programs let a task start when it is due.
bool startsWhenDue(const ical::Component& task, const ZoneFinder& zones) {
  const ical::Line* line = task.find("DTSTART");
  const std::optional<ZonedTime> start = line == nullptr ? std::nullopt : readTime(*line, zones);
  const std::optional<ZonedTime> due = readEnd(task, zones);
  return start && due && isSameTime(*start, *due);
}

// Alarms count from the start, unless they say otherwise; in a task that has no start they have to. `before`:
// what they counted from so far.
void countFromDue(ical::Component& task, const AlarmAnchor& before) {
  if (task.find("DTSTART") != nullptr || task.find("DUE") == nullptr) return;
  for (ical::Component& alarm : task.components()) {
    const ical::Line* trigger = alarm.find("TRIGGER");
    const auto offset = trigger == nullptr ? std::nullopt : ical::parseDuration(trigger->value());
    if (!offset || equalsIgnoringCase(trigger->parameter("RELATED").value_or(""), "END")) continue;
    constexpr std::int64_t kDay = 86400;
    const std::int64_t shown = offset->days * kDay + offset->seconds + before.startShift;
    alarm.set(ical::Line::make("TRIGGER", ical::formatDuration({.seconds = shown}), {{"RELATED", "END"}}));
  }
}

void shiftTime(ical::Component& task, std::string_view name, std::chrono::seconds shift,
               const ZoneFinder& zones) {
  const ical::Line* line = task.find(name);
  const std::optional<ZonedTime> time = line == nullptr ? std::nullopt : readTime(*line, zones);
  if (time) task.set(line->withValue(formOf(*line, zones).value(time->wall + shift)));
}

// Alarms that ring at a date do so for the next of a series as they did for this one.
void shiftAlarmDates(ical::Component& task, const TimeForm& form, std::chrono::seconds shift,
                     const ZoneFinder& zones) {
  for (ical::Component& alarm : task.components()) {
    const std::optional<Date> date = readInstant(alarm, "TRIGGER", zones);
    if (!date) continue;
    const Date moved = form.instantOf(form.zone->wallTimeOf(*date) + shift);
    alarm.set(alarm.find("TRIGGER")->withValue(utcLine("TRIGGER", moved).value()));
  }
}

// Makes a repeating task the next one of its series; false when this was the last.
bool advance(ical::Component& task, const ZoneFinder& zones) {
  const ical::Line* ruleLine = task.find("RRULE");
  const ical::Line* anchor = task.find("DTSTART") != nullptr ? task.find("DTSTART") : task.find("DUE");
  const auto rule = ruleLine == nullptr ? std::nullopt : recurrence::parseRule(ruleLine->value());
  const auto start = anchor == nullptr ? std::nullopt : readTime(*anchor, zones);
  if (!rule || !start) return false;

  recurrence::Expansion expansion(*rule, start->wall, start->isDate);
  expansion.seek(start->wall + std::chrono::seconds(1));
  const std::optional<WallTime> next = expansion.next();
  if (!next || (rule->count && *rule->count < 2)) return false;
  const Date nextInstant = formOf(*anchor, zones).instantOf(*next);
  if (rule->until && nextInstant > lastInstantOf(*rule->until, *start)) return false;

  if (rule->count) task.set(ruleLine->withValue(ruleWithCount(ruleLine->value(), *rule->count - 1)));
  const auto shift = *next - start->wall;
  const TimeForm form = formOf(*anchor, zones);
  shiftTime(task, "DTSTART", shift, zones);
  shiftTime(task, "DUE", shift, zones);
  shiftAlarmDates(task, form, shift, zones);
  return true;
}

}  // namespace

bool ReminderWriter::save(EmbeddedReminder& reminder, std::optional<Error>& error) {
  if (!reminder.isChanged()) return true;
  Database::Transaction writing(database_, kWriting);
  const auto owner = reminder.owner();
  const CalendarRow* calendar =
      owner ? records_.calendars().findByIdentifier(owner->calendarIdentifier()) : nullptr;
  if (const auto fault = faultOf(reminder, calendar)) return refuse(error, *fault);
  const RowId home = calendar->id;

  std::optional<ItemRow> row;
  if (!reminder.isNew()) {
    row = items_.findByIdentifier(reminder.identifier());
    if (!row) row = items_.findInCalendar(home, reminder.uid());
  }
  if (row && row->calendar != home && items_.findInCalendar(home, row->uid))
    return refuse(error, ErrorCode::internalFailure);
  RowId id = row ? row->id : 0;
  const auto document = row ? records_.document(std::move(*row)) : reminder.document();
  const ZoneFinder zones = document ? document->zones() : items_.zoneFinder(home);
  std::vector<ical::Component> components =
      document ? document->components() : std::vector{newComponent("VTODO", reminder.uid(), now_)};
  ical::Component& task = components[masterOf(components)];
  edit(reminder, task, zones, home);

  const Resource resource(std::move(components), zones);
  const ItemIndex index = resource.index();
  if (id == 0)
    id = items_.insert(home, reminder.identifier(), resource.text(), index);
  else
    items_.replace(id, home, resource.text(), index);
  writing.commit();
  if (const auto stored = records_.document(id)) reminder.becomeStored(stored);
  return true;
}

bool ReminderWriter::remove(EmbeddedReminder& reminder, std::optional<Error>& error) {
  if (reminder.isNew()) return true;
  Database::Transaction writing(database_, kWriting);
  const std::optional<ItemRow> row = items_.findByIdentifier(reminder.identifier());
  if (!row) return true;
  const CalendarRow* calendar = records_.calendars().find(row->calendar);
  if (calendar != nullptr && !calendar->allowsModification) return refuse(error, ErrorCode::calendarReadOnly);
  items_.erase(row->id);
  writing.commit();
  reminder.becomeRemoved();
  return true;
}

std::optional<ErrorCode> ReminderWriter::faultOf(const EmbeddedReminder& reminder,
                                                 const CalendarRow* calendar) {
  constexpr int kLowestPriority = 9;
  if (calendar == nullptr) return ErrorCode::noCalendar;
  if (!calendar->allowsModification) return ErrorCode::calendarReadOnly;
  if (calendar->kind != EntityType::reminder) return ErrorCode::calendarDoesNotAllowReminders;
  if (!reminder.isNew() && reminder.isOwnerChanged()) {
    const CalendarRow* old = records_.calendars().find(reminder.document()->row().calendar);
    if (old != nullptr && !old->allowsModification) return ErrorCode::calendarReadOnly;
  }
  if (reminder.isPriorityChanged() && (reminder.priority() < 0 || reminder.priority() > kLowestPriority))
    return ErrorCode::priorityIsInvalid;
  const auto sendsOrOpens = [](const auto& alarm) {
    return alarm->isChanged() && (alarm->type() == AlarmType::email || alarm->type() == AlarmType::procedure);
  };
  if (std::ranges::any_of(reminder.alarmList(), sendsOrOpens))
    return ErrorCode::reminderAlarmContainsEmailOrUrl;
  if (!reminder.rules().empty() && !reminder.dueDateComponents())
    return ErrorCode::recurringReminderRequiresDueDate;
  return std::nullopt;
}

void ReminderWriter::edit(const EmbeddedReminder& reminder, ical::Component& task, const ZoneFinder& zones,
                          RowId calendar) {
  writeTexts(task, reminder);
  if (reminder.isPriorityChanged()) {
    if (reminder.priority() == 0)
      task.remove("PRIORITY");
    else
      setValue(task, ical::Line::make("PRIORITY", std::to_string(reminder.priority())));
  }
  if (reminder.areRulesChanged()) writeRules(task, reminder, readEnd(task, zones).value_or(ZonedTime{}));
  const AlarmAnchor anchorBefore = anchorOf(task, zones);
  if (reminder.isDueChanged() || reminder.areRulesChanged()) writeDue(reminder, task, zones, calendar);
  writeAlarms(task, reminder, anchorOf(task, zones));
  if (reminder.isDueChanged()) countFromDue(task, anchorBefore);
  if (reminder.isCompletionChanged()) writeCompletion(reminder, task, zones);
  if (!reminder.isNew())
    stamp(task, now_,
          reminder.isDueChanged() || reminder.areRulesChanged() || reminder.isCompletionChanged());
}

void ReminderWriter::writeDue(const EmbeddedReminder& reminder, ical::Component& task,
                              const ZoneFinder& zones, RowId calendar) {
  const std::optional<DateComponents> due = reminder.dueDateComponents();
  const bool movesStart = startsWhenDue(task, zones);
  task.remove("DURATION");
  if (!due) {
    task.remove("DUE");
    return;
  }
  const TimeForm form = formOfDue(*due);
  keepZone(items_, calendar, form);
  setValue(task, form.line("DUE", due->wall));
  if (movesStart)
    setValue(task, form.line("DTSTART", due->wall));
  else
    fitStart(task, zones, form, due->wall);
}

void ReminderWriter::writeCompletion(const EmbeddedReminder& reminder, ical::Component& task,
                                     const ZoneFinder& zones) {
  const Completion completion = reminder.completion();
  // Of a repeating reminder the next one takes the place of the one that is done.
  if (completion.isCompleted && !advance(task, zones)) {
    setValue(task, ical::Line::make("STATUS", "COMPLETED"));
    setValue(task, utcLine("COMPLETED", completion.date.value_or(now_)));
    setValue(task, ical::Line::make("PERCENT-COMPLETE", "100"));
  } else if (!completion.isCompleted) {
    task.remove("COMPLETED");
    task.remove("PERCENT-COMPLETE");
    setValue(task, ical::Line::make("STATUS", "NEEDS-ACTION"));
  }
}

}  // namespace ek::embedded
