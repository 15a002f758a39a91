#include <algorithm>
#include <limits>

#include "host/calc/builtins.h"
#include "host/calc/lexer.h"
#include "host/wrapper/encoding.h"
#include "host/wrapper/text_case.h"

namespace fmhost {
namespace {

using Values = std::span<const Value>;

constexpr std::int64_t kLastCodePoint = 0x10FFFF;
constexpr std::int64_t kCodeGroup = 100'000;  // each character of several takes five digits of a code

std::int64_t wholeNumber(const Value& value) {
  const Number& number = value.asNumber();
  return number.presence == Presence::present ? number.value.truncated() : 0;
}

// Counts of characters are UTF-16 units, as in the host's interface.
std::size_t count(const Value& value) {
  return static_cast<std::size_t>(
      std::clamp<std::int64_t>(wholeNumber(value), 0, std::numeric_limits<std::int32_t>::max()));
}

Value length(Values a) { return Value::ofNumber(Decimal(static_cast<std::int64_t>(a[0].asText().size()))); }

Value left(Values a) { return Value::ofText(a[0].asText().substr(0, count(a[1]))); }

Value right(Values a) {
  const Text& text = a[0].asText();
  return Value::ofText(text.substr(text.size() - std::min(text.size(), count(a[1]))));
}

Value middle(Values a) {
  const Text& text = a[0].asText();
  const std::size_t start = std::max<std::size_t>(count(a[1]), 1) - 1;
  return Value::ofText(start < text.size() ? text.substr(start, count(a[2])) : Text());
}

// Forwards from the start for the first, second, ... occurrence; backwards for -1, -2, ...
Value position(Values a) {
  const Text& text = a[0].asText();
  const Text& what = a[1].asText();
  std::int64_t occurrence = wholeNumber(a[3]);
  const bool backwards = occurrence < 0;
  std::size_t found = Text::npos;
  if (!what.empty() && occurrence != 0) {
    std::size_t from = std::max<std::size_t>(count(a[2]), 1) - 1;
    for (occurrence = backwards ? -occurrence : occurrence; occurrence > 0; --occurrence) {
      found = backwards ? findLastIgnoringCase(text, what, from) : findIgnoringCase(text, what, from);
      if (found == Text::npos || (backwards && found == 0 && occurrence > 1)) break;
      from = backwards ? found - 1 : found + 1;
    }
    if (occurrence > 0) found = Text::npos;
  }
  return Value::ofNumber(Decimal(found == Text::npos ? 0 : static_cast<std::int64_t>(found) + 1));
}

Text replaced(const Text& text, const Text& what, const Text& by) {
  if (what.empty()) return text;
  Text result;
  std::size_t from = 0;
  for (std::size_t at = text.find(what); at != Text::npos; at = text.find(what, from)) {
    result.append(text, from, at - from).append(by);
    from = at + what.size();
  }
  return result.append(text, from);
}

// Pairs of what is looked for, in its letter case, and what takes its place, one after the other.
Value substitute(Values a) {
  if (a.size() % 2 == 0) throw CalculationError("Substitute lacks what takes the last text's place");
  Text text = a[0].asText();
  for (std::size_t i = 1; i + 1 < a.size(); i += 2) text = replaced(text, a[i].asText(), a[i + 1].asText());
  return Value::ofText(std::move(text));
}

Value upper(Values a) {
  Text text = a[0].asText();
  makeUpperCase(text);
  return Value::ofText(std::move(text));
}

Value lower(Values a) {
  Text text = a[0].asText();
  makeLowerCase(text);
  return Value::ofText(std::move(text));
}

Value trim(Values a) {
  const Text& text = a[0].asText();
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == Text::npos) return Value::ofText({});
  return Value::ofText(text.substr(first, text.find_last_not_of(u' ') - first + 1));
}

// A surrogate's number gives that one unit, whether its other half follows or not.
Value character(Values a) {
  std::int64_t code = wholeNumber(a[0]);
  Text text;
  if (code > 0 && code <= kLastCodePoint) {
    appendCodePoint(text, static_cast<char32_t>(code));
  } else {
    for (; code > 0; code /= kCodeGroup) appendCodePoint(text, static_cast<char32_t>(code % kCodeGroup));
  }
  return Value::ofText(std::move(text));
}

Value code(Values a) {
  const Text& text = a[0].asText();
  if (text.empty()) return Value::ofText({});
  Decimal sum;
  Decimal place(1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t point = text[i];
    const bool isPair = point >= 0xD800 && point < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
                        text[i + 1] < 0xE000;
    if (isPair) point = 0x10000 + ((point - 0xD800) << 10) + (text[++i] - 0xDC00U);
    sum = sum + Decimal(point) * place;
    place = place * Decimal(kCodeGroup);
  }
  return Value::ofNumber(sum);
}

constexpr Builtin kFunctions[] = {
    {"Length", 1, 1, length},  {"Left", 2, 2, left},         {"Right", 2, 2, right},
    {"Middle", 3, 3, middle},  {"Position", 4, 4, position}, {"Substitute", 3, -1, substitute},
    {"Upper", 1, 1, upper},    {"Lower", 1, 1, lower},       {"Trim", 1, 1, trim},
    {"Char", 1, 1, character}, {"Code", 1, 1, code}};

}  // namespace

std::span<const Builtin> textFunctions() { return kFunctions; }

}  // namespace fmhost
