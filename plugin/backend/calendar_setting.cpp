#include <cmath>
#include <vector>

#include "foundation/text.h"
#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"

namespace zuno {

namespace {

constexpr double kFullIntensity = 255;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Moves past the digits at the front, adding them to `value`; how many there were.
int takeDigits(std::string_view& text, double& value) {
  int count = 0;
  for (; !text.empty() && isDigit(text.front()); text.remove_prefix(1), ++count)
    value = value * 10 + (text.front() - '0');
  return count;
}

// Moves past one optional sign; true for a minus.
bool takeMinus(std::string_view& text) {
  const bool minus = !text.empty() && text.front() == '-';
  if (minus || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  return minus;
}

// The decimal number at the front of the text, 0 without one; whatever locale the host has set.
double decimalValue(std::string_view text) {
  const bool negative = takeMinus(text);
  double value = 0;
  int digits = takeDigits(text, value);
  int exponent = 0;
  if (!text.empty() && text.front() == '.') {
    text.remove_prefix(1);
    exponent = -takeDigits(text, value);
    digits -= exponent;
  }
  if (digits > 0 && !text.empty() && (text.front() == 'e' || text.front() == 'E')) {
    text.remove_prefix(1);
    const bool smaller = takeMinus(text);
    double power = 0;
    takeDigits(text, power);
    return (negative ? -value : value) * std::pow(10, exponent + (smaller ? -power : power));
  }
  return (negative ? -value : value) * std::pow(10, exponent);
}

}  // namespace

int iCalEKFunctions::setCalendarProp(TextArgument keyword, const Value& value) {
  if (!m_ekCalendar) return fail(kErrSetNeedsCalendar);
  if (!keyword) return fail(kErrPropertyMissing);
  const Keyword word(keyword);
  if (word == "notes") return 0;  // accepted: calendars have none
  if (word == "color") return setColor(plainTextOf(value));
  if (word != "title") return fail(kErrMissingArgument);
  m_ekCalendar->setTitle(owned(plainTextOf(value)));
  return 0;
}

// The bound is tested after dividing, so that a component may be anything up to 255 times 255; what is
// beyond full intensity counts as full.
int iCalEKFunctions::setColor(TextArgument text) {
  if (!text) return fail(kErrInvalidParameters);
  const std::vector<std::string_view> parts = foundation::splitAtWhitespace(*text);
  if (parts.size() != 3) return fail(kErrInvalidParameters);
  float components[3];
  for (std::size_t i = 0; i < 3; ++i) {
    components[i] = static_cast<float>(decimalValue(parts[i])) / static_cast<float>(kFullIntensity);
    if (!(components[i] >= 0 && components[i] <= kFullIntensity)) return fail(kErrInvalidParameters);
  }
  m_ekCalendar->setColor(ek::calibratedColor(components[0], components[1], components[2], 1.0));
  return 0;
}

}  // namespace zuno
