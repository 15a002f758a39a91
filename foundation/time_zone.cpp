#include "foundation/time_zone.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <span>
#include <utility>

#include "foundation/posix_rule.h"
#include "foundation/zone_table.h"

namespace foundation {

namespace {

using std::chrono::seconds;

// Yearly rules are written out up to here; what lies beyond is worked out when it is asked for.
constexpr int kLastTableYear = 2100;
constexpr int kFirstTableYear = 1970;
constexpr std::size_t kMostStretches = 2048;
constexpr unsigned kSmallestShift = 22;

// Far outside any calendar, yet with room to add offsets and within the years of std::chrono.
constexpr std::int64_t kFarthest = 900'000'000'000;

std::int64_t secondsOf(Date date) {
  return std::clamp<std::int64_t>(date.time_since_epoch().count(), -kFarthest, kFarthest);
}

Date dateOf(std::int64_t instant) { return Date(seconds(instant)); }

int yearOf(std::int64_t instant) {
  const auto day = std::chrono::floor<std::chrono::days>(dateOf(instant));
  return static_cast<int>(std::chrono::year_month_day(day).year());
}

std::int64_t startOfYear(int year) {
  using namespace std::chrono;
  return seconds(sys_days(std::chrono::year(year) / January / 1).time_since_epoch()).count();
}

// The first segment, from `segment` on, whose wall clock has not passed `wall` decides; one that begins
// later than `wall` follows a gap, where the offset from before the gap holds.
template <typename Offset>
std::int64_t resolve(std::span<const std::int64_t> at, const Offset* offsets, std::size_t segment,
                     std::int64_t wall) {
  while (segment < at.size() && wall >= at[segment] + offsets[segment]) ++segment;
  const bool inGap = segment > 0 && wall < at[segment - 1] + offsets[segment];
  return wall - offsets[inGap ? segment - 1 : segment];
}

// What an English (US) system calls these clocks; elsewhere the same letters mean something else.
constexpr struct {
  std::string_view letters;
  int hours;
} kNamedClocks[] = {{"EST", -5}, {"EDT", -4}, {"CST", -6},  {"CDT", -5},  {"MST", -7},  {"MDT", -6},
                    {"PST", -8}, {"PDT", -7}, {"AKST", -9}, {"AKDT", -8}, {"HST", -10}, {"HDT", -9}};

}  // namespace

TimeZone::~TimeZone() = default;

TimeZone::TimeZone(std::string name, ZoneTable table) : name_(std::move(name)) {
  ruledBefore_ = std::numeric_limits<std::int64_t>::min();
  ruledFrom_ = std::numeric_limits<std::int64_t>::max();
  if (std::optional<PosixRule> rule = PosixRule::parse(table.rule)) {
    const std::size_t standard = table.typeIndex({rule->standard().offset, rule->standard().letters});
    const std::size_t summer =
        rule->hasSummer() ? table.typeIndex({rule->summer().offset, rule->summer().letters}) : standard;
    const bool holdsAlways = table.entries.empty();
    const std::int64_t after = holdsAlways ? startOfYear(kFirstTableYear) : table.entries.back().at;
    if (holdsAlways) table.initial = standard;
    for (const PosixRule::Change& change : rule->changes(yearOf(after) - 1, kLastTableYear))
      if (change.at > after || holdsAlways)
        table.entries.push_back({change.at, change.toSummer ? summer : standard});
    if (rule->hasSummer()) {
      ruledFrom_ = std::max(startOfYear(kLastTableYear), after);
      if (holdsAlways) ruledBefore_ = startOfYear(kFirstTableYear);
      rule_ = std::make_unique<const PosixRule>(std::move(*rule));
    }
  }

  for (const ZoneTable::Type& type : table.types) {
    letters_.push_back(type.letters);
    widestOffset_ = std::max(widestOffset_, type.offset);
  }
  const auto addSegment = [&](std::size_t type) {
    offset_.push_back(table.types[type].offset);
    letterOf_.push_back(static_cast<std::uint32_t>(type));
  };
  addSegment(table.initial);
  for (const ZoneTable::Entry& entry : table.entries) {
    if (entry.type == letterOf_.back()) continue;
    at_.push_back(entry.at);
    addSegment(entry.type);
  }
  buildIndex();
}

void TimeZone::buildIndex() {
  if (at_.empty()) return;
  const auto span = static_cast<std::uint64_t>(at_.back() - at_.front());
  for (indexShift_ = kSmallestShift; span >> indexShift_ >= kMostStretches;) ++indexShift_;
  for (std::uint64_t stretch = 0; stretch <= span >> indexShift_; ++stretch) {
    const std::int64_t begin = at_.front() + static_cast<std::int64_t>(stretch << indexShift_);
    index_.push_back(static_cast<std::uint32_t>(std::ranges::upper_bound(at_, begin) - at_.begin()));
  }
}

std::size_t TimeZone::segmentAt(std::int64_t instant) const {
  if (at_.empty() || instant < at_.front()) return 0;
  if (instant >= at_.back()) return at_.size();
  const auto stretch = static_cast<std::uint64_t>(instant - at_.front()) >> indexShift_;
  std::size_t segment = index_[stretch];
  while (instant >= at_[segment]) ++segment;
  return segment;
}

bool TimeZone::isRuled(std::int64_t instant) const {
  return rule_ && (instant < ruledBefore_ || instant >= ruledFrom_);
}

TimeZone::Segment TimeZone::ruledSegment(std::int64_t instant) const {
  const int year = yearOf(instant);
  const PosixRule::Phase* phase = nullptr;
  for (const PosixRule::Change& change : rule_->changes(year - 1, year + 1)) {
    if (phase == nullptr || change.at <= instant)
      phase = (change.at <= instant) == change.toSummer ? &rule_->summer() : &rule_->standard();
  }
  return {phase->offset, &phase->letters};
}

std::int64_t TimeZone::ruledInstantOf(std::int64_t wall) const {
  std::vector<std::int64_t> at;
  std::vector<std::int64_t> offsets;
  const int year = yearOf(wall);
  for (const PosixRule::Change& change : rule_->changes(year - 1, year + 1)) {
    if (offsets.empty())
      offsets.push_back(change.toSummer ? rule_->standard().offset : rule_->summer().offset);
    at.push_back(change.at);
    offsets.push_back(change.toSummer ? rule_->summer().offset : rule_->standard().offset);
  }
  return resolve(std::span<const std::int64_t>(at), offsets.data(), 0, wall);
}

TimeZone::Segment TimeZone::segmentOf(Date date) const {
  const std::int64_t instant = secondsOf(date);
  if (isRuled(instant)) return ruledSegment(instant);
  const std::size_t segment = segmentAt(instant);
  return {offset_[segment], &letters_[letterOf_[segment]]};
}

seconds TimeZone::offsetAt(Date date) const {
  const std::int64_t instant = secondsOf(date);
  return seconds(isRuled(instant) ? ruledSegment(instant).offset : offset_[segmentAt(instant)]);
}

Date TimeZone::instantOf(WallTime wall) const {
  const std::int64_t local = secondsOf(Date(wall.time_since_epoch()));
  // A segment that ended before this instant ended on its wall clock too.
  const std::int64_t earliest = local - widestOffset_;
  if (isRuled(earliest)) return dateOf(ruledInstantOf(local));
  return dateOf(resolve(std::span<const std::int64_t>(at_), offset_.data(), segmentAt(earliest), local));
}

std::string TimeZone::letters(Date date) const { return *segmentOf(date).letters; }

std::string TimeZone::abbreviation(Date date) const {
  const Segment segment = segmentOf(date);
  for (const auto& clock : kNamedClocks)
    if (std::int64_t{clock.hours} * 3600 == segment.offset && clock.letters == *segment.letters)
      return std::string(clock.letters);
  std::string text = "GMT";
  if (segment.offset == 0) return text;
  const std::int64_t away = std::abs(segment.offset);
  text += segment.offset < 0 ? '-' : '+';
  text += std::to_string(away / 3600);
  for (std::int64_t unit = 60, rest = away % 3600; rest != 0; unit = 1) {
    text += rest / unit < 10 ? ":0" : ":";
    text += std::to_string(rest / unit);
    rest %= unit;
  }
  return text;
}

std::vector<TimeZone::Transition> TimeZone::transitionsBetween(Date from, Date to) const {
  std::vector<Transition> found;
  const std::int64_t begin = secondsOf(from), end = secondsOf(to);
  if (begin >= end) return found;
  const auto add = [&](std::int64_t at, std::int64_t offset, const std::string& letters) {
    if (at >= begin && at < end) found.push_back({dateOf(at), seconds(offset), letters});
  };
  const auto addRuled = [&](std::int64_t first, std::int64_t last) {
    if (!rule_ || first >= last) return;
    for (const PosixRule::Change& change : rule_->changes(yearOf(first) - 1, yearOf(last) + 1)) {
      const PosixRule::Phase& phase = change.toSummer ? rule_->summer() : rule_->standard();
      if (change.at >= first && change.at < last) add(change.at, phase.offset, phase.letters);
    }
  };
  addRuled(begin, std::min(end, ruledBefore_));
  for (auto at = std::ranges::lower_bound(at_, std::max(begin, ruledBefore_)); at != at_.end(); ++at) {
    const auto segment = static_cast<std::size_t>(at - at_.begin());
    if (*at >= std::min(end, ruledFrom_)) break;
    if (offset_[segment] != offset_[segment + 1])
      add(*at, offset_[segment + 1], letters_[letterOf_[segment + 1]]);
  }
  addRuled(std::max(begin, ruledFrom_), end);
  return found;
}

std::shared_ptr<const TimeZone> TimeZone::fromPosixRule(std::string_view rule) {
  if (!PosixRule::parse(rule)) return nullptr;
  ZoneTable table;
  table.rule = rule;
  std::shared_ptr<TimeZone> zone(new TimeZone({}, std::move(table)));
  zone->posixRule_ = rule;
  return zone;
}

std::shared_ptr<const TimeZone> TimeZone::fixed(seconds eastOfUtc) {
  return fromTransitions({}, eastOfUtc, {});
}

std::shared_ptr<const TimeZone> TimeZone::utc() {
  static const std::shared_ptr<const TimeZone> zone = [] {
    ZoneTable table;
    table.typeIndex({0, "UTC"});
    return std::shared_ptr<const TimeZone>(new TimeZone("UTC", std::move(table)));
  }();
  return zone;
}

std::shared_ptr<const TimeZone> TimeZone::fromTransitions(std::string name, seconds before,
                                                          std::vector<Transition> transitions) {
  ZoneTable table;
  const auto offsetOf = [](seconds offset) { return static_cast<std::int32_t>(offset.count()); };
  table.typeIndex({offsetOf(before), {}});
  for (Transition& transition : transitions)
    table.entries.push_back(
        {secondsOf(transition.at),
         table.typeIndex({offsetOf(transition.offset), std::move(transition.abbreviation)})});
  return std::shared_ptr<const TimeZone>(new TimeZone(std::move(name), std::move(table)));
}

}  // namespace foundation
