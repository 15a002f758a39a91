#include "plugin/backend/attribute_tables.h"
#include "plugin/backend/ical_ek_functions.h"

namespace zuno {

namespace {

constexpr std::string_view kFrequencies[] = {"daily", "weekly", "monthly", "yearly"};

// What is read where an event has no rule: zeros and nothing.
ek::RecurrenceRule blankRule() {
  ek::RecurrenceRule rule;
  rule.interval = 0;
  return rule;
}

template <class Item, class Print>
std::string joined(const std::vector<Item>& items, Print print) {
  std::string text;
  for (const Item& item : items) {
    if (!text.empty()) text += '\r';
    text += print(item);
  }
  return text;
}

std::string numbers(const std::vector<int>& items) {
  return joined(items, [](int number) { return std::to_string(number); });
}

Value frequency(const ek::RecurrenceRule& rule) {
  Value word = wordFor(kFrequencies, rule.frequency);
  return word.index() == 0 ? Value("") : word;
}

Value daysOfTheWeek(const ek::RecurrenceRule& rule) {
  if (rule.daysOfTheWeek.empty()) return {};
  return joined(rule.daysOfTheWeek,
                [](const ek::DayOfWeek& day) { return std::to_string(day.dayOfTheWeek); });
}

// A separator follows each day whose place is below the number of days of the month less one. That number
// is unsigned: without days of the month every day, the last one too, is followed by one, as scripts expect.
Value nthWeekdays(const ek::RecurrenceRule& rule) {
  if (rule.daysOfTheWeek.empty()) return {};
  const std::size_t separators = rule.daysOfTheMonth.size() - 1;
  std::string text;
  for (std::size_t i = 0; i < rule.daysOfTheWeek.size(); ++i) {
    const ek::DayOfWeek& day = rule.daysOfTheWeek[i];
    text += std::to_string(day.weekNumber) + "," + std::to_string(day.dayOfTheWeek);
    if (i < separators) text += '\r';
  }
  return text;
}

constexpr ReaderRow<ek::RecurrenceRule> kReaders[] = {
    {"firstdayoftheweek",
     [](const ek::RecurrenceRule& rule) { return Value(std::to_string(rule.firstDayOfTheWeek)); }},
    {"hasend", [](const ek::RecurrenceRule& rule) { return truthValue(rule.end.has_value()); }},
    {"recurrencetype", frequency},
    {"recurrenceinterval",
     [](const ek::RecurrenceRule& rule) { return Value(std::to_string(rule.interval)); }},
    {"daysoftheweek", daysOfTheWeek},
    {"daysofthemonth",
     [](const ek::RecurrenceRule& rule) {
       return rule.daysOfTheMonth.empty() ? Value() : Value(numbers(rule.daysOfTheMonth));
     }},
    {"nthweekdaysofthemonth", nthWeekdays},
    {"monthsoftheyear", [](const ek::RecurrenceRule& rule) { return Value(numbers(rule.monthsOfTheYear)); }},
};

constexpr ReaderRow<ek::RecurrenceEnd> kEndReaders[] = {
    {"usesenddate", [](const ek::RecurrenceEnd& end) { return truthValue(end.endDate.has_value()); }},
    {"occurrencecount",
     [](const ek::RecurrenceEnd& end) { return Value(std::to_string(end.occurrenceCount)); }},
    {"enddate", [](const ek::RecurrenceEnd& end) { return valueOf(end.endDate); }},
};

}  // namespace

Value iCalEKFunctions::getEventRecurrenceRuleAttribute(const Keyword& keyword, const Keyword& recurrenceEnd) {
  if (!m_ekEvent) return noValue(kErrGetRecurrenceNeedsEvent);
  if (keyword.isNone()) return noValue(kErrPropertyMissing);
  if (!m_ekRecurrenceRule) {
    const std::vector<ek::RecurrenceRule> rules = m_ekEvent->recurrenceRules();
    if (!rules.empty()) m_ekRecurrenceRule = rules.front();
  }
  if (keyword == "weeksoftheyear") return noValue(kErrWeeksOfTheYear);
  if (keyword == "recurrenceend") return recurrenceEndAttribute(recurrenceEnd);
  const Reader<ek::RecurrenceRule>* read = find(kReaders, keyword);
  if (read == nullptr) return noValue(kErrPropertyUnknown);
  return (*read)(m_ekRecurrenceRule ? *m_ekRecurrenceRule : blankRule());
}

Value iCalEKFunctions::recurrenceEndAttribute(const Keyword& keyword) {
  if (!m_ekRecurrenceRule || !m_ekRecurrenceRule->end) return "never";
  if (keyword.isNone()) return noValue(kErrMissingArgument);
  const Reader<ek::RecurrenceEnd>* read = find(kEndReaders, keyword);
  return read ? (*read)(*m_ekRecurrenceRule->end) : noValue(kErrInvalidArgument);
}

}  // namespace zuno
