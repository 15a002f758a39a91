#include "eventkit/embedded/store/rule_text.h"

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/store/fields.h"

namespace ek::embedded {

namespace {

std::string daysTakenFrom(foundation::WallTime start, const recurrence::Rule& rule) {
  using recurrence::Frequency;
  const bool isYearly = rule.frequency == Frequency::yearly;
  const bool saysDays = !rule.byDay.empty() || (isYearly && !rule.byYearDay.empty());
  if (rule.frequency <= Frequency::daily || saysDays) return {};
  const auto day = std::chrono::floor<std::chrono::days>(start);
  const bool countsWeeks = isYearly && !rule.byWeekNo.empty();
  if (rule.frequency == Frequency::weekly || (countsWeeks && rule.byMonthDay.empty())) {
    constexpr const char* kWeekdays[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    return std::string(";BYDAY=") + kWeekdays[std::chrono::weekday(day).c_encoding()];
  }
  const std::chrono::year_month_day date(day);
  std::string taken;
  if (isYearly && !countsWeeks && rule.byMonth.empty())
    taken += ";BYMONTH=" + std::to_string(static_cast<unsigned>(date.month()));
  if (rule.byMonthDay.empty()) taken += ";BYMONTHDAY=" + std::to_string(static_cast<unsigned>(date.day()));
  return taken;
}

}  // namespace

std::string ruleWithoutEnd(std::string_view rule) {
  std::string kept;
  for (const std::string_view part : ical::splitList(rule, ';')) {
    const std::string_view name = part.substr(0, part.find('='));
    if (part.empty() || equalsIgnoringCase(name, "COUNT") || equalsIgnoringCase(name, "UNTIL")) continue;
    if (!kept.empty()) kept += ';';
    kept += part;
  }
  return kept;
}

std::string ruleWithCount(std::string_view rule, std::int64_t count) {
  return ruleWithoutEnd(rule) + ";COUNT=" + std::to_string(count);
}

std::string ruleWithUntil(std::string_view rule, const recurrence::Until& until) {
  return ruleWithoutEnd(rule) +
         ";UNTIL=" + ical::formatDateTime({.wall = until.wall, .isDate = until.isDate, .isUtc = until.isUtc});
}

std::string ruleFreeFromStart(std::string_view text, const recurrence::Rule& rule,
                              foundation::WallTime start) {
  const std::string free = ruleWithoutEnd(text) + daysTakenFrom(start, rule);
  if (rule.count) return ruleWithCount(free, *rule.count);
  return rule.until ? ruleWithUntil(free, *rule.until) : free;
}

}  // namespace ek::embedded
