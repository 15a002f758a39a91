// The one object through which scripts reach calendars and reminders. It keeps what is open (cursor.h) and
// does all work against the calendar store.
//
// Unless said otherwise an operation gives 0, or -1 with a number of the catalogue in g_llasterror; a getter
// gives no value then. Positions count from 1. Keywords match in any case. An exception of the store's is
// caught (9999, its reason in lastErrorString) only where an operation's outcome after it is settled; from
// the others it leaves, and the function frame does the same with it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "eventkit/event_store.h"
#include "plugin/backend/cursor.h"
#include "plugin/backend/keywords.h"
#include "plugin/backend/value.h"
#include "plugin/shell/error_catalogue.h"

namespace zuno {

class iCalEKFunctions : private Cursor {
 public:
  // The single instance, made at the first call and never destroyed.
  static iCalEKFunctions* sharedICalFunctions();
  // The new instance at the first call; null ever after, so that there can be no second one.
  static iCalEKFunctions* allocWithZone();
  // The system colour of that name; nothing for another name.
  static std::optional<ek::Color> colorFromString(TextArgument name);

  // Puts another session's cursor in place of this one, and hands this one back.
  void exchangeCursor(Cursor& other);
  // 9999, with the reason in lastErrorString. Gives -1.
  int failRaised(const std::string& reason);

  // State.
  int resetLastErrorString();
  std::optional<std::string> getLastErrorString() const { return lastErrorString; }
  void releaseItems();

  // Lookups. The first gives nothing, with 9013, when a title is unknown, and nothing without an error for
  // an unknown type; without names, the open calendar or all of the type.
  std::optional<ek::Calendars> calendarArrayFromString(TextArgument names, TextArgument type);
  std::shared_ptr<ek::Calendar> getCalendarWithTitle(const std::string& title);
  std::optional<ek::Calendars> getCalendars() { return std::nullopt; }

  // Fetching. uid and modificationDate are not used.
  int fetchEventsWithStartDate(Date start, Date end, TextArgument uid, TextArgument calendars);
  int fetchEventsWithModificationDate(std::optional<Date> modificationDate, Date startDate, Date endDate,
                                      TextArgument uid, TextArgument calendars);
  int fetchReminders(TextArgument calendars, TextArgument status, std::optional<Date> date);
  int fetchRemindersWithCalendars(TextArgument calendars);
  int fetchRemindersUncompleted(TextArgument calendars);
  int fetchRemindersUncompleted(std::optional<Date> dueUpTo, TextArgument calendars);
  int fetchRemindersCompletedSince(std::optional<Date> since, TextArgument calendars);

  // Opening. occurrence is not used: a repeating event opens at the occurrence that the store picks.
  int openEventWithUID(const std::string& uid, std::optional<Date> occurrence);
  int openEventAt(std::int32_t position);
  int openReminderWithUID(const std::string& uid);
  int openReminderAt(std::int32_t position);
  int openCalendarAt(std::int32_t position);
  int openReminderListAt(std::int32_t position);
  int openCalendarWithUID(const std::string& uid);
  int openCalendarWithTitle(const std::string& title);
  int openAlarmAt(std::int32_t position);
  int openParticipantAt(std::int32_t position);

  // The count, or -1.
  int getObjectCount(const Keyword& type);

  // Attribute reading, always of the open item; at and uid are not used.
  Value getCalendarAttribute(const Keyword& keyword, std::int32_t at, TextArgument uid);
  Value getEventAttribute(const Keyword& keyword, std::int32_t at, TextArgument uid);
  Value getReminderAttribute(const Keyword& keyword, std::int32_t at, TextArgument uid);
  Value getCalendarItemAttribute(const Keyword& keyword, const ek::CalendarItem& item);
  Value getAlarmAttribute(const Keyword& keyword, std::int32_t at, TextArgument uid);
  Value getParticipantAttribute(const Keyword& keyword, std::int32_t at, TextArgument uid);
  Value getEventParticipantAttribute(const Keyword& keyword, std::int32_t atIndex);
  Value getEventRecurrenceRuleAttribute(const Keyword& keyword, const Keyword& recurrenceEnd);

  // Creating and setting: in memory, until the item is saved. setCalendarItemProp wants its keyword
  // lower-cased; for an unknown one it gives the keyword's ordering against "url".
  int newItem(TextArgument type);
  int setEventProp(TextArgument keyword, const Value& value);
  int setReminderProp(TextArgument keyword, const Value& value);
  int setCalendarProp(TextArgument keyword, const Value& value);
  int setCalendarItemProp(TextArgument keyword, const Value& value, ek::CalendarItem& item);

  // Saving and removing commit at once. After an exception of the store's both give 0, with 9999 set.
  // occurrence is not used.
  int saveItem(TextArgument type, TextArgument span);
  int removeItem(TextArgument type, TextArgument uid, std::optional<Date> occurrence, TextArgument span);

  // Alarms of the open event or reminder. relTrigger: seconds from its start, 0 for none.
  int addAlarm(TextArgument type, std::optional<Date> absTrigger, TextArgument action, TextArgument eaddr,
               std::int32_t relTrigger, TextArgument sound);
  int setAlarmProp(TextArgument keyword, const Value& value);
  // Position -1 removes all, and then reports 9027 all the same: removeAllAlarmsFrom is the one to use.
  int removeAlarmFrom(TextArgument type, std::int32_t at);
  int removeAllAlarmsFrom(TextArgument type);

  // The open event's recurrence. dow is not used.
  int addRecurrence(TextArgument type, std::int32_t interval, std::optional<std::vector<ek::DayOfWeek>> dotw,
                    std::optional<std::vector<int>> dotm, int dow,
                    std::optional<std::vector<int>> monthsOfTheYear, std::optional<Date> endWithDate,
                    std::int32_t endWithCount);
  int removeRecurrence();

 private:
  iCalEKFunctions() = default;
  void init();

  // Records the number; gives -1.
  static int fail(ErrorNumber number);
  static Value noValue(ErrorNumber number);

  using PredicatePointer = std::shared_ptr<const ek::Predicate>;
  // Sets the query of reminders; null is a query that could not be made.
  int keepReminderPredicate(PredicatePointer predicate);
  std::shared_ptr<const ek::ReminderList> reminders();
  // The open item that the keyword names; null with an error set.
  ek::CalendarItem* alarmOwner(TextArgument type);
  int openListedCalendar(ek::EntityType kind, std::int32_t position, ErrorNumber whenGone);
  void forgetParts();
  std::shared_ptr<ek::Calendar> calendarTitled(const std::string& title);
  int countReminders();
  int countAlarms();
  Value recurrenceEndAttribute(const Keyword& keyword);

  int setColor(TextArgument text);
  void setPriority(const Value& value);
  int moveTo(const std::shared_ptr<ek::Calendar>& calendar, ek::CalendarItem& item);
  int unknownItemProp(TextArgument keyword);
  int setAlarmAction(TextArgument word);

  bool saveWithSource(std::optional<ek::Source> source);
  int saveCalendar();
  int saveReminderList();
  int saveReminder();
  int saveEvent(ek::Span span);
  int removeCalendar(const std::string& uid);
  int removeReminder(const std::string& uid);
  int removeEvent(const std::string& uid, std::optional<ek::Span> span);

  std::shared_ptr<ek::EventStore> m_ekEventStore;
  std::shared_ptr<ek::AddressBook> m_AddressBook;
};

}  // namespace zuno
