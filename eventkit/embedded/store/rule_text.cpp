#include "eventkit/embedded/store/rule_text.h"

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/store/fields.h"

namespace ek::embedded {

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

}  // namespace ek::embedded
