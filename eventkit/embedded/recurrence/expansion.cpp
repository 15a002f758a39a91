#include "eventkit/embedded/recurrence/expansion.h"

#include <algorithm>
#include <bit>
#include <numeric>

#include "eventkit/embedded/recurrence/calendar.h"

namespace ek::recurrence {

namespace {

using std::chrono::seconds;

constexpr std::int64_t kFirstDay = -719162, kLastDay = 2932896;  // of the years 1 to 9999
constexpr std::int64_t kFirstSecond = kFirstDay * kDaySeconds, kLastSecond = (kLastDay + 1) * kDaySeconds - 1;
constexpr std::int64_t kWidestInterval = 1'000'000'000'000;

// The calendar repeats itself after 400 years. Who has named nothing in as many periods as these years can
// have, whatever the interval, never will. Within the day that bound would be too far; what stays silent
// for a million steps there is left.
constexpr std::int64_t kMostWithinDay = 1'000'000;
constexpr std::int64_t kMostSilentPeriods[] = {
    kMostWithinDay, kMostWithinDay, kMostWithinDay, 146097, 20871, 4800, 400};

// After so many silent steps within the day it is worth to ask whether there can be any other.
constexpr std::int64_t kSuspicious = 100'000;

constexpr std::int64_t kUnits[] = {1, 60, 3600, 1, 7, 1, 1};

std::int64_t unitOf(const Rule& rule) { return kUnits[static_cast<std::size_t>(rule.frequency)]; }

std::int64_t dayOf(std::int64_t wall) { return floorDiv(wall, kDaySeconds); }

}  // namespace

Expansion::Expansion(const Rule& rule, WallTime start, bool dateOnly)
    : rule_(&rule),
      dayPlan_(rule, std::clamp(dayOf(start.time_since_epoch().count()), kFirstDay, kLastDay)),
      timePlan_(rule,
                start.time_since_epoch().count() - dayOf(start.time_since_epoch().count()) * kDaySeconds,
                dateOnly),
      dateOnly_(dateOnly),
      from_(start.time_since_epoch().count()) {
  step_ = std::clamp<std::int64_t>(rule.interval, 1, kWidestInterval) * unitOf(rule);
  if (rule.frequency < Frequency::daily)
    isUniform_ = !dayPlan_.isSelective() && !timePlan_.isSelective() && !dateOnly;
  else
    isUniform_ = rule.frequency == Frequency::weekly
                     ? !dayPlan_.restrictsMonths()
                     : rule.frequency == Frequency::daily && !dayPlan_.isSelective();
  isSilent_ =
      from_ < kFirstSecond || from_ > kLastSecond || (rule.frequency <= Frequency::daily && !isPickable());
  if (isSilent_) return;
  firstPeriod_ = period_ = periodOf(from_);
  WallTime last{seconds(kLastSecond)};
  if (rule.until && !rule.until->isUtc) last = std::min(last, rule.until->wall);
  limit(last);
}

// For periods of one day or less, which all hold as many times: whether BYSETPOS can mean one of them.
bool Expansion::isPickable() const {
  const auto most = static_cast<int>(timePlan_.size());
  return rule_->bySetPos.empty() || std::ranges::any_of(rule_->bySetPos, [most](int position) {
           return position >= -most && position <= most;
         });
}

std::int64_t Expansion::periodOf(std::int64_t wall) const {
  const std::int64_t day = dayOf(wall);
  switch (rule_->frequency) {
    case Frequency::yearly:
      return civilOf(day).year;
    case Frequency::monthly: {
      const Civil date = civilOf(day);
      return std::int64_t{date.year} * 12 + date.month - 1;
    }
    case Frequency::weekly:
      return day - (weekdayOf(day) + 7 - dayPlan_.weekStart()) % 7;
    case Frequency::daily:
      return day;
    default:
      return floorDiv(wall, unitOf(*rule_)) * unitOf(*rule_);
  }
}

void Expansion::limit(WallTime last) {
  if (isSilent_) return;
  last_ = std::min<std::int64_t>(last_, last.time_since_epoch().count());
  const std::int64_t lastSecond = dateOnly_ ? dayOf(last_) * kDaySeconds + kDaySeconds - 1 : last_;
  lastPeriod_ = periodOf(std::clamp(lastSecond, kFirstSecond - 1, kLastSecond));
}

void Expansion::seek(WallTime from) {
  if (isSilent_) return;
  from_ = std::max<std::int64_t>(from_, from.time_since_epoch().count());
  at_ = size_ = 0;
  if (from_ > std::min(last_, kLastSecond)) {
    period_ = lastPeriod_ + 1;
    return;
  }
  const std::int64_t ahead = periodOf(from_) - firstPeriod_;
  period_ = firstPeriod_ + (ahead + step_ - 1) / step_ * step_;
}

bool Expansion::fill() {
  const std::int64_t mostSilent = kMostSilentPeriods[static_cast<std::size_t>(rule_->frequency)];
  for (std::int64_t silent = 0; period_ <= lastPeriod_ && silent <= mostSilent;) {
    if (generate()) {
      if (trim()) return true;
    } else if (++silent == kSuspicious && rule_->frequency < Frequency::daily && !isReachable()) {
      break;
    }
  }
  period_ = lastPeriod_ + 1;
  at_ = size_ = 0;
  return false;
}

bool Expansion::generate() {
  switch (rule_->frequency) {
    case Frequency::yearly:
      return generateYear();
    case Frequency::monthly:
      return generateMonth();
    case Frequency::weekly:
      return generateWeek();
    case Frequency::daily:
      return generateDay();
    default:
      return generateWithinDay();
  }
}

bool Expansion::generateYear() {
  const auto year = static_cast<int>(period_);
  period_ += step_;
  const std::int64_t firstDay = dayNumber(year, 1, 1);
  base_ = firstDay * kDaySeconds;
  dayCount_ = 0;
  int day = 0;
  for (const std::uint64_t word : dayPlan_.daysOfYear(year, firstDay)) {
    setDays(word, day);
    day += 64;
  }
  return pick();
}

bool Expansion::generateMonth() {
  const auto year = static_cast<int>(period_ / 12);
  const auto month = static_cast<unsigned>(period_ % 12 + 1);
  period_ += step_;
  if (!dayPlan_.namesMonth(month)) return false;
  const std::int64_t firstDay = dayNumber(year, month, 1);
  base_ = firstDay * kDaySeconds;
  dayCount_ = 0;
  setDays(dayPlan_.daysOfMonth(year, month, firstDay), 0);
  return pick();
}

bool Expansion::generateWeek() {
  const std::int64_t firstDay = period_;
  period_ += step_;
  base_ = firstDay * kDaySeconds;
  if (!isUniform_ || dayCount_ == 0) {
    dayCount_ = 0;
    setDays(dayPlan_.daysOfWeek(firstDay), 0);
  }
  return pick();
}

bool Expansion::generateDay() {
  if (step_ == 1 && !isUniform_) period_ = dayPlan_.firstNamedDay(period_, lastPeriod_);
  const std::int64_t day = period_;
  period_ += step_;
  if (day > lastPeriod_ || (!isUniform_ && !dayPlan_.namesDay(day))) return false;
  base_ = day * kDaySeconds;
  dayCount_ = 1;
  days_[0] = 0;
  return pick();
}

// The rule's grid of seconds, from the first point at or after `second`.
std::int64_t Expansion::alignedFrom(std::int64_t second) const {
  return period_ + (second - period_ + step_ - 1) / step_ * step_;
}

bool Expansion::generateWithinDay() {
  const std::int64_t day = dayOf(period_);
  const std::int64_t midnight = day * kDaySeconds;
  if (!isUniform_) {
    if (dayPlan_.isSelective() && !dayPlan_.namesDay(day)) {
      period_ = alignedFrom(dayPlan_.firstNamedDay(day + 1, dayOf(lastPeriod_)) * kDaySeconds);
      return false;
    }
    const std::int64_t time = timePlan_.firstNamedTime(period_ - midnight);
    if (time != period_ - midnight) {
      period_ = alignedFrom(midnight + time);
      return false;
    }
  }
  base_ = dateOnly_ ? midnight : period_;
  period_ = dateOnly_ ? alignedFrom(midnight + kDaySeconds) : period_ + step_;
  dayCount_ = 1;
  days_[0] = 0;
  return pick();
}

// Whether the steps within the day can ever meet a named time on a named weekday: in the course of time they
// come to each second of the week that is a multiple of the common divisor away from the first.
bool Expansion::isReachable() const {
  constexpr std::int64_t week = 7 * kDaySeconds;
  const std::int64_t stride = std::gcd(step_, week);
  const std::int64_t monday = dayNumber(1, 1, 1) * kDaySeconds;
  for (std::int64_t second = (firstPeriod_ - monday) % stride; second < week; second += stride) {
    const std::int64_t time = second % kDaySeconds;
    if (dayPlan_.namesWeekday(weekdayOf((monday + second - time) / kDaySeconds)) &&
        timePlan_.firstNamedTime(time) == time)
      return true;
  }
  return false;
}

void Expansion::setDays(std::uint64_t word, int firstDay) {
  for (; word != 0; word &= word - 1)
    days_[dayCount_++] = static_cast<std::int16_t>(firstDay + std::countr_zero(word));
}

bool Expansion::pick() {
  at_ = 0;
  size_ = dayCount_ * timePlan_.size();
  if (rule_->bySetPos.empty()) return size_ != 0;
  const auto total = static_cast<std::int64_t>(size_);
  picks_.clear();
  for (const int position : rule_->bySetPos) {
    const std::int64_t index = position > 0 ? position - 1 : total + position;
    if (position != 0 && index >= 0 && index < total) picks_.push_back(static_cast<std::uint32_t>(index));
  }
  std::ranges::sort(picks_);
  picks_.erase(std::unique(picks_.begin(), picks_.end()), picks_.end());
  size_ = picks_.size();
  return size_ != 0;
}

// Leaves out what lies before from_ and after last_.
bool Expansion::trim() {
  const auto firstAfter = [this](std::int64_t bound) {
    std::size_t low = 0, high = size_;
    while (low < high) {
      const std::size_t middle = (low + high) / 2;
      if (place(middle) > bound)
        high = middle;
      else
        low = middle + 1;
    }
    return low;
  };
  if (place(size_ - 1) > last_) size_ = firstAfter(last_);
  if (size_ != 0 && place(0) < from_) at_ = firstAfter(from_ - 1);
  return at_ < size_;
}

Expansion::Passed Expansion::pass(std::int64_t most) {
  Passed passed;
  for (std::int64_t periods = 0; passed.count < most; ++periods) {
    if (at_ == size_) {
      if (isUniform_ && periods > 0 && size_ != 0) {
        // Whole periods, but for the last one and what may be cut off by last_.
        const auto each = static_cast<std::int64_t>(dayCount_ * timePlan_.size());
        const std::int64_t named = rule_->bySetPos.empty() ? each : static_cast<std::int64_t>(picks_.size());
        const std::int64_t whole =
            std::min((most - passed.count - 1) / named, (lastPeriod_ - period_) / step_ - 1);
        if (whole > 0) {
          period_ += whole * step_;
          passed.count += whole * named;
        }
      }
      if (!fill()) return passed;
    }
    if (rule_->frequency < Frequency::daily && periods > kMostWithinDay) {
      passed.isComplete = false;
      return passed;
    }
    const std::int64_t taken =
        std::min<std::int64_t>(most - passed.count, static_cast<std::int64_t>(size_ - at_));
    passed.count += taken;
    at_ += static_cast<std::size_t>(taken);
    passed.last = WallTime(seconds(place(at_ - 1)));
  }
  return passed;
}

std::optional<WallTime> lastOfCount(const Rule& rule, WallTime start, bool dateOnly) {
  Expansion expansion(rule, start, dateOnly);
  expansion.seek(start + seconds(1));
  const Expansion::Passed passed = expansion.pass(rule.count.value_or(1) - 1);
  if (!passed.isComplete) return std::nullopt;
  return passed.last.value_or(start);
}

std::int64_t countOfRuleBefore(const Rule& rule, WallTime start, bool dateOnly, WallTime before) {
  if (before <= start) return 0;
  Expansion expansion(rule, start, dateOnly);
  expansion.limit(before - seconds(1));
  expansion.seek(start + seconds(1));
  return 1 + expansion.pass(std::numeric_limits<std::int64_t>::max()).count;
}

}  // namespace ek::recurrence
