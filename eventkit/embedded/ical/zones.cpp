#include "eventkit/embedded/ical/zones.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/ical/windows_zones.h"
#include "eventkit/embedded/recurrence/expansion.h"
#include "eventkit/embedded/recurrence/rule.h"

namespace ek::ical {

namespace {

using foundation::Date;
using foundation::TimeZone;
using foundation::WallTime;
using std::chrono::seconds;
using Zone = std::shared_ptr<const TimeZone>;
using Transition = TimeZone::Transition;

// Rules are followed through the years in which clocks are changed. Exchange begins its rules in 1601.
constexpr int kFirstYear = 1900, kEndYear = 2101;
// No sensible rule has more onsets in these years.
constexpr std::size_t kMostOnsets = 500;

WallTime yearBegin(int year) { return std::chrono::local_days(std::chrono::year(year) / 1 / 1); }

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

// "america/new york" as the zone database spells its names: words begin with capitals, blanks are "_".
std::string spelledAsName(std::string_view text) {
  std::string name;
  for (const char c : text) {
    const bool beginsWord = name.empty() || name.back() == '/' || name.back() == '_' || name.back() == '-';
    const bool isLower = c >= 'a' && c <= 'z';
    const char other = c == ' ' ? '_' : lowered(c);
    name += beginsWord && (isLower || lowered(c) != c) ? static_cast<char>(lowered(c) - ('a' - 'A')) : other;
  }
  return name;
}

Zone ofDatabase(std::string_view name) {
  if (Zone zone = TimeZone::named(name)) return zone;
  const std::string spelled = spelledAsName(name);
  return spelled == name ? nullptr : TimeZone::named(spelled);
}

// The longest end of a path that is a zone's name: "/example.com/2007/America/Argentina/Salta".
Zone behindPrefix(std::string_view tzid) {
  for (std::size_t slash = tzid.find('/'); slash != std::string_view::npos; slash = tzid.find('/', slash + 1))
    if (Zone zone = TimeZone::named(tzid.substr(slash + 1))) return zone;
  return nullptr;
}

std::optional<unsigned> number(std::string_view digits) {
  unsigned value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return error == std::errc() && end == digits.data() + digits.size() ? std::optional(value) : std::nullopt;
}

// "GMT+01:00", "UTC-5", "+0530", "Z": hours east of Greenwich, unlike the database's "Etc/GMT+5".
Zone fixedOffset(std::string_view text) {
  if (equalNames(text, "Z")) return TimeZone::utc();
  if (text.size() >= 3 && (equalNames(text.substr(0, 3), "GMT") || equalNames(text.substr(0, 3), "UTC")))
    text = trimmed(text.substr(3));
  if (text.size() < 2 || (text.front() != '+' && text.front() != '-')) return nullptr;
  const int sign = text.front() == '-' ? -1 : 1;
  text.remove_prefix(1);
  const std::size_t colon = text.find_first_of(":.");
  const std::size_t hourDigits = colon != std::string_view::npos ? colon
                                 : text.size() > 2               ? text.size() - 2
                                                                 : text.size();
  const std::string_view rest = text.substr(hourDigits);
  const auto hours = number(text.substr(0, hourDigits));
  const auto minutes =
      rest.empty() ? std::optional(0U) : number(colon == std::string_view::npos ? rest : rest.substr(1));
  if (!hours || !minutes || hourDigits > 2 || *hours > 18 || *minutes > 59) return nullptr;
  return TimeZone::fixed(sign * seconds(*hours * 3600 + *minutes * 60));
}

// A STANDARD or DAYLIGHT part: the offset that begins with each of its onsets.
class Observance {
 public:
  static std::optional<Observance> read(const Component& part) {
    const auto start = part.value("DTSTART"), to = part.value("TZOFFSETTO"),
               from = part.value("TZOFFSETFROM");
    Observance observance;
    observance.start_ = start ? parseDateTime(*start) : std::nullopt;
    observance.to_ = to ? parseUtcOffset(*to) : std::nullopt;
    if (!observance.start_ || !observance.to_) return std::nullopt;
    observance.from_ = from ? parseUtcOffset(*from) : std::nullopt;
    observance.name_ = decodeText(part.value("TZNAME").value_or(std::string_view()));
    observance.part_ = &part;
    return observance;
  }

  seconds offsetBefore() const { return from_.value_or(*to_); }

  void appendTransitions(std::vector<Transition>& transitions) const {
    append(start_->wall, start_->isUtc, transitions);
    for (const Line* line : part_->all("RDATE"))
      for (const std::string_view value : splitList(line->value()))
        if (const auto date = parseDateTime(value)) append(date->wall, date->isUtc, transitions);
    for (const Line* line : part_->all("RRULE")) appendRule(line->value(), transitions);
  }

 private:
  Date onset(WallTime wall, bool isUtc) const {
    return Date(wall.time_since_epoch()) - (isUtc ? seconds(0) : offsetBefore());
  }

  void append(WallTime wall, bool isUtc, std::vector<Transition>& transitions) const {
    transitions.push_back({.at = onset(wall, isUtc), .offset = *to_, .abbreviation = name_});
  }

  bool isPast(const recurrence::Until& until, WallTime wall) const {
    return until.isUtc ? onset(wall, false).time_since_epoch() > until.wall.time_since_epoch()
                       : wall > until.wall;
  }

  void appendRule(std::string_view text, std::vector<Transition>& transitions) const {
    const std::optional<recurrence::Rule> rule = recurrence::parseRule(text);
    if (!rule || rule->frequency < recurrence::Frequency::weekly) return;
    std::int64_t left = std::min<std::int64_t>(rule->count.value_or(kMostOnsets), kMostOnsets);
    recurrence::Expansion expansion(*rule, start_->wall, false);
    if (!rule->count) expansion.seek(yearBegin(kFirstYear));
    for (auto wall = expansion.next(); wall && left > 0; wall = expansion.next(), --left) {
      if (*wall >= yearBegin(kEndYear) || (rule->until && isPast(*rule->until, *wall))) break;
      if (*wall != start_->wall) append(*wall, false, transitions);
    }
  }

  std::optional<DateTime> start_;
  std::optional<seconds> from_, to_;
  std::string name_;
  const Component* part_ = nullptr;
};

}  // namespace

std::shared_ptr<const TimeZone> zoneOf(const Component& vtimezone) {
  std::vector<Transition> transitions;
  std::optional<seconds> before;
  Date earliest = Date::max();
  for (const Component& part : vtimezone.components()) {
    if (!part.is("STANDARD") && !part.is("DAYLIGHT")) continue;
    const std::optional<Observance> observance = Observance::read(part);
    if (!observance) continue;
    const std::size_t first = transitions.size();
    observance->appendTransitions(transitions);
    if (transitions[first].at < earliest) {
      earliest = transitions[first].at;
      before = observance->offsetBefore();
    }
  }
  if (!before) return nullptr;
  std::ranges::stable_sort(transitions, {}, &Transition::at);
  const auto isSame = [](const Transition& a, const Transition& b) { return a.at == b.at; };
  transitions.erase(std::unique(transitions.begin(), transitions.end(), isSame), transitions.end());
  return TimeZone::fromTransitions(decodeText(trimmed(vtimezone.value("TZID").value_or(std::string_view()))),
                                   *before, std::move(transitions));
}

std::shared_ptr<const TimeZone> zoneNamed(std::string_view tzid) {
  tzid = trimmed(tzid);
  if (tzid.size() >= 2 && tzid.front() == '"' && tzid.back() == '"')
    tzid = trimmed(tzid.substr(1, tzid.size() - 2));
  if (tzid.empty()) return nullptr;
  // First what needs no look at the zone files: a calendar may name such a zone in each of its events.
  if (const std::string_view name = zoneNameForWindows(tzid); !name.empty()) return TimeZone::named(name);
  if (Zone zone = ofDatabase(tzid)) return zone;
  if (Zone zone = fixedOffset(tzid)) return zone;
  return behindPrefix(tzid);
}

std::set<std::string> timeZonesIn(std::string_view text) {
  std::set<std::string> names;
  if (text.find("TZ") == std::string_view::npos && text.find("tz") == std::string_view::npos) return names;
  const auto collect = [&](const auto& self, const Component& component) -> void {
    for (const Line& line : component.lines())
      if (const auto tzid = line.parameter("TZID")) names.insert(*tzid);
    for (const Component& inner : component.components()) self(self, inner);
  };
  for (const Component& component : parseComponents(text)) collect(collect, component);
  return names;
}

}  // namespace ek::ical
