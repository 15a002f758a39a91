#include <algorithm>
#include <charconv>
#include <chrono>

#include "eventkit/embedded/recurrence/rule.h"

namespace ek::recurrence {

namespace {

constexpr std::string_view kFrequencies[] = {"SECONDLY", "MINUTELY", "HOURLY", "DAILY",
                                             "WEEKLY",   "MONTHLY",  "YEARLY"};
constexpr std::string_view kWeekdays[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
constexpr unsigned kMonday = 1;
constexpr std::size_t kDateLength = 8, kDateTimeLength = 15;

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string upperCased(std::string_view text) {
  std::string upper(text);
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return upper;
}

// What comes before the separator; `text` goes on behind it and is empty at the end.
std::string_view takeUpTo(std::string_view& text, char separator) {
  const std::size_t end = text.find(separator);
  const std::string_view taken = trimmed(text.substr(0, end));
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return taken;
}

template <typename Number>
bool readNumber(std::string_view text, Number& out) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return false;
  }
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), out);
  return error == std::errc() && end == text.data() + text.size();
}

bool readFrequency(std::string_view text, Rule& rule) {
  const auto* const found = std::ranges::find(kFrequencies, text);
  rule.frequency = static_cast<Frequency>(found - std::begin(kFrequencies));
  return found != std::end(kFrequencies);
}

bool readWeekday(std::string_view text, unsigned& out) {
  const auto* const found = std::ranges::find(kWeekdays, text);
  out = static_cast<unsigned>(found - std::begin(kWeekdays));
  return found != std::end(kWeekdays);
}

bool readWeekStart(std::string_view text, Rule& rule) {
  rule.hasWeekStart = true;
  return readWeekday(text, rule.weekStart);
}

bool readInterval(std::string_view text, Rule& rule) { return readNumber(text, rule.interval); }

bool readCount(std::string_view text, Rule& rule) { return readNumber(text, rule.count.emplace()); }

// "19970902", "19970902T090000" and the same with Z.
bool readUntil(std::string_view text, Rule& rule) {
  Until& until = rule.until.emplace();
  until.isUtc = text.ends_with('Z');
  if (until.isUtc) text.remove_suffix(1);
  until.isDate = text.size() == kDateLength;
  if (!until.isDate && (text.size() != kDateTimeLength || text[kDateLength] != 'T')) return false;
  if (until.isDate && until.isUtc) return false;
  bool ok = true;
  const auto field = [&](std::size_t at, std::size_t length) {
    unsigned value = 0;
    ok = ok && text[at] >= '0' && text[at] <= '9' && readNumber(text.substr(at, length), value);
    return value;
  };
  const std::chrono::year_month_day date(std::chrono::year(static_cast<int>(field(0, 4))),
                                         std::chrono::month(field(4, 2)), std::chrono::day(field(6, 2)));
  until.wall = std::chrono::local_days(ok && date.ok() ? date : std::chrono::year_month_day());
  if (!ok || !date.ok()) return false;
  if (until.isDate) return true;
  const unsigned hour = field(9, 2), minute = field(11, 2), second = field(13, 2);
  until.wall += std::chrono::seconds(hour * 3600 + minute * 60 + std::min(second, 59U));
  return ok && hour <= 23 && minute <= 59 && second <= 60;
}

template <std::vector<int> Rule::*List>
bool readList(std::string_view text, Rule& rule) {
  do {
    if (!readNumber(takeUpTo(text, ','), (rule.*List).emplace_back())) return false;
  } while (!text.empty());
  return true;
}

bool readByDay(std::string_view text, Rule& rule) {
  do {
    const std::string_view day = takeUpTo(text, ',');
    if (day.size() < 2) return false;
    WeekdayNum& read = rule.byDay.emplace_back();
    const std::string_view ordinal = day.substr(0, day.size() - 2);
    if (!readWeekday(day.substr(day.size() - 2), read.weekday)) return false;
    if (!ordinal.empty() && (!readNumber(ordinal, read.ordinal) || read.ordinal == 0)) return false;
  } while (!text.empty());
  return true;
}

// RFC 7529: the Gregorian scale that skips what a month does not have is what every rule means.
bool readScale(std::string_view text, Rule&) { return text == "GREGORIAN"; }
bool readSkip(std::string_view text, Rule&) { return text == "OMIT"; }

constexpr struct {
  std::string_view name;
  bool (*read)(std::string_view, Rule&);
} kParts[] = {
    {"FREQ", readFrequency},
    {"UNTIL", readUntil},
    {"COUNT", readCount},
    {"INTERVAL", readInterval},
    {"BYSECOND", readList<&Rule::bySecond>},
    {"BYMINUTE", readList<&Rule::byMinute>},
    {"BYHOUR", readList<&Rule::byHour>},
    {"BYDAY", readByDay},
    {"BYMONTHDAY", readList<&Rule::byMonthDay>},
    {"BYYEARDAY", readList<&Rule::byYearDay>},
    {"BYWEEKNO", readList<&Rule::byWeekNo>},
    {"BYMONTH", readList<&Rule::byMonth>},
    {"BYSETPOS", readList<&Rule::bySetPos>},
    {"WKST", readWeekStart},
    {"RSCALE", readScale},
    {"SKIP", readSkip},
};

// Empty when all parts could be read.
std::string readParts(std::string_view text, Rule& rule) {
  unsigned seen = 0;
  do {
    std::string_view value = takeUpTo(text, ';');
    const std::string_view name = takeUpTo(value, '=');
    if (name.starts_with("X-") && !value.empty()) continue;
    const auto* const part =
        std::ranges::find_if(kParts, [&](const auto& known) { return known.name == name; });
    if (part == std::end(kParts)) return "unknown rule part \"" + std::string(name) + "\"";
    const unsigned bit = 1U << (part - std::begin(kParts));
    if ((seen & bit) != 0) return std::string(name) + " twice";
    seen |= bit;
    value = trimmed(value);
    if (value.ends_with(',') || !part->read(value, rule))
      return std::string(name) + " cannot be read: \"" + std::string(value) + "\"";
  } while (!text.empty());
  return (seen & 1) != 0 ? std::string() : std::string("FREQ is missing");
}

void appendNumber(std::string& out, std::int64_t number, std::size_t width = 0) {
  const std::string digits = std::to_string(number);
  if (digits.size() < width) out.append(width - digits.size(), '0');
  out += digits;
}

void appendUntil(std::string& out, const Until& until) {
  const foundation::WallFields wall = foundation::fieldsOf(until.wall);
  out += ";UNTIL=";
  appendNumber(out, wall.year, 4);
  appendNumber(out, wall.month, 2);
  appendNumber(out, wall.day, 2);
  if (until.isDate) return;
  out += 'T';
  appendNumber(out, wall.hour, 2);
  appendNumber(out, wall.minute, 2);
  appendNumber(out, wall.second, 2);
  if (until.isUtc) out += 'Z';
}

void appendList(std::string& out, std::string_view name, const std::vector<int>& values) {
  char separator = '=';
  if (!values.empty()) (out += ';') += name;
  for (const int value : values) {
    out += separator;
    appendNumber(out, value);
    separator = ',';
  }
}

void appendDays(std::string& out, const std::vector<WeekdayNum>& days) {
  char separator = '=';
  if (!days.empty()) out += ";BYDAY";
  for (const WeekdayNum& day : days) {
    out += separator;
    if (day.ordinal != 0) appendNumber(out, day.ordinal);
    out += kWeekdays[day.weekday % 7];
    separator = ',';
  }
}

}  // namespace

std::optional<Rule> parseRule(std::string_view text, std::string* why) {
  const std::string upper = upperCased(trimmed(text));
  Rule rule;
  std::string fault = readParts(upper, rule);
  if (fault.empty())
    if (const char* found = faultIn(rule)) fault = found;
  if (fault.empty()) return rule;
  if (why != nullptr) *why = std::move(fault);
  return std::nullopt;
}

std::string formatRule(const Rule& rule) {
  std::string out = "FREQ=";
  out += kFrequencies[static_cast<std::size_t>(rule.frequency)];
  if (rule.until) appendUntil(out, *rule.until);
  if (rule.count) appendNumber(out += ";COUNT=", *rule.count);
  if (rule.interval != 1) appendNumber(out += ";INTERVAL=", rule.interval);
  appendList(out, "BYSECOND", rule.bySecond);
  appendList(out, "BYMINUTE", rule.byMinute);
  appendList(out, "BYHOUR", rule.byHour);
  appendDays(out, rule.byDay);
  appendList(out, "BYMONTHDAY", rule.byMonthDay);
  appendList(out, "BYYEARDAY", rule.byYearDay);
  appendList(out, "BYWEEKNO", rule.byWeekNo);
  appendList(out, "BYMONTH", rule.byMonth);
  appendList(out, "BYSETPOS", rule.bySetPos);
  if (rule.hasWeekStart || rule.weekStart != kMonday) (out += ";WKST=") += kWeekdays[rule.weekStart % 7];
  return out;
}

}  // namespace ek::recurrence
