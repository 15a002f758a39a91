// Calendars and what they hold, as EventKit shows them. Each object is a thing with identity that is changed
// in place, a snapshot of the store's at the time it was opened; changes reach the store when it is saved.
// Texts are UTF-8; "no value" is an empty optional. One that is returned by reference stays good until its
// object is changed or asked for it again. Used from one thread. Getters do not fail, but throw ek::Exception
// where a store that opened can no longer be read.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "eventkit/types.h"

namespace ek {

class Calendar {
 public:
  virtual ~Calendar() = default;
  virtual std::string calendarIdentifier() const = 0;  // exists from creation
  virtual const std::optional<std::string>& title() const = 0;
  virtual void setTitle(std::optional<std::string> title) = 0;
  virtual CalendarType type() const = 0;
  virtual bool isImmutable() const = 0;  // its own properties; items may still be added
  virtual bool isSubscribed() const = 0;
  virtual bool allowsContentModifications() const = 0;
  // Nothing also where the colour cannot be converted to calibrated RGB.
  virtual std::optional<Color> color() const = 0;
  virtual void setColor(const Color& color) = 0;
  // Settable until the first save; a different one later is refused at the save.
  virtual std::optional<Source> source() const = 0;
  virtual void setSource(std::optional<Source> source) = 0;
};

class Alarm {
 public:
  virtual ~Alarm() = default;
  // A relative offset (seconds from the item's start) and an absolute date exclude each other: setting one
  // clears the other.
  virtual double relativeOffset() const = 0;
  virtual void setRelativeOffset(double seconds) = 0;
  virtual std::optional<Date> absoluteDate() const = 0;
  virtual void setAbsoluteDate(std::optional<Date> date) = 0;
  // Follows the last of the three below that was set; each clears the other two. Display when none is.
  virtual AlarmType type() const = 0;
  virtual std::optional<std::string> emailAddress() const = 0;
  virtual void setEmailAddress(std::optional<std::string> address) = 0;
  virtual std::optional<std::string> soundName() const = 0;
  virtual void setSoundName(std::optional<std::string> name) = 0;
  virtual std::optional<std::string> url() const = 0;
  virtual void setUrl(std::optional<std::string> url) = 0;
};

// What events and reminders have in common.
class CalendarItem {
 public:
  virtual ~CalendarItem() = default;
  virtual std::shared_ptr<Calendar> calendar() const = 0;  // null when none is set
  virtual void setCalendar(std::shared_ptr<Calendar> calendar) = 0;
  virtual std::string calendarItemIdentifier() const = 0;  // exists from creation
  virtual std::optional<std::string> calendarItemExternalIdentifier() const = 0;
  virtual const std::optional<std::string>& title() const = 0;
  virtual void setTitle(std::optional<std::string> title) = 0;
  virtual const std::optional<std::string>& location() const = 0;
  virtual void setLocation(std::optional<std::string> location) = 0;
  virtual const std::optional<std::string>& notes() const = 0;
  virtual void setNotes(std::optional<std::string> notes) = 0;
  virtual const std::optional<std::string>& url() const = 0;  // as absolute text
  // A text that is no valid URL clears it.
  virtual void setUrl(std::optional<std::string> url) = 0;
  virtual std::optional<Date> lastModifiedDate() const = 0;
  virtual std::optional<Date> creationDate() const = 0;
  // As the system abbreviates the item's zone today; nothing for a floating item.
  virtual std::optional<std::string> timeZoneAbbreviation() const = 0;
  // In order of addition. The item's own alarms: changing one changes the item.
  virtual std::vector<std::shared_ptr<Alarm>> alarms() const = 0;
  virtual void addAlarm(std::shared_ptr<Alarm> alarm) = 0;
  virtual void removeAlarm(const std::shared_ptr<Alarm>& alarm) = 0;  // no effect when it is not there
  virtual std::vector<Participant> attendees() const = 0;
  virtual std::vector<RecurrenceRule> recurrenceRules() const = 0;
  virtual void addRecurrenceRule(const RecurrenceRule& rule) = 0;
  virtual void removeRecurrenceRule(const RecurrenceRule& rule) = 0;
  virtual void setRecurrenceRules(std::vector<RecurrenceRule> rules) = 0;
};

// One event, or one occurrence of a repeating event.
class Event : public CalendarItem {
 public:
  virtual std::optional<std::string> eventIdentifier() const = 0;  // nothing before the first save
  virtual std::optional<Date> startDate() const = 0;
  virtual void setStartDate(std::optional<Date> date) = 0;
  // Of an all-day event: the last second of its last day.
  virtual std::optional<Date> endDate() const = 0;
  virtual void setEndDate(std::optional<Date> date) = 0;
  virtual bool isAllDay() const = 0;
  virtual void setAllDay(bool allDay) = 0;
  virtual bool isDetached() const = 0;
  // Where the occurrence would have been; stays when it is moved. Members of a series only.
  virtual std::optional<Date> occurrenceDate() const = 0;
};

class Reminder : public CalendarItem {
 public:
  virtual std::optional<DateComponents> dueDateComponents() const = 0;
  virtual void setDueDateComponents(std::optional<DateComponents> due) = 0;
  // A completion date makes the reminder completed, none makes it not; completing sets the date to now.
  virtual bool isCompleted() const = 0;
  virtual void setCompleted(bool completed) = 0;
  virtual std::optional<Date> completionDate() const = 0;
  virtual void setCompletionDate(std::optional<Date> date) = 0;
  virtual int priority() const = 0;
  virtual void setPriority(int priority) = 0;
};

// A lookup by identifier may hand over an event where a reminder is wanted. What only reminders have cannot
// be asked of it: throws ek::Exception.
Reminder& asReminder(CalendarItem& item);

}  // namespace ek
