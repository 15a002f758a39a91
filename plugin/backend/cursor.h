// Where a script stands: the items that are open and the queries of the last fetches.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "eventkit/items.h"
#include "eventkit/types.h"

namespace zuno {

// At most one item of each kind is open. Answers of queries are never kept: only the query is, and it is run
// again for every count and every open by position.
struct Cursor {
  std::optional<std::string> lastErrorString;  // details of the last failure that came with a text
  std::shared_ptr<ek::Calendar> m_ekCalendar;  // a calendar or a reminder list
  std::shared_ptr<ek::Event> m_ekEvent;
  std::shared_ptr<ek::CalendarItem> m_ekReminder;  // an event when it was opened by an event's identifier
  std::shared_ptr<ek::Alarm> m_ekAlarm;
  std::optional<ek::Participant> m_ekParticipant;
  std::optional<ek::RecurrenceRule> m_ekRecurrenceRule;  // held from the first read of it
  std::optional<ek::RecurrenceEnd> m_ekRecurrenceEnd;
  std::shared_ptr<const ek::Predicate> m_ekReminderPredicate;
  std::shared_ptr<const ek::Predicate> m_ekEventPredicate;
};

}  // namespace zuno
