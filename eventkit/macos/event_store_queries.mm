// The store's queries.
#include "eventkit/macos/conversions.h"
#include "eventkit/macos/event_query.h"
#include "eventkit/macos/event_store.h"
#include "eventkit/macos/guard.h"
#include "eventkit/macos/native.h"
#include "eventkit/macos/reminder_query.h"

namespace ek::macos {

namespace {

constexpr std::chrono::seconds kGoodFor{1};

}  // namespace

Ref<NSArray> EventKitStore::natives(const Calendars& calendars) const {
  NSMutableArray* array = [NSMutableArray arrayWithCapacity:calendars.size()];
  for (const auto& calendar : calendars) [array addObject:nativeOf<EKCalendar>(calendar, store_.get())];
  return Ref<NSArray>(array);
}

std::shared_ptr<const Predicate> EventKitStore::predicateForEvents(Date start, Date end,
                                                                   const Calendars& calendars) {
  return guarded([&] {
    return std::make_shared<const EventKitPredicate>(store_, EventConditions{start, end, natives(calendars)});
  });
}

std::shared_ptr<const Predicate> EventKitStore::reminderPredicate(Ref<NSPredicate> query) const {
  return query ? std::make_shared<const EventKitPredicate>(store_, std::move(query)) : nullptr;
}

std::shared_ptr<const Predicate> EventKitStore::predicateForReminders(const Calendars& calendars) {
  return guarded([&] {
    return reminderPredicate(
        Ref<NSPredicate>([store_.get() predicateForRemindersInCalendars:natives(calendars).get()]));
  });
}

std::shared_ptr<const Predicate> EventKitStore::predicateForIncompleteReminders(std::optional<Date> dueFrom,
                                                                                std::optional<Date> dueTo,
                                                                                const Calendars& calendars) {
  return guarded([&] {
    return reminderPredicate(Ref<NSPredicate>([store_.get()
        predicateForIncompleteRemindersWithDueDateStarting:nsDate(dueFrom)
                                                    ending:nsDate(dueTo)
                                                 calendars:natives(calendars).get()]));
  });
}

std::shared_ptr<const Predicate> EventKitStore::predicateForCompletedReminders(
    std::optional<Date> completedFrom, std::optional<Date> completedTo, const Calendars& calendars) {
  return guarded([&] {
    return reminderPredicate(Ref<NSPredicate>([store_.get()
        predicateForCompletedRemindersWithCompletionDateStarting:nsDate(completedFrom)
                                                          ending:nsDate(completedTo)
                                                       calendars:natives(calendars).get()]));
  });
}

template <class Conditions>
const Conditions& EventKitStore::conditionsOf(const std::shared_ptr<const Predicate>& predicate) const {
  const auto* own = dynamic_cast<const EventKitPredicate*>(predicate.get());
  if (own == nullptr || own->store.get() != store_.get())
    throwException("the query was not made by this calendar store");
  const auto* conditions = std::get_if<Conditions>(&own->conditions);
  if (conditions == nullptr) throwException("the query is for items of another kind");
  return *conditions;
}

template <class List>
std::shared_ptr<const List> EventKitStore::stillGood(
    const Kept<List>& kept, const std::shared_ptr<const Predicate>& predicate) const {
  const bool isGood = kept.predicate == predicate && kept.moment->isNow() &&
                      std::chrono::steady_clock::now() - kept.asked < kGoodFor;
  return isGood ? kept.answer : nullptr;
}

std::shared_ptr<const EventList> EventKitStore::eventsMatchingPredicate(
    const std::shared_ptr<const Predicate>& predicate) {
  const auto& conditions = conditionsOf<EventConditions>(predicate);
  current();
  if (auto answer = stillGood(keptEvents_, predicate)) return answer;
  keptEvents_ = {.predicate = predicate,
                 .answer = nullptr,
                 .moment = changes_.now(),
                 .asked = std::chrono::steady_clock::now()};
  keptEvents_.answer = guarded([&] { return eventsMatching(store_, conditions, changes_); });
  return keptEvents_.answer;
}

void EventKitStore::fetchRemindersMatchingPredicate(const std::shared_ptr<const Predicate>& predicate,
                                                    ReminderCompletion completion) {
  const auto& query = conditionsOf<Ref<NSPredicate>>(predicate);
  current();
  const auto kept = keptReminders_;
  std::shared_ptr<const ReminderList> answer;
  {
    const std::lock_guard lock(kept->mutex);
    answer = stillGood(kept->last, predicate);
  }
  if (answer) {
    completion(std::move(answer));
    return;
  }
  const Kept<ReminderList> asked = {.predicate = predicate,
                                    .answer = nullptr,
                                    .moment = changes_.now(),
                                    .asked = std::chrono::steady_clock::now()};
  guarded([&] {
    fetchReminders(store_, query.get(), changes_,
                   [kept, asked, deliver = std::move(completion)](std::shared_ptr<const ReminderList> found) {
                     {
                       const std::lock_guard lock(kept->mutex);
                       kept->last = asked;
                       kept->last.answer = found;
                     }
                     deliver(std::move(found));
                   });
  });
}

}  // namespace ek::macos
