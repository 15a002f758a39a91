#include <new>
#include <utility>

#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"

namespace zuno {

namespace {

constexpr KeywordRow<ek::RecurrenceFrequency> kFrequencies[] = {
    {"daily", ek::RecurrenceFrequency::daily},
    {"weekly", ek::RecurrenceFrequency::weekly},
    {"monthly", ek::RecurrenceFrequency::monthly},
    {"yearly", ek::RecurrenceFrequency::yearly},
};

// A date wins over a count; no end without either.
std::optional<ek::RecurrenceEnd> endFrom(std::optional<Date> date, std::int32_t count) {
  if (date) return ek::RecurrenceEnd::withEndDate(date);
  if (count > 0) return ek::RecurrenceEnd::withOccurrenceCount(count);
  return std::nullopt;
}

}  // namespace

int iCalEKFunctions::addRecurrence(TextArgument type, std::int32_t interval,
                                   std::optional<std::vector<ek::DayOfWeek>> dotw,
                                   std::optional<std::vector<int>> dotm, int /*dow*/,
                                   std::optional<std::vector<int>> monthsOfTheYear,
                                   std::optional<Date> endWithDate, std::int32_t endWithCount) {
  const ek::RecurrenceFrequency* frequency = find(kFrequencies, Keyword(type));
  if (frequency == nullptr) return fail(kErrRecurrenceType);
  if (interval < 1) return fail(kErrRecurrenceInterval);
  if (!m_ekEvent) return fail(kErrAddRecurrenceNeedsEvent);
  try {
    m_ekRecurrenceEnd = endFrom(endWithDate, endWithCount);
  } catch (const ek::Exception&) {
    return fail(kErrRecurrenceEnd);
  }
  try {
    ek::RecurrenceRule wanted;
    wanted.frequency = *frequency;
    wanted.interval = interval;
    if (dotw) wanted.daysOfTheWeek = *std::move(dotw);
    if (dotm) wanted.daysOfTheMonth = *std::move(dotm);
    if (monthsOfTheYear) wanted.monthsOfTheYear = *std::move(monthsOfTheYear);
    wanted.end = m_ekRecurrenceEnd;
    const std::optional<ek::RecurrenceRule> rule = m_ekEventStore->recurrenceRule(std::move(wanted));
    if (!rule) return fail(kErrRecurrenceParameters);
    m_ekEvent->addRecurrenceRule(*rule);
  } catch (const std::bad_alloc&) {
    return fail(kErrRecurrenceRule);
  }
  return 0;
}

int iCalEKFunctions::removeRecurrence() {
  if (!m_ekEvent) return fail(kErrRemoveRecurrenceNeedsEvent);
  const std::vector<ek::RecurrenceRule> rules = m_ekEvent->recurrenceRules();
  if (!rules.empty()) m_ekEvent->removeRecurrenceRule(rules.front());
  m_ekEvent->setRecurrenceRules({});
  return 0;
}

}  // namespace zuno
