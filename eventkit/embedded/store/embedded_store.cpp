#include "eventkit/embedded/store/embedded_store.h"

#include <algorithm>
#include <utility>

#include "eventkit/embedded/storage/identifier.h"
#include "eventkit/embedded/store/alarm.h"
#include "eventkit/embedded/store/calendar.h"
#include "eventkit/embedded/store/calendar_writer.h"
#include "eventkit/embedded/store/event.h"
#include "eventkit/embedded/store/event_lookup.h"
#include "eventkit/embedded/store/event_writer.h"
#include "eventkit/embedded/store/refusals.h"
#include "eventkit/embedded/store/reminder.h"
#include "eventkit/embedded/store/reminder_writer.h"
#include "eventkit/embedded/store/rules.h"

namespace ek::embedded {

EmbeddedStore::EmbeddedStore(std::string path)
    : records_(std::make_shared<Records>(std::move(path))),
      eventAnswers_(records_),
      reminderAnswers_(records_) {}

std::shared_ptr<EmbeddedCalendar> EmbeddedStore::calendar(const CalendarRow* row) {
  if (row == nullptr) return nullptr;
  return std::make_shared<EmbeddedCalendar>(records_, *row, records_->calendars().sourceOf(*row));
}

Calendars EmbeddedStore::calendarsForEntityType(EntityType type) {
  return guarded([&] {
    Calendars calendars;
    if (records_->database() == nullptr) return calendars;
    for (const CalendarRow& row : records_->calendars().all())
      if (row.kind == type) calendars.push_back(calendar(&row));
    return calendars;
  });
}

std::shared_ptr<Calendar> EmbeddedStore::defaultCalendar(EntityType kind) {
  return guarded([&]() -> std::shared_ptr<Calendar> {
    if (records_->database() == nullptr) return nullptr;
    return calendar(records_->calendars().defaultFor(kind));
  });
}

std::shared_ptr<Calendar> EmbeddedStore::defaultCalendarForNewEvents() {
  return defaultCalendar(EntityType::event);
}

std::shared_ptr<Calendar> EmbeddedStore::defaultCalendarForNewReminders() {
  return defaultCalendar(EntityType::reminder);
}

std::shared_ptr<Calendar> EmbeddedStore::calendarWithIdentifier(const std::string& identifier) {
  return guarded([&]() -> std::shared_ptr<Calendar> {
    if (records_->database() == nullptr) return nullptr;
    return calendar(records_->calendars().findByIdentifier(identifier));
  });
}

std::shared_ptr<CalendarItem> EmbeddedStore::calendarItemWithIdentifier(const std::string& identifier) {
  return guarded([&]() -> std::shared_ptr<CalendarItem> {
    Database* database = records_->database();
    if (database == nullptr) return nullptr;
    EventLookup lookup(records_, *database);
    auto row = lookup.item(identifier);
    if (row && row->kind == EntityType::reminder)
      return std::make_shared<EmbeddedReminder>(records_, records_->document(std::move(*row)));
    return lookup.withIdentifier(identifier);
  });
}

std::shared_ptr<Event> EmbeddedStore::eventWithIdentifier(const std::string& identifier) {
  return guarded([&]() -> std::shared_ptr<Event> {
    Database* database = records_->database();
    return database == nullptr ? nullptr : EventLookup(records_, *database).withIdentifier(identifier);
  });
}

std::shared_ptr<Calendar> EmbeddedStore::newCalendar(EntityType type) {
  CalendarRow row;
  row.identifier = newIdentifier();
  row.kind = type;
  return std::make_shared<EmbeddedCalendar>(records_, std::move(row), std::nullopt);
}

std::shared_ptr<Event> EmbeddedStore::newEvent() { return std::make_shared<EmbeddedEvent>(records_); }

std::shared_ptr<Reminder> EmbeddedStore::newReminder() {
  return std::make_shared<EmbeddedReminder>(records_);
}

std::shared_ptr<Alarm> EmbeddedStore::alarmWithAbsoluteDate(Date date) {
  auto alarm = std::make_shared<EmbeddedAlarm>(AlarmValues{});
  alarm->setAbsoluteDate(date);
  return alarm;
}

std::shared_ptr<Alarm> EmbeddedStore::alarmWithRelativeOffset(double seconds) {
  auto alarm = std::make_shared<EmbeddedAlarm>(AlarmValues{});
  alarm->setRelativeOffset(seconds);
  return alarm;
}

std::optional<RecurrenceRule> EmbeddedStore::recurrenceRule(RecurrenceRule wanted) {
  return checkedRule(std::move(wanted));
}

// Sorted, as conditions have them.
std::vector<std::string> EmbeddedStore::identifiersOf(const Calendars& calendars) const {
  std::vector<std::string> identifiers;
  for (const auto& calendar : calendars) {
    if (!calendar) throw Exception("a query needs calendars, not nothing in place of one");
    identifiers.push_back(calendar->calendarIdentifier());
  }
  std::ranges::sort(identifiers);
  identifiers.erase(std::unique(identifiers.begin(), identifiers.end()), identifiers.end());
  return identifiers;
}

std::shared_ptr<const Predicate> EmbeddedStore::predicateForEvents(Date start, Date end,
                                                                   const Calendars& calendars) {
  return std::make_shared<ConditionsPredicate<EventConditions>>(
      records_.get(), EventConditions{start, end, identifiersOf(calendars)});
}

std::shared_ptr<const Predicate> EmbeddedStore::predicateForReminders(const Calendars& calendars) {
  return std::make_shared<ConditionsPredicate<ReminderConditions>>(
      records_.get(), ReminderConditions{ReminderConditions::State::any, std::nullopt, std::nullopt,
                                         identifiersOf(calendars)});
}

std::shared_ptr<const Predicate> EmbeddedStore::predicateForIncompleteReminders(std::optional<Date> dueFrom,
                                                                                std::optional<Date> dueTo,
                                                                                const Calendars& calendars) {
  return std::make_shared<ConditionsPredicate<ReminderConditions>>(
      records_.get(),
      ReminderConditions{ReminderConditions::State::incomplete, dueFrom, dueTo, identifiersOf(calendars)});
}

std::shared_ptr<const Predicate> EmbeddedStore::predicateForCompletedReminders(
    std::optional<Date> completedFrom, std::optional<Date> completedTo, const Calendars& calendars) {
  return std::make_shared<ConditionsPredicate<ReminderConditions>>(
      records_.get(), ReminderConditions{ReminderConditions::State::completed, completedFrom, completedTo,
                                         identifiersOf(calendars)});
}

// Null while the file cannot be opened.
template <class Answer>
std::shared_ptr<const Answer> EmbeddedStore::answer(KeptAnswers<Answer>& kept,
                                                    const std::shared_ptr<const Predicate>& predicate) {
  return guarded([&]() -> std::shared_ptr<const Answer> {
    Database* database = records_->database();
    if (database != nullptr && predicate)
      if (auto known = kept.answerTo(predicate, *database)) return known;
    using Conditions = typename Answer::Conditions;
    const auto* own = dynamic_cast<const ConditionsPredicate<Conditions>*>(predicate.get());
    if (own == nullptr || !own->isOf(records_.get()))
      throw Exception("a query needs a predicate that this store made for it");
    return database == nullptr ? nullptr : kept.answerTo(predicate, own->conditions(), *database);
  });
}

std::shared_ptr<const EventList> EmbeddedStore::eventsMatchingPredicate(
    const std::shared_ptr<const Predicate>& predicate) {
  if (auto events = answer(eventAnswers_, predicate)) return events;
  return std::make_shared<EventAnswer>(records_, EventConditions{});
}

void EmbeddedStore::fetchRemindersMatchingPredicate(const std::shared_ptr<const Predicate>& predicate,
                                                    ReminderCompletion completion) {
  completion(answer(reminderAnswers_, predicate));
}

namespace {

// The store's own object; throws for nothing and for one of another store.
template <class Own, class Interface>
Own& ownObject(const std::shared_ptr<Interface>& object, const std::shared_ptr<Records>& records) {
  auto* own = dynamic_cast<Own*>(object.get());
  if (own == nullptr) throw Exception(object ? "the object belongs to another store" : "there is no object");
  if (own->records() != records) throw Exception("the object belongs to another store");
  return *own;
}

}  // namespace

// Null, with the error, when nothing can be written.
Database* EmbeddedStore::writable(std::optional<Error>& error) {
  Database* database = records_->databaseForWriting();
  if (database != nullptr && !database->isReadOnly()) return database;
  refuse(error, ErrorCode::eventStoreNotAuthorized);
  return nullptr;
}

bool EmbeddedStore::saveCalendar(const std::shared_ptr<Calendar>& calendar, std::optional<Error>& error) {
  auto& own = ownObject<EmbeddedCalendar>(calendar, records_);
  return guarded([&] {
    Database* database = writable(error);
    return database != nullptr && embedded::saveCalendar(*records_, *database, own, error);
  });
}

bool EmbeddedStore::removeCalendar(const std::shared_ptr<Calendar>& calendar, std::optional<Error>& error) {
  auto& own = ownObject<EmbeddedCalendar>(calendar, records_);
  return guarded([&] {
    Database* database = writable(error);
    return database != nullptr && embedded::removeCalendar(*records_, *database, own, error);
  });
}

bool EmbeddedStore::saveEvent(const std::shared_ptr<Event>& event, Span span, std::optional<Error>& error) {
  auto& own = ownObject<EmbeddedEvent>(event, records_);
  return guarded([&] {
    Database* database = writable(error);
    return database != nullptr && EventWriter(*records_, *database).save(own, span, error);
  });
}

bool EmbeddedStore::removeEvent(const std::shared_ptr<Event>& event, Span span, std::optional<Error>& error) {
  auto& own = ownObject<EmbeddedEvent>(event, records_);
  return guarded([&] {
    Database* database = writable(error);
    return database != nullptr && EventWriter(*records_, *database).remove(own, span, error);
  });
}

bool EmbeddedStore::saveReminder(const std::shared_ptr<CalendarItem>& reminder, std::optional<Error>& error) {
  auto& own = ownObject<EmbeddedReminder>(reminder, records_);
  return guarded([&] {
    Database* database = writable(error);
    return database != nullptr && ReminderWriter(*records_, *database).save(own, error);
  });
}

bool EmbeddedStore::removeReminder(const std::shared_ptr<CalendarItem>& reminder,
                                   std::optional<Error>& error) {
  if (dynamic_cast<EmbeddedEvent*>(reminder.get()) != nullptr)
    return refuse(error, ErrorCode::internalFailure);
  auto& own = ownObject<EmbeddedReminder>(reminder, records_);
  return guarded([&] {
    Database* database = writable(error);
    return database != nullptr && ReminderWriter(*records_, *database).remove(own, error);
  });
}

}  // namespace ek::embedded
