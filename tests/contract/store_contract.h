// What every calendar store has to do, as one suite. A store joins with a StoreKind of its own:
//   INSTANTIATE_TEST_SUITE_P(Embedded, StoreContract, testing::Values(StoreKind{"embedded", make}),
//   kindName);
// and links zuno_store_contract, whose cases then run in its test program.
#pragma once

#include <chrono>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "eventkit/event_store.h"
#include "tests/contract/differences.h"
#include "tests/foundation/scoped_variable.h"

namespace ek::contract {

// One database, empty but for the two calendars that a store begins with; gone with this object.
class Database {
 public:
  virtual ~Database() = default;
  // A store over it; each call gives another one, which sees what the others saved.
  virtual std::shared_ptr<EventStore> open() = 0;
};

struct StoreKind {
  std::string name;  // as in the table of differences
  // Called with TZ set to the zone of the case.
  std::function<std::unique_ptr<Database>()> make;
};
void PrintTo(const StoreKind& kind, std::ostream* out);
std::string kindName(const testing::TestParamInfo<StoreKind>& info);

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

Date utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0);

class StoreContract : public testing::TestWithParam<StoreKind> {
 protected:
  StoreContract();

  bool differs(Topic topic) const { return contract::differs(GetParam().name, topic); }

  // Unsaved, in the default calendar.
  std::shared_ptr<Event> newEvent(const std::string& title, Date start, Date end);
  std::shared_ptr<Reminder> newReminder(const std::string& title);
  // Saved as a calendar of the default calendar's account.
  std::shared_ptr<Calendar> addCalendar(const std::string& title, EntityType type = EntityType::event);
  std::shared_ptr<Event> addEvent(const std::string& title, Date start, Date end);
  std::shared_ptr<Event> addEvent(const std::string& title, Date start) {
    return addEvent(title, start, start + hours(1));
  }
  std::shared_ptr<Event> addSeries(const std::string& title, Date start, const RecurrenceRule& rule);
  void add(const std::shared_ptr<Reminder>& reminder);
  void save(const std::shared_ptr<Event>& event, Span span = Span::thisEvent);
  bool remove(const std::shared_ptr<Event>& event, Span span);
  // The code of the refusal; nothing when the store saved, or refused without a reason.
  std::optional<ErrorCode> refusal(const std::shared_ptr<Event>& event, Span span = Span::thisEvent);
  std::optional<ErrorCode> refusal(const std::shared_ptr<Reminder>& reminder);
  std::optional<ErrorCode> refusal(const std::shared_ptr<Calendar>& calendar);

  std::shared_ptr<const EventList> eventsBetween(Date from, Date to) {
    return eventsBetween(from, to, {calendar_});
  }
  std::shared_ptr<const EventList> eventsBetween(Date from, Date to, const Calendars& calendars);
  std::vector<std::string> titlesBetween(Date from, Date to);
  std::vector<Date> startsBetween(Date from, Date to);
  std::shared_ptr<const EventList> eventsIn2024() { return eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1)); }
  std::vector<std::string> titlesIn2024() { return titlesBetween(utc(2024, 1, 1), utc(2025, 1, 1)); }
  std::vector<Date> startsIn2024() { return startsBetween(utc(2024, 1, 1), utc(2025, 1, 1)); }
  // The only event just then; null otherwise.
  std::shared_ptr<Event> occurrenceAt(Date date);
  std::vector<std::string> reminderTitles(const std::shared_ptr<const Predicate>& predicate);
  // As a store opened afterwards sees it.
  std::shared_ptr<Event> reread(const std::shared_ptr<Event>& event);
  std::shared_ptr<Reminder> reread(const std::shared_ptr<Reminder>& reminder);

  ScopedVariable localTime_{"TZ", "Europe/Berlin"};
  std::unique_ptr<Database> database_;
  std::shared_ptr<EventStore> store_;
  std::shared_ptr<Calendar> calendar_;
  std::shared_ptr<Calendar> list_;
};

std::vector<std::string> titlesOf(const EventList& events);
std::vector<Date> startsOf(const EventList& events);
RecurrenceRule daily(std::int64_t count);

}  // namespace ek::contract

namespace ek {
void PrintTo(ErrorCode code, std::ostream* out);
}  // namespace ek
