// Calendars and items in memory, their values open to the tests.
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "eventkit/items.h"

namespace zuno::test {

using ek::Date;
using OptionalText = std::optional<std::string>;

class FakeCalendar : public ek::Calendar {
 public:
  std::string calendarIdentifier() const override { return identifier; }
  const OptionalText& title() const override {
    if (broken) throw ek::Exception("the calendar cannot be read");
    return name;
  }
  void setTitle(OptionalText title) override { name = std::move(title); }
  ek::CalendarType type() const override { return kind; }
  bool isImmutable() const override { return immutable; }
  bool isSubscribed() const override { return subscribed; }
  bool allowsContentModifications() const override { return modifiable; }
  std::optional<ek::Color> color() const override { return paint; }
  void setColor(const ek::Color& color) override { paint = color; }
  std::optional<ek::Source> source() const override { return account; }
  void setSource(std::optional<ek::Source> source) override { account = std::move(source); }

  std::string identifier;
  OptionalText name;
  ek::CalendarType kind = ek::CalendarType::local;
  bool immutable = false;
  bool subscribed = false;
  bool modifiable = true;
  std::optional<ek::Color> paint;
  std::optional<ek::Source> account;
  bool broken = false;  // reading its title raises
};

class FakeAlarm : public ek::Alarm {
 public:
  double relativeOffset() const override { return offset; }
  void setRelativeOffset(double seconds) override {
    offset = seconds;
    date.reset();
  }
  std::optional<Date> absoluteDate() const override { return date; }
  void setAbsoluteDate(std::optional<Date> newDate) override {
    date = newDate;
    offset = 0;
  }
  ek::AlarmType type() const override {
    if (address) return ek::AlarmType::email;
    if (sound) return ek::AlarmType::audio;
    return procedure ? ek::AlarmType::procedure : ek::AlarmType::display;
  }
  OptionalText emailAddress() const override { return address; }
  void setEmailAddress(OptionalText newAddress) override { act(std::move(newAddress), {}, {}); }
  OptionalText soundName() const override { return sound; }
  void setSoundName(OptionalText name) override { act({}, std::move(name), {}); }
  OptionalText url() const override { return procedure; }
  void setUrl(OptionalText newUrl) override { act({}, {}, std::move(newUrl)); }

  double offset = 0;
  std::optional<Date> date;
  OptionalText address;
  OptionalText sound;
  OptionalText procedure;

 private:
  void act(OptionalText newAddress, OptionalText newSound, OptionalText newUrl) {
    address = std::move(newAddress);
    sound = std::move(newSound);
    procedure = std::move(newUrl);
  }
};

template <class Interface>
class FakeItem : public Interface {
 public:
  std::shared_ptr<ek::Calendar> calendar() const override { return home; }
  void setCalendar(std::shared_ptr<ek::Calendar> calendar) override { home = std::move(calendar); }
  std::string calendarItemIdentifier() const override { return identifier; }
  OptionalText calendarItemExternalIdentifier() const override { return externalIdentifier; }
  const OptionalText& title() const override { return name; }
  void setTitle(OptionalText title) override {
    if (broken) throw ek::Exception("the item cannot be changed");
    name = std::move(title);
  }
  const OptionalText& location() const override { return place; }
  void setLocation(OptionalText location) override { place = std::move(location); }
  const OptionalText& notes() const override { return remarks; }
  void setNotes(OptionalText notes) override { remarks = std::move(notes); }
  const OptionalText& url() const override { return link; }
  void setUrl(OptionalText url) override { link = std::move(url); }
  std::optional<Date> lastModifiedDate() const override { return modified; }
  std::optional<Date> creationDate() const override { return created; }
  OptionalText timeZoneAbbreviation() const override { return zone; }
  std::vector<std::shared_ptr<ek::Alarm>> alarms() const override { return alarmList; }
  void addAlarm(std::shared_ptr<ek::Alarm> alarm) override {
    if (takesAlarms) alarmList.push_back(std::move(alarm));
  }
  void removeAlarm(const std::shared_ptr<ek::Alarm>& alarm) override {
    if (takesAlarms) std::erase(alarmList, alarm);
  }
  std::vector<ek::Participant> attendees() const override { return people; }
  std::vector<ek::RecurrenceRule> recurrenceRules() const override { return rules; }
  void addRecurrenceRule(const ek::RecurrenceRule& rule) override { rules.push_back(rule); }
  void removeRecurrenceRule(const ek::RecurrenceRule& rule) override { std::erase(rules, rule); }
  void setRecurrenceRules(std::vector<ek::RecurrenceRule> newRules) override { rules = std::move(newRules); }

  std::shared_ptr<ek::Calendar> home;
  std::string identifier;
  OptionalText externalIdentifier;
  OptionalText name;
  OptionalText place;
  OptionalText remarks;
  OptionalText link;
  OptionalText zone;
  std::optional<Date> modified;
  std::optional<Date> created;
  std::vector<std::shared_ptr<ek::Alarm>> alarmList;
  std::vector<ek::Participant> people;
  std::vector<ek::RecurrenceRule> rules;
  bool takesAlarms = true;  // else adding and removing alarms has no effect
  bool broken = false;      // setting its title raises
};

class FakeEvent : public FakeItem<ek::Event> {
 public:
  OptionalText eventIdentifier() const override { return eventId; }
  std::optional<Date> startDate() const override { return start; }
  void setStartDate(std::optional<Date> date) override { start = date; }
  std::optional<Date> endDate() const override { return end; }
  void setEndDate(std::optional<Date> date) override { end = date; }
  bool isAllDay() const override { return allDay; }
  void setAllDay(bool whole) override { allDay = whole; }
  bool isDetached() const override { return detached; }
  std::optional<Date> occurrenceDate() const override { return occurrence; }

  OptionalText eventId;
  std::optional<Date> start;
  std::optional<Date> end;
  bool allDay = false;
  bool detached = false;
  std::optional<Date> occurrence;
};

class FakeReminder : public FakeItem<ek::Reminder> {
 public:
  std::optional<ek::DateComponents> dueDateComponents() const override { return due; }
  void setDueDateComponents(std::optional<ek::DateComponents> components) override {
    due = std::move(components);
  }
  bool isCompleted() const override { return completed; }
  void setCompleted(bool isDone) override { completed = isDone; }
  std::optional<Date> completionDate() const override { return completion; }
  void setCompletionDate(std::optional<Date> date) override {
    completion = date;
    completed = date.has_value();
  }
  int priority() const override { return rank; }
  void setPriority(int priority) override { rank = priority; }

  std::optional<ek::DateComponents> due;
  bool completed = false;
  std::optional<Date> completion;
  int rank = 0;
};

}  // namespace zuno::test
