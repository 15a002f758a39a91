// Saves and removes reminders. Each call is one transaction.
#pragma once

#include <optional>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/store/records.h"
#include "eventkit/embedded/store/reminder.h"
#include "eventkit/types.h"

namespace ek::embedded {

class ReminderWriter {
 public:
  ReminderWriter(Records& records, Database& database)
      : records_(records), database_(database), items_(records.items()), now_(foundation::now()) {}

  // As ek::EventStore has them.
  bool save(EmbeddedReminder& reminder, std::optional<Error>& error);
  bool remove(EmbeddedReminder& reminder, std::optional<Error>& error);

 private:
  std::optional<ErrorCode> faultOf(const EmbeddedReminder& reminder, const CalendarRow* calendar);
  void edit(const EmbeddedReminder& reminder, ical::Component& task, const ZoneFinder& zones, RowId calendar);
  void writeDue(const EmbeddedReminder& reminder, ical::Component& task, const ZoneFinder& zones,
                RowId calendar);
  void writeCompletion(const EmbeddedReminder& reminder, ical::Component& task, const ZoneFinder& zones);

  Records& records_;
  Database& database_;
  ItemTable& items_;
  Date now_;
};

}  // namespace ek::embedded
