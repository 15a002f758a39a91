// Changes the end of a rule in its text, and leaves the rest as it is written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "eventkit/embedded/recurrence/rule.h"

namespace ek::embedded {

std::string ruleWithoutEnd(std::string_view rule);
std::string ruleWithCount(std::string_view rule, std::int64_t count);
std::string ruleWithUntil(std::string_view rule, const recurrence::Until& until);

}  // namespace ek::embedded
