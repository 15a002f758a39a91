#include <atomic>
#include <chrono>
#include <utility>

#include "foundation/run_loop.h"
#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"
#include "plugin/shell/globals.h"

namespace zuno {

namespace {

enum class ReminderStatus { incomplete, complete };

constexpr KeywordRow<ReminderStatus> kReminderStatuses[] = {
    {"incomplete", ReminderStatus::incomplete},
    {"incompleted", ReminderStatus::incomplete},
    {"complete", ReminderStatus::complete},
    {"completed", ReminderStatus::complete},
};

bool isEmpty(const std::optional<ek::Calendars>& calendars) { return !calendars || calendars->empty(); }

}  // namespace

int iCalEKFunctions::fetchEventsWithStartDate(Date start, Date end, TextArgument /*uid*/,
                                              TextArgument calendars) {
  releaseItems();
  try {
    const std::optional<ek::Calendars> searched = calendarArrayFromString(calendars, "calendar");
    if (g_llasterror != 0) return -1;
    if (isEmpty(searched)) return fail(kErrCalendarArray);
    m_ekEventPredicate = m_ekEventStore->predicateForEvents(start, end, *searched);
  } catch (const std::exception& raised) {
    return failRaised(raised.what());
  }
  return m_ekEventPredicate ? 0 : fail(kErrEventPredicate);
}

int iCalEKFunctions::fetchEventsWithModificationDate(std::optional<Date> /*modificationDate*/, Date startDate,
                                                     Date endDate, TextArgument uid, TextArgument calendars) {
  return fetchEventsWithStartDate(startDate, endDate, uid, calendars);
}

int iCalEKFunctions::fetchReminders(TextArgument calendars, TextArgument status, std::optional<Date> date) {
  releaseItems();
  const std::optional<ek::Calendars> lists = calendarArrayFromString(calendars, "reminderlist");
  const Keyword word(status);
  if (g_llasterror != 0) return -1;
  if (isEmpty(lists)) return fail(kErrCalendarArray);
  if (word.isNone()) return keepReminderPredicate(m_ekEventStore->predicateForReminders(*lists));

  const ReminderStatus* wanted = find(kReminderStatuses, word);
  if (wanted == nullptr) return fail(kErrInvalidParameters);
  if (*wanted == ReminderStatus::incomplete)
    return keepReminderPredicate(m_ekEventStore->predicateForIncompleteReminders(std::nullopt, date, *lists));
  if (!date) return fail(kErrInvalidParameters);
  return keepReminderPredicate(m_ekEventStore->predicateForCompletedReminders(date, std::nullopt, *lists));
}

// The short fetches go by the lists alone: an unknown title is an empty array here, whatever number its
// lookup has set.
int iCalEKFunctions::fetchRemindersWithCalendars(TextArgument calendars) {
  releaseItems();
  const std::optional<ek::Calendars> lists = calendarArrayFromString(calendars, "reminderlist");
  if (isEmpty(lists)) return fail(kErrCalendarArray);
  return keepReminderPredicate(m_ekEventStore->predicateForReminders(*lists));
}

int iCalEKFunctions::fetchRemindersUncompleted(TextArgument calendars) {
  return fetchRemindersUncompleted(std::nullopt, calendars);
}

int iCalEKFunctions::fetchRemindersUncompleted(std::optional<Date> dueUpTo, TextArgument calendars) {
  releaseItems();
  const std::optional<ek::Calendars> lists = calendarArrayFromString(calendars, "reminderlist");
  if (isEmpty(lists)) return fail(kErrCalendarArray);
  return keepReminderPredicate(
      m_ekEventStore->predicateForIncompleteReminders(std::nullopt, dueUpTo, *lists));
}

int iCalEKFunctions::fetchRemindersCompletedSince(std::optional<Date> since, TextArgument calendars) {
  releaseItems();
  const std::optional<ek::Calendars> lists = calendarArrayFromString(calendars, "reminderlist");
  if (isEmpty(lists)) return fail(kErrCalendarArray);
  return keepReminderPredicate(m_ekEventStore->predicateForCompletedReminders(since, std::nullopt, *lists));
}

int iCalEKFunctions::keepReminderPredicate(PredicatePointer predicate) {
  if (!predicate) return fail(kErrReminderPredicate);
  m_ekReminderPredicate = std::move(predicate);
  m_ekReminder.reset();
  return 0;
}

// The store may answer from another thread, and late: what the two share lives as long as either needs it.
// There is no limit to the wait; other sources of the calling thread's run loop work meanwhile.
std::shared_ptr<const ek::ReminderList> iCalEKFunctions::reminders() {
  struct Answer {
    std::atomic<bool> pending = true;
    std::shared_ptr<const ek::ReminderList> list;
  };
  const auto answer = std::make_shared<Answer>();
  m_ekEventStore->fetchRemindersMatchingPredicate(m_ekReminderPredicate,
                                                  [answer](std::shared_ptr<const ek::ReminderList> list) {
                                                    answer->list = std::move(list);
                                                    answer->pending.store(false, std::memory_order_release);
                                                  });
  while (answer->pending.load(std::memory_order_acquire))
    foundation::runLoopFor(std::chrono::milliseconds(10));
  return answer->list;
}

}  // namespace zuno
