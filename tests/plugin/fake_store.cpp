#include "tests/plugin/fake_store.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace zuno::test {

namespace {

template <class Item>
class FakeList : public ek::List<Item> {
 public:
  explicit FakeList(bool givesNull) : givesNull_(givesNull) {}
  std::size_t size() const override { return items.size(); }
  std::shared_ptr<Item> at(std::size_t index) const override {
    return givesNull_ ? nullptr : items.at(index);
  }

  std::vector<std::shared_ptr<Item>> items;

 private:
  bool givesNull_;
};

template <class Item>
std::shared_ptr<Item> identified(const std::vector<std::shared_ptr<Item>>& items,
                                 const std::string& identifier) {
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const auto& item) { return item->identifier == identifier; });
  return found == items.end() ? nullptr : *found;
}

bool covers(const ek::Calendars& calendars, const std::shared_ptr<ek::Calendar>& home) {
  return std::find(calendars.begin(), calendars.end(), home) != calendars.end();
}

bool wants(const FakePredicate& predicate, const FakeReminder& reminder) {
  switch (predicate.kind) {
    case FakePredicate::Kind::incomplete:
      return !reminder.completed;
    case FakePredicate::Kind::completed:
      return reminder.completed;
    default:
      return true;
  }
}

const FakePredicate& understood(const std::shared_ptr<const ek::Predicate>& predicate) {
  if (!predicate) throw ek::Exception("there is no query");
  return dynamic_cast<const FakePredicate&>(*predicate);
}

}  // namespace

FakeStore& FakeStore::shared() {
  static FakeStore store;
  return store;
}

void FakeStore::reset() {
  for (std::thread& thread : answering_) thread.join();
  answering_.clear();
  calendars_.clear();
  lists_.clear();
  events_.clear();
  reminders_.clear();
  usesUntilRaise_ = 0;
  refuses_ = givesNull = answersLate = answersNoList = false;
  refusal_.reset();
  lastPredicate.reset();
  lastSpan.reset();
  saves = 0;
}

std::shared_ptr<FakeCalendar> FakeStore::addCalendar(const std::string& title, ek::EntityType kind) {
  auto calendar = std::make_shared<FakeCalendar>();
  calendar->identifier = newIdentifier("CALENDAR");
  calendar->name = title;
  calendar->account = ek::Source{.identifier = "SOURCE", .title = "Here"};
  (kind == ek::EntityType::event ? calendars_ : lists_).push_back(calendar);
  return calendar;
}

std::shared_ptr<FakeEvent> FakeStore::addEvent(const std::string& title,
                                               const std::shared_ptr<FakeCalendar>& calendar) {
  auto event = std::make_shared<FakeEvent>();
  event->identifier = newIdentifier("EVENT");
  event->eventId = event->identifier;
  event->name = title;
  event->home = calendar;
  events_.push_back(event);
  return event;
}

std::shared_ptr<FakeReminder> FakeStore::addReminder(const std::string& title,
                                                     const std::shared_ptr<FakeCalendar>& list) {
  auto reminder = std::make_shared<FakeReminder>();
  reminder->identifier = newIdentifier("REMINDER");
  reminder->name = title;
  reminder->home = list;
  reminders_.push_back(reminder);
  return reminder;
}

std::string FakeStore::newIdentifier(const char* kind) {
  return std::string(kind) + "-" + std::to_string(++identifiers_);
}

void FakeStore::use() {
  if (usesUntilRaise_ > 0 && --usesUntilRaise_ == 0) throw ek::Exception("the store broke");
}

ek::Calendars FakeStore::calendarsForEntityType(ek::EntityType type) {
  use();
  const auto& all = type == ek::EntityType::event ? calendars_ : lists_;
  return {all.begin(), all.end()};
}

std::shared_ptr<ek::Calendar> FakeStore::defaultCalendarForNewEvents() {
  use();
  return calendars_.empty() ? nullptr : calendars_.front();
}

std::shared_ptr<ek::Calendar> FakeStore::defaultCalendarForNewReminders() {
  use();
  return lists_.empty() ? nullptr : lists_.front();
}

std::shared_ptr<ek::Calendar> FakeStore::calendarWithIdentifier(const std::string& identifier) {
  use();
  auto calendar = identified(calendars_, identifier);
  return calendar ? calendar : identified(lists_, identifier);
}

std::shared_ptr<ek::CalendarItem> FakeStore::calendarItemWithIdentifier(const std::string& identifier) {
  use();
  if (auto reminder = identified(reminders_, identifier)) return reminder;
  return identified(events_, identifier);
}

std::shared_ptr<ek::Event> FakeStore::eventWithIdentifier(const std::string& identifier) {
  use();
  return identified(events_, identifier);
}

std::shared_ptr<ek::Calendar> FakeStore::newCalendar(ek::EntityType type) {
  use();
  if (givesNull) return nullptr;
  auto calendar = std::make_shared<FakeCalendar>();
  calendar->identifier = newIdentifier(type == ek::EntityType::event ? "NEW-CALENDAR" : "NEW-LIST");
  return calendar;
}

std::shared_ptr<ek::Event> FakeStore::newEvent() {
  use();
  return givesNull ? nullptr : std::make_shared<FakeEvent>();
}

std::shared_ptr<ek::Reminder> FakeStore::newReminder() {
  use();
  return givesNull ? nullptr : std::make_shared<FakeReminder>();
}

std::shared_ptr<ek::Alarm> FakeStore::alarmWithAbsoluteDate(Date date) {
  use();
  auto alarm = std::make_shared<FakeAlarm>();
  alarm->date = date;
  return alarm;
}

std::shared_ptr<ek::Alarm> FakeStore::alarmWithRelativeOffset(double seconds) {
  use();
  auto alarm = std::make_shared<FakeAlarm>();
  alarm->offset = seconds;
  return alarm;
}

std::optional<ek::RecurrenceRule> FakeStore::recurrenceRule(ek::RecurrenceRule wanted) {
  use();
  for (const int day : wanted.daysOfTheMonth)
    if (day == 0 || day > 31 || day < -31) return std::nullopt;
  return wanted;
}

std::shared_ptr<const ek::Predicate> FakeStore::keep(FakePredicate::Kind kind, std::optional<Date> from,
                                                     std::optional<Date> to, const ek::Calendars& calendars) {
  use();
  auto predicate = std::make_shared<FakePredicate>();
  predicate->kind = kind;
  predicate->from = from;
  predicate->to = to;
  predicate->calendars = calendars;
  lastPredicate = givesNull ? nullptr : std::move(predicate);
  return lastPredicate;
}

std::shared_ptr<const ek::Predicate> FakeStore::predicateForEvents(Date start, Date end,
                                                                   const ek::Calendars& calendars) {
  return keep(FakePredicate::Kind::events, start, end, calendars);
}

std::shared_ptr<const ek::Predicate> FakeStore::predicateForReminders(const ek::Calendars& calendars) {
  return keep(FakePredicate::Kind::reminders, std::nullopt, std::nullopt, calendars);
}

std::shared_ptr<const ek::Predicate> FakeStore::predicateForIncompleteReminders(
    std::optional<Date> dueFrom, std::optional<Date> dueTo, const ek::Calendars& calendars) {
  return keep(FakePredicate::Kind::incomplete, dueFrom, dueTo, calendars);
}

std::shared_ptr<const ek::Predicate> FakeStore::predicateForCompletedReminders(
    std::optional<Date> from, std::optional<Date> to, const ek::Calendars& calendars) {
  return keep(FakePredicate::Kind::completed, from, to, calendars);
}

std::shared_ptr<const ek::EventList> FakeStore::eventsMatchingPredicate(
    const std::shared_ptr<const ek::Predicate>& predicate) {
  use();
  auto list = std::make_shared<FakeList<ek::Event>>(givesNull);
  for (const auto& event : events_)
    if (covers(understood(predicate).calendars, event->home)) list->items.push_back(event);
  return list;
}

std::shared_ptr<const ek::ReminderList> FakeStore::remindersOf(const FakePredicate& predicate) const {
  auto list = std::make_shared<FakeList<ek::CalendarItem>>(givesNull);
  for (const auto& reminder : reminders_)
    if (covers(predicate.calendars, reminder->home) && wants(predicate, *reminder))
      list->items.push_back(reminder);
  return list;
}

void FakeStore::fetchRemindersMatchingPredicate(const std::shared_ptr<const ek::Predicate>& predicate,
                                                ReminderCompletion completion) {
  use();
  auto list = answersNoList ? nullptr : remindersOf(understood(predicate));
  if (!answersLate) return completion(std::move(list));
  answering_.emplace_back([list = std::move(list), completion = std::move(completion)] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    completion(list);
  });
}

bool FakeStore::accepts(const void* item, std::optional<ek::Error>& error) {
  use();
  if (item == nullptr) throw ek::Exception("there is no item");
  if (refuses_) {
    error = refusal_;
    return false;
  }
  ++saves;
  return true;
}

bool FakeStore::saveCalendar(const std::shared_ptr<ek::Calendar>& calendar, std::optional<ek::Error>& error) {
  return accepts(calendar.get(), error);
}

bool FakeStore::removeCalendar(const std::shared_ptr<ek::Calendar>& calendar,
                               std::optional<ek::Error>& error) {
  if (!accepts(calendar.get(), error)) return false;
  return std::erase(calendars_, calendar) + std::erase(lists_, calendar) > 0;
}

bool FakeStore::saveEvent(const std::shared_ptr<ek::Event>& event, ek::Span span,
                          std::optional<ek::Error>& error) {
  lastSpan = span;
  return accepts(event.get(), error);
}

bool FakeStore::removeEvent(const std::shared_ptr<ek::Event>& event, ek::Span span,
                            std::optional<ek::Error>& error) {
  lastSpan = span;
  return accepts(event.get(), error) && std::erase(events_, event) > 0;
}

bool FakeStore::saveReminder(const std::shared_ptr<ek::CalendarItem>& reminder,
                             std::optional<ek::Error>& error) {
  return accepts(reminder.get(), error) && (ek::asReminder(*reminder), true);
}

bool FakeStore::removeReminder(const std::shared_ptr<ek::CalendarItem>& reminder,
                               std::optional<ek::Error>& error) {
  return accepts(reminder.get(), error) && std::erase(reminders_, reminder) > 0;
}

std::optional<std::string> FakeStore::addressOf(const ek::Participant& participant) {
  return participant.url ? std::optional("Home of " + *participant.url) : std::nullopt;
}

}  // namespace zuno::test

namespace ek {

// The one store of the program, which it does not own.
std::shared_ptr<EventStore> makeEventStore(unsigned /*entityMask*/) {
  return {std::shared_ptr<void>(), &zuno::test::FakeStore::shared()};
}

std::shared_ptr<AddressBook> makeAddressBook() {
  return {std::shared_ptr<void>(), &zuno::test::FakeStore::shared()};
}

}  // namespace ek
