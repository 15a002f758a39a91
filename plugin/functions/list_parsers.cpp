#include "plugin/functions/list_parsers.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <limits>
#include <string_view>

#include "foundation/text.h"
#include "plugin/shell/system_log.h"

namespace zuno {

namespace {

constexpr char kListSeparator = '\r';

// Beyond the range of int the limit, which no list takes either.
int integerFrom(std::string_view text) {
  constexpr std::int64_t lowest = std::numeric_limits<int>::min();
  constexpr std::int64_t highest = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(foundation::integerValue(text), lowest, highest));
}

bool isWholeNumber(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::optional<std::vector<ek::DayOfWeek>> NSStringToNSArrayDOW(TextArgument text) {
  if (!text) return std::nullopt;
  std::vector<ek::DayOfWeek> days;
  for (const std::string_view piece : foundation::split(*text, kListSeparator)) {
    try {
      days.push_back(ek::DayOfWeek::dayOfWeek(integerFrom(piece)));
    } catch (const std::exception&) {
      logLine("Empty object");
    }
  }
  return days;
}

std::optional<std::vector<int>> NSStringToNSArrayInts(TextArgument text) {
  if (!text) return std::nullopt;
  std::vector<int> numbers;
  for (const std::string_view piece : foundation::split(*text, kListSeparator))
    if (isWholeNumber(piece)) numbers.push_back(integerFrom(piece));
  return numbers;
}

}  // namespace zuno
