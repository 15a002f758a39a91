#include "eventkit/embedded/recurrence/time_plan.h"

#include <algorithm>
#include <bit>

#include "eventkit/embedded/recurrence/calendar.h"

namespace ek::recurrence {

namespace {

constexpr std::uint64_t kOnlyZero = 1;
constexpr int kHours = 24, kMinutes = 60, kSeconds = 60;

constexpr std::uint64_t allBits(int count) { return (std::uint64_t{1} << count) - 1; }

// Without leap seconds, second 60 is the minute's last one. Values out of range count for nothing.
std::uint64_t bitsOf(const std::vector<int>& values, int count, int most) {
  std::uint64_t bits = 0;
  for (const int value : values)
    if (value >= 0 && value <= most) bits |= std::uint64_t{1} << std::min(value, count - 1);
  return bits;
}

// The first bit from `from` on; 64 when there is none.
int firstBit(std::uint64_t bits, std::int64_t from) {
  return from > 63 ? 64 : std::countr_zero(bits >> from << from);
}

}  // namespace

TimePlan::TimePlan(const Rule& rule, std::int64_t startTime, bool dateOnly) {
  hours_ = allBits(kHours), minutes_ = allBits(kMinutes), seconds_ = allBits(kSeconds);
  if (dateOnly) return;

  // A part of the rule either chooses among the periods or spreads within them.
  const auto divide = [&](const std::vector<int>& part, int count, int most, Frequency periods,
                          std::int64_t start, std::uint64_t& chosen) {
    const std::uint64_t named = bitsOf(part, count, most);
    if (rule.frequency > periods) return named == 0 ? std::uint64_t{1} << start : named;
    if (named != 0) {
      chosen = named;
      isSelective_ = true;
    }
    return kOnlyZero;
  };
  const std::uint64_t hours = divide(rule.byHour, kHours, 23, Frequency::hourly, startTime / 3600, hours_);
  const std::uint64_t minutes =
      divide(rule.byMinute, kMinutes, 59, Frequency::minutely, startTime / 60 % 60, minutes_);
  const std::uint64_t seconds =
      divide(rule.bySecond, kSeconds, 60, Frequency::secondly, startTime % 60, seconds_);

  first_ = std::countr_zero(hours) * 3600 + std::countr_zero(minutes) * 60 + std::countr_zero(seconds);
  const int count = std::popcount(hours) * std::popcount(minutes) * std::popcount(seconds);
  if (count == 1) return;
  several_.reserve(static_cast<std::size_t>(count));
  for (std::uint64_t h = hours; h != 0; h &= h - 1)
    for (std::uint64_t m = minutes; m != 0; m &= m - 1)
      for (std::uint64_t s = seconds; s != 0; s &= s - 1)
        several_.push_back(std::countr_zero(h) * 3600 + std::countr_zero(m) * 60 + std::countr_zero(s));
}

std::int64_t TimePlan::firstNamedTime(std::int64_t time) const {
  const std::int64_t hour = time / 3600, minute = time / 60 % 60, second = time % 60;
  const int firstMinute = std::countr_zero(minutes_), firstSecond = std::countr_zero(seconds_);

  int h = firstBit(hours_, hour);
  if (h > hour) return h < kHours ? h * 3600 + firstMinute * 60 + firstSecond : kDaySeconds;
  int m = firstBit(minutes_, minute);
  if (m == minute) {
    const int s = firstBit(seconds_, second);
    if (s < kSeconds) return h * 3600 + m * 60 + s;
    m = firstBit(minutes_, minute + 1);
  }
  if (m < kMinutes) return h * 3600 + m * 60 + firstSecond;
  h = firstBit(hours_, hour + 1);
  return h < kHours ? h * 3600 + firstMinute * 60 + firstSecond : kDaySeconds;
}

}  // namespace ek::recurrence
