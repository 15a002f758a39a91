// What EventKit's events and reminders have in common.
#pragma once

#include "eventkit/items.h"
#include "eventkit/macos/native.h"

namespace ek::macos {

// `Interface` is Event or Reminder.
template <class Interface>
class EventKitItem : public Interface, public Native<EKCalendarItem> {
 public:
  using Native<EKCalendarItem>::Native;

  std::shared_ptr<Calendar> calendar() const override;
  void setCalendar(std::shared_ptr<Calendar> calendar) override;
  std::string calendarItemIdentifier() const override;
  std::optional<std::string> calendarItemExternalIdentifier() const override;
  const std::optional<std::string>& title() const override;
  void setTitle(std::optional<std::string> title) override;
  const std::optional<std::string>& location() const override;
  void setLocation(std::optional<std::string> location) override;
  const std::optional<std::string>& notes() const override;
  void setNotes(std::optional<std::string> notes) override;
  const std::optional<std::string>& url() const override;
  void setUrl(std::optional<std::string> url) override;
  std::optional<Date> lastModifiedDate() const override;
  std::optional<Date> creationDate() const override;
  std::optional<std::string> timeZoneAbbreviation() const override;
  std::vector<std::shared_ptr<Alarm>> alarms() const override;
  void addAlarm(std::shared_ptr<Alarm> alarm) override;
  void removeAlarm(const std::shared_ptr<Alarm>& alarm) override;
  std::vector<Participant> attendees() const override;
  std::vector<RecurrenceRule> recurrenceRules() const override;
  void addRecurrenceRule(const RecurrenceRule& rule) override;
  void removeRecurrenceRule(const RecurrenceRule& rule) override;
  void setRecurrenceRules(std::vector<RecurrenceRule> rules) override;

 private:
  // As they were last asked for.
  mutable std::optional<std::string> title_, location_, notes_, url_;
};

extern template class EventKitItem<Event>;
extern template class EventKitItem<Reminder>;

// An event or a reminder, as the object is one; null for nil and for anything else.
std::shared_ptr<CalendarItem> itemOf(const Ref<EKEventStore>& store, EKCalendarItem* item);

}  // namespace ek::macos
