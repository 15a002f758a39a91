// Changes single parts of a rule in its text, and leaves the rest as it is written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "eventkit/embedded/recurrence/rule.h"

namespace ek::embedded {

std::string ruleWithoutEnd(std::string_view rule);
std::string ruleWithCount(std::string_view rule, std::int64_t count);
std::string ruleWithUntil(std::string_view rule, const recurrence::Until& until);
// With the days that it would take from the start of its series.
std::string ruleFreeFromStart(std::string_view text, const recurrence::Rule& rule,
                              foundation::WallTime start);

}  // namespace ek::embedded
