#include "eventkit/embedded/recurrence/places.h"

#include <algorithm>

namespace ek::recurrence {

namespace {

using std::chrono::days;
using std::chrono::floor;

// No zone has ever moved its clock further.
constexpr std::chrono::hours kWidestChange{26};

// A series that excludes as many in a row excludes all.
constexpr int kMostExcluded = 1'000'000;

std::size_t firstFrom(const std::vector<WallTime>& ascending, WallTime from) {
  return static_cast<std::size_t>(std::ranges::lower_bound(ascending, from) - ascending.begin());
}

// Moves the index to the first entry that is not before `wall`; whether it is `wall`.
bool reaches(const std::vector<WallTime>& ascending, std::size_t& index, WallTime wall) {
  while (index < ascending.size() && ascending[index] < wall) ++index;
  return index < ascending.size() && ascending[index] == wall;
}

}  // namespace

Places::Stream::Stream(const Series& series, const Rule& rule, std::optional<WallTime> lastStart,
                       const foundation::TimeZone& zone, WallTime from, WallTime last)
    : expansion_(rule, series.start, series.isAllDay), zone_(&zone) {
  if (rule.until && rule.until->isUtc) {
    // UNTIL in UTC means an instant only where starts are instants.
    WallTime wall = rule.until->wall;
    if (series.zone && !series.isAllDay) {
      until_ = Date(wall.time_since_epoch());
      surelyWithin_ = zone.wallTimeOf(*until_) - kWidestChange;
      wall = surelyWithin_ + 2 * kWidestChange;
    }
    last = std::min(last, wall);
  }
  expansion_.limit(lastStart ? std::min(last, *lastStart) : last);
  expansion_.seek(from);
  advance();
}

void Places::Stream::advance() {
  head_ = expansion_.next();
  if (!until_) return;
  // A start in a skipped hour may lie beyond the end while a later one does not: no stopping here.
  while (head_ && *head_ > surelyWithin_ && zone_->instantOf(*head_) > *until_) head_ = expansion_.next();
}

Places::Places(const Series& series, const foundation::TimeZone& zone, WallTime from, WallTime last)
    : series_(series), last_(last) {
  if (series.start >= from && series.start <= last) start_ = series.start;
  rules_.reserve(series.rules.size());
  for (std::size_t i = 0; i < series.rules.size(); ++i)
    rules_.emplace_back(series, series.rules[i],
                        i < series.lastStarts.size() ? series.lastStarts[i] : std::nullopt, zone, from, last);
  for (const Rule& rule : series.exclusionRules)
    exclusions_.emplace_back(series, rule,
                             rule.count ? lastOfCount(rule, series.start, series.isAllDay) : std::nullopt,
                             zone, from, last);
  extra_ = static_cast<std::size_t>(std::ranges::lower_bound(series.extraDates, from, {}, &ExtraDate::start) -
                                    series.extraDates.begin());
  excludedDate_ = firstFrom(series.excludedDates, from);
  excludedDay_ = firstFrom(series.excludedDays, floor<days>(from));
}

std::optional<Place> Places::nextCandidate() {
  std::optional<WallTime> wall = start_;
  for (const Stream& rule : rules_)
    if (rule.head() && (!wall || *rule.head() < *wall)) wall = rule.head();
  const ExtraDate* extra = extra_ < series_.extraDates.size() ? &series_.extraDates[extra_] : nullptr;
  if (extra != nullptr && extra->start > last_) extra = nullptr;
  if (extra != nullptr && (!wall || extra->start < *wall)) wall = extra->start;
  if (!wall) return std::nullopt;

  if (start_ == wall) start_.reset();
  for (Stream& rule : rules_)
    if (rule.head() == wall) rule.advance();
  if (extra == nullptr || extra->start != *wall) return Place{*wall, nullptr};
  while (extra_ < series_.extraDates.size() && series_.extraDates[extra_].start == *wall) ++extra_;
  return Place{*wall, extra};
}

bool Places::isExcluded(WallTime wall) {
  if (reaches(series_.excludedDates, excludedDate_, wall)) return true;
  if (reaches(series_.excludedDays, excludedDay_, floor<days>(wall))) return true;
  return std::ranges::any_of(exclusions_, [wall](Stream& rule) {
    while (rule.head() && *rule.head() < wall) rule.advance();
    return rule.head() == wall;
  });
}

std::optional<Place> Places::next() {
  for (int excluded = 0; excluded <= kMostExcluded; ++excluded) {
    const std::optional<Place> candidate = nextCandidate();
    if (!candidate || !isExcluded(candidate->wall)) return candidate;
  }
  return std::nullopt;
}

}  // namespace ek::recurrence
