// The compact form of a series. Numbers are written seven bits a byte, low bits first, the sign in the lowest
// bit; ascending dates as differences. What a series does not have costs one bit.
#include <algorithm>
#include <limits>

#include "eventkit/embedded/recurrence/calendar.h"
#include "eventkit/embedded/recurrence/series.h"

namespace ek::recurrence {

namespace {

using std::chrono::seconds;

constexpr char kVersion = 1;
constexpr std::int64_t kFarthestSecond = 400'000'000'000;  // beyond the year 9999, on either side

enum SeriesPart : unsigned {
  kIsAllDay = 1,
  kHasRules = 2,
  kHasExclusionRules = 4,
  kHasExtraDates = 8,
  kHasExcludedDates = 16,
  kHasExcludedDays = 32,
  kHasOverrides = 64,
};

enum RulePart : unsigned {
  kHasInterval = 1,
  kHasCount = 2,
  kHasUntil = 4,
  kUntilIsDate = 8,
  kUntilIsUtc = 16,
  kHasWeekStart = 32,
  kHasByDay = 64,
  kHasFirstList = 128,  // and one bit more for each of kLists
};

constexpr std::vector<int> Rule::*kLists[] = {&Rule::bySecond,   &Rule::byMinute,  &Rule::byHour,
                                              &Rule::byMonthDay, &Rule::byYearDay, &Rule::byWeekNo,
                                              &Rule::byMonth,    &Rule::bySetPos};

class Writer {
 public:
  void byte(unsigned value) { out_ += static_cast<char>(value); }
  void natural(std::uint64_t value) {
    for (; value >= 0x80; value >>= 7) byte(static_cast<unsigned>(value & 0x7F) | 0x80U);
    byte(static_cast<unsigned>(value));
  }
  void integer(std::int64_t value) {
    natural(static_cast<std::uint64_t>(value) << 1 ^ static_cast<std::uint64_t>(value >> 63));
  }
  void wall(WallTime wall) { integer(wall.time_since_epoch().count()); }
  void text(std::string_view text) {
    natural(text.size());
    out_ += text;
  }
  void duration(const Duration& duration) {
    integer(duration.days);
    integer(duration.seconds);
  }
  void moment(const Moment& moment) {
    integer(moment.seconds);
    byte(moment.isFloating ? 1 : 0);
  }
  void walls(const std::vector<WallTime>& ascending) {
    natural(ascending.size());
    WallTime before{};
    for (const WallTime wall : ascending) {
      integer((wall - before).count());
      before = wall;
    }
  }
  std::string take() { return std::move(out_); }

 private:
  std::string out_;
};

// After the first reading past the end everything reads as nothing, and isGood says so.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : at_(bytes.data()), end_(bytes.data() + bytes.size()) {}

  bool isGood() const { return good_; }
  bool isAtEnd() const { return at_ == end_; }
  void fail() {
    good_ = false;
    at_ = end_;
  }

  unsigned byte() {
    if (at_ != end_) return static_cast<unsigned char>(*at_++);
    good_ = false;
    return 0;
  }
  std::uint64_t natural() {
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift < 64; shift += 7) {
      const unsigned next = byte();
      value |= std::uint64_t{next & 0x7F} << shift;
      if (next < 0x80) return value;
    }
    fail();
    return 0;
  }
  std::int64_t integer() {
    const std::uint64_t value = natural();
    return static_cast<std::int64_t>(value >> 1) ^ -static_cast<std::int64_t>(value & 1);
  }
  // How many entries follow: never more than there are bytes.
  std::size_t count() {
    const std::uint64_t value = natural();
    if (value <= static_cast<std::uint64_t>(end_ - at_)) return static_cast<std::size_t>(value);
    fail();
    return 0;
  }
  std::int64_t bounded(std::int64_t most) {
    const std::int64_t value = integer();
    if (value >= -most && value <= most) return value;
    fail();
    return 0;
  }
  WallTime wall() { return WallTime(seconds(bounded(kFarthestSecond))); }
  std::string text() {
    const std::size_t length = count();
    std::string text(at_, length);
    at_ += length;
    return text;
  }
  Duration duration() {
    const std::int64_t days = integer();
    return {days, integer()};
  }
  Moment moment() {
    const std::int64_t at = bounded(kFarthestSecond);
    return {at, byte() != 0};
  }
  void walls(std::vector<WallTime>& out) {
    const std::size_t size = count();
    out.reserve(size);
    WallTime before{};
    for (std::size_t i = 0; i < size && good_; ++i) {
      const WallTime wall = before + seconds(bounded(2 * kFarthestSecond));
      if (i > 0 && wall < before) fail();
      out.push_back(before = wall);
    }
  }

 private:
  const char* at_;
  const char* end_;
  bool good_ = true;
};

unsigned partsOf(const Rule& rule) {
  unsigned parts = 0;
  if (rule.interval != 1) parts |= kHasInterval;
  if (rule.count) parts |= kHasCount;
  if (rule.until) parts |= kHasUntil;
  if (rule.until && rule.until->isDate) parts |= kUntilIsDate;
  if (rule.until && rule.until->isUtc) parts |= kUntilIsUtc;
  if (rule.hasWeekStart) parts |= kHasWeekStart;
  if (!rule.byDay.empty()) parts |= kHasByDay;
  unsigned bit = kHasFirstList;
  for (const auto list : kLists) {
    if (!(rule.*list).empty()) parts |= bit;
    bit <<= 1;
  }
  return parts;
}

void write(Writer& out, const Rule& rule) {
  const unsigned parts = partsOf(rule);
  out.byte(static_cast<unsigned>(rule.frequency) | rule.weekStart << 4);
  out.natural(parts);
  if (rule.interval != 1) out.integer(rule.interval);
  if (rule.count) out.integer(*rule.count);
  if (rule.until) out.wall(rule.until->wall);
  if (!rule.byDay.empty()) out.natural(rule.byDay.size());
  for (const WeekdayNum& day : rule.byDay) out.integer(day.ordinal * 8 + static_cast<int>(day.weekday));
  for (const auto list : kLists) {
    if (!(rule.*list).empty()) out.natural((rule.*list).size());
    for (const int value : rule.*list) out.integer(value);
  }
}

void readByDay(Reader& in, std::vector<WeekdayNum>& days) {
  const std::size_t size = in.count();
  days.reserve(size);
  for (std::size_t i = 0; i < size; ++i) {
    const auto value = static_cast<int>(in.bounded(1 << 10));
    days.push_back({static_cast<int>(floorDiv(value, 8)), static_cast<unsigned>(value & 7)});
  }
}

void readList(Reader& in, std::vector<int>& values) {
  const std::size_t size = in.count();
  values.reserve(size);
  for (std::size_t i = 0; i < size; ++i) values.push_back(static_cast<int>(in.bounded(1 << 10)));
}

void read(Reader& in, Rule& rule) {
  const unsigned head = in.byte();
  if ((head & 0xF) > static_cast<unsigned>(Frequency::yearly)) return in.fail();
  rule.frequency = static_cast<Frequency>(head & 0xF);
  rule.weekStart = head >> 4;
  const std::uint64_t parts = in.natural();
  if ((parts & kHasInterval) != 0) rule.interval = in.integer();
  if ((parts & kHasCount) != 0) rule.count = in.integer();
  if ((parts & kHasUntil) != 0)
    rule.until = Until{in.wall(), (parts & kUntilIsDate) != 0, (parts & kUntilIsUtc) != 0};
  rule.hasWeekStart = (parts & kHasWeekStart) != 0;
  if ((parts & kHasByDay) != 0) readByDay(in, rule.byDay);
  std::uint64_t bit = kHasFirstList;
  for (const auto list : kLists) {
    if ((parts & bit) != 0) readList(in, rule.*list);
    bit <<= 1;
  }
  if (parts >= bit || faultIn(rule) != nullptr) in.fail();
}

void readRules(Reader& in, std::vector<Rule>& rules) {
  const std::size_t size = in.count();
  for (std::size_t i = 0; i < size && in.isGood(); ++i) read(in, rules.emplace_back());
}

unsigned partsOf(const Series& series) {
  return (series.isAllDay ? kIsAllDay : 0U) | (series.rules.empty() ? 0U : kHasRules) |
         (series.exclusionRules.empty() ? 0U : kHasExclusionRules) |
         (series.extraDates.empty() ? 0U : kHasExtraDates) |
         (series.excludedDates.empty() ? 0U : kHasExcludedDates) |
         (series.excludedDays.empty() ? 0U : kHasExcludedDays) |
         (series.overrides.empty() ? 0U : kHasOverrides);
}

void writeRules(Writer& out, const Series& series) {
  out.natural(series.rules.size());
  for (std::size_t i = 0; i < series.rules.size(); ++i) {
    write(out, series.rules[i]);
    if (!series.rules[i].count) continue;
    const bool isKnown = i < series.lastStarts.size() && series.lastStarts[i];
    out.byte(isKnown ? 1 : 0);
    if (isKnown) out.integer((*series.lastStarts[i] - series.start).count());
  }
}

void readRulesWithEnds(Reader& in, Series& series) {
  const std::size_t size = in.count();
  for (std::size_t i = 0; i < size && in.isGood(); ++i) {
    Rule& rule = series.rules.emplace_back();
    std::optional<WallTime>& lastStart = series.lastStarts.emplace_back();
    read(in, rule);
    if (rule.count && in.byte() != 0) lastStart = series.start + seconds(in.bounded(2 * kFarthestSecond));
  }
}

void writeExtraDates(Writer& out, const std::vector<ExtraDate>& dates) {
  out.natural(dates.size());
  for (const ExtraDate& date : dates) {
    out.wall(date.start);
    out.byte(date.duration ? 1 : 0);
    if (date.duration) out.duration(*date.duration);
  }
}

void readExtraDates(Reader& in, std::vector<ExtraDate>& dates) {
  const std::size_t size = in.count();
  for (std::size_t i = 0; i < size && in.isGood(); ++i) {
    ExtraDate& date = dates.emplace_back();
    date.start = in.wall();
    if (in.byte() != 0) date.duration = in.duration();
  }
  if (!std::ranges::is_sorted(dates, {}, &ExtraDate::start)) in.fail();
}

void writeOverrides(Writer& out, const std::vector<Override>& overrides) {
  out.natural(overrides.size());
  for (const Override& override : overrides) {
    out.wall(override.recurrenceId);
    out.moment(override.start);
    out.moment(override.end);
    out.byte(override.isAllDay ? 1 : 0);
    out.text(override.title);
  }
}

void readOverrides(Reader& in, std::vector<Override>& overrides) {
  const std::size_t size = in.count();
  for (std::size_t i = 0; i < size && in.isGood(); ++i) {
    Override& override = overrides.emplace_back();
    override.recurrenceId = in.wall();
    override.start = in.moment();
    override.end = in.moment();
    override.isAllDay = in.byte() != 0;
    override.title = in.text();
  }
  if (!std::ranges::is_sorted(overrides, {}, &Override::recurrenceId)) in.fail();
}

}  // namespace

std::string encode(const Series& series, std::string_view zoneKey) {
  Writer out;
  const unsigned parts = partsOf(series);
  out.byte(kVersion);
  out.byte(parts);
  out.wall(series.start);
  out.duration(series.duration);
  out.text(zoneKey);
  out.text(series.title);
  if ((parts & kHasRules) != 0) writeRules(out, series);
  if ((parts & kHasExclusionRules) != 0) {
    out.natural(series.exclusionRules.size());
    for (const Rule& rule : series.exclusionRules) write(out, rule);
  }
  if ((parts & kHasExtraDates) != 0) writeExtraDates(out, series.extraDates);
  if ((parts & kHasExcludedDates) != 0) out.walls(series.excludedDates);
  if ((parts & kHasExcludedDays) != 0) out.walls(series.excludedDays);
  if ((parts & kHasOverrides) != 0) writeOverrides(out, series.overrides);
  return out.take();
}

std::optional<Decoded> decode(std::string_view bytes) {
  if (!bytes.starts_with(kVersion)) return std::nullopt;
  Reader in(bytes.substr(1));
  std::optional<Decoded> decoded(std::in_place);
  Series& series = decoded->series;
  const unsigned parts = in.byte();
  series.isAllDay = (parts & kIsAllDay) != 0;
  series.start = in.wall();
  series.duration = in.duration();
  decoded->zoneKey = in.text();
  series.title = in.text();
  if ((parts & kHasRules) != 0) readRulesWithEnds(in, series);
  if ((parts & kHasExclusionRules) != 0) readRules(in, series.exclusionRules);
  if ((parts & kHasExtraDates) != 0) readExtraDates(in, series.extraDates);
  if ((parts & kHasExcludedDates) != 0) in.walls(series.excludedDates);
  if ((parts & kHasExcludedDays) != 0) in.walls(series.excludedDays);
  if ((parts & kHasOverrides) != 0) readOverrides(in, series.overrides);
  if (!in.isGood() || !in.isAtEnd() || parts >= 2 * kHasOverrides) return std::nullopt;
  return decoded;
}

}  // namespace ek::recurrence
