#include "tests/contract/store_contract.h"

#include <future>
#include <ostream>

namespace ek {

void PrintTo(ErrorCode code, std::ostream* out) { *out << "error code " << static_cast<int>(code); }

}  // namespace ek

namespace ek::contract {

void PrintTo(const StoreKind& kind, std::ostream* out) { *out << kind.name; }

std::string kindName(const testing::TestParamInfo<StoreKind>& info) { return info.param.name; }

Date utc(int year, unsigned month, unsigned day, int hour, int minute, int second) {
  return std::chrono::sys_days(std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day)) +
         hours(hour) + minutes(minute) + seconds(second);
}

RecurrenceRule daily(std::int64_t count) {
  return {.frequency = RecurrenceFrequency::daily, .end = RecurrenceEnd::withOccurrenceCount(count)};
}

std::vector<std::string> titlesOf(const EventList& events) {
  std::vector<std::string> titles;
  for (std::size_t i = 0; i < events.size(); ++i) titles.push_back(events.at(i)->title().value_or("(none)"));
  return titles;
}

std::vector<Date> startsOf(const EventList& events) {
  std::vector<Date> starts;
  for (std::size_t i = 0; i < events.size(); ++i) starts.push_back(events.at(i)->startDate().value());
  return starts;
}

StoreContract::StoreContract() : database_(GetParam().make()), store_(database_->open()) {
  calendar_ = store_->defaultCalendarForNewEvents();
  list_ = store_->defaultCalendarForNewReminders();
}

std::shared_ptr<Event> StoreContract::newEvent(const std::string& title, Date start, Date end) {
  auto event = store_->newEvent();
  event->setCalendar(calendar_);
  event->setTitle(title);
  event->setStartDate(start);
  event->setEndDate(end);
  return event;
}

std::shared_ptr<Reminder> StoreContract::newReminder(const std::string& title) {
  auto reminder = store_->newReminder();
  reminder->setCalendar(list_);
  reminder->setTitle(title);
  return reminder;
}

std::shared_ptr<Calendar> StoreContract::addCalendar(const std::string& title, EntityType type) {
  auto calendar = store_->newCalendar(type);
  calendar->setTitle(title);
  calendar->setSource(calendar_->source());
  std::optional<Error> error;
  EXPECT_TRUE(store_->saveCalendar(calendar, error)) << (error ? error->text : "");
  return calendar;
}

std::shared_ptr<Event> StoreContract::addEvent(const std::string& title, Date start, Date end) {
  auto event = newEvent(title, start, end);
  save(event);
  return event;
}

std::shared_ptr<Event> StoreContract::addSeries(const std::string& title, Date start,
                                                const RecurrenceRule& rule) {
  auto event = newEvent(title, start, start + hours(1));
  event->addRecurrenceRule(rule);
  save(event);
  return event;
}

void StoreContract::add(const std::shared_ptr<Reminder>& reminder) {
  std::optional<Error> error;
  EXPECT_TRUE(store_->saveReminder(reminder, error)) << (error ? error->text : "no reason");
}

void StoreContract::save(const std::shared_ptr<Event>& event, Span span) {
  std::optional<Error> error;
  EXPECT_TRUE(store_->saveEvent(event, span, error)) << (error ? error->text : "no reason");
}

bool StoreContract::remove(const std::shared_ptr<Event>& event, Span span) {
  std::optional<Error> error;
  return store_->removeEvent(event, span, error);
}

namespace {

std::optional<ErrorCode> codeOf(bool done, const std::optional<Error>& error) {
  EXPECT_FALSE(done && error) << "done, and refused as well";
  return error ? std::optional(error->code) : std::nullopt;
}

}  // namespace

std::optional<ErrorCode> StoreContract::refusal(const std::shared_ptr<Event>& event, Span span) {
  std::optional<Error> error;
  return codeOf(store_->saveEvent(event, span, error), error);
}

std::optional<ErrorCode> StoreContract::refusal(const std::shared_ptr<Reminder>& reminder) {
  std::optional<Error> error;
  return codeOf(store_->saveReminder(reminder, error), error);
}

std::optional<ErrorCode> StoreContract::refusal(const std::shared_ptr<Calendar>& calendar) {
  std::optional<Error> error;
  return codeOf(store_->saveCalendar(calendar, error), error);
}

std::shared_ptr<const EventList> StoreContract::eventsBetween(Date from, Date to,
                                                              const Calendars& calendars) {
  return store_->eventsMatchingPredicate(store_->predicateForEvents(from, to, calendars));
}

std::vector<std::string> StoreContract::titlesBetween(Date from, Date to) {
  return titlesOf(*eventsBetween(from, to));
}

std::vector<Date> StoreContract::startsBetween(Date from, Date to) {
  return startsOf(*eventsBetween(from, to));
}

std::shared_ptr<Event> StoreContract::occurrenceAt(Date date) {
  const auto found = eventsBetween(date, date + seconds(1));
  return found->size() == 1 ? found->at(0) : nullptr;
}

std::vector<std::string> StoreContract::reminderTitles(const std::shared_ptr<const Predicate>& predicate) {
  // Shared with the store, whose answer may come late, on a thread of its own.
  const auto answer = std::make_shared<std::promise<std::shared_ptr<const ReminderList>>>();
  auto delivered = answer->get_future();
  store_->fetchRemindersMatchingPredicate(predicate, [answer](std::shared_ptr<const ReminderList> found) {
    answer->set_value(std::move(found));
  });
  if (delivered.wait_for(seconds(20)) != std::future_status::ready) {
    ADD_FAILURE() << "the store never answered";
    return {};
  }
  std::vector<std::string> titles;
  const auto found = delivered.get();
  for (std::size_t i = 0; found && i < found->size(); ++i)
    titles.push_back(found->at(i)->title().value_or("(none)"));
  return titles;
}

std::shared_ptr<Event> StoreContract::reread(const std::shared_ptr<Event>& event) {
  return database_->open()->eventWithIdentifier(event->eventIdentifier().value_or(""));
}

std::shared_ptr<Reminder> StoreContract::reread(const std::shared_ptr<Reminder>& reminder) {
  return std::dynamic_pointer_cast<Reminder>(
      database_->open()->calendarItemWithIdentifier(reminder->calendarItemIdentifier()));
}

}  // namespace ek::contract
