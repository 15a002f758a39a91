#include "host/wrapper/host_call.h"

using namespace fmhost;
using Failure = fmx::_fmxcpt;
using fmx::errcode;
using fmx::int16;
using fmx::int32;
using fmx::int64;

namespace {

constexpr errcode kDateOutOfRange = 500;
constexpr errcode kTimeOutOfRange = 501;
constexpr int64 kMicrosecondsPerSecond = 1'000'000;

errcode setDate(DateTime& moment, int64 year, int64 month, int64 day) {
  const DateTime date = dateFromParts(year, month, day);
  moment.day = date.day;
  moment.presence = date.presence;
  return date.isPresent() ? 0 : kDateOutOfRange;
}

errcode setTime(DateTime& moment, const Decimal& seconds) {
  const DateTime time = timeFromSeconds(seconds);
  moment.microseconds = time.microseconds;
  if (moment.presence != Presence::invalid) moment.presence = time.presence;
  return time.isPresent() ? 0 : kTimeOutOfRange;
}

int64 secondsIn(const void* self) { return as<DateTime>(self).microseconds / kMicrosecondsPerSecond; }

}  // namespace

fmx::DateTime* FM_DateTime_Constructor1(Failure& failure) noexcept { return make<DateTime>(failure); }

errcode FM_DateTime_SetNormalizedDate1(void* self, int16 month, int16 day, int16 year,
                                       Failure& failure) noexcept {
  return hostCall(failure, [&] { return setDate(as<DateTime>(self), year, month, day); });
}

errcode FM_DateTime_SetNormalizedDate2(void* self, const fmx::FixPt& year, const fmx::FixPt& month,
                                       const fmx::FixPt& day, Failure& failure) noexcept {
  return hostCall(failure, [&] {
    return setDate(as<DateTime>(self), inside(year).value.truncated(), inside(month).value.truncated(),
                   inside(day).value.truncated());
  });
}

errcode FM_DateTime_SetNormalizedTime1(void* self, int64 hour, int16 minute, int16 second, int32 microseconds,
                                       Failure& failure) noexcept {
  return hostCall(failure, [&] {
    DateTime& moment = as<DateTime>(self);
    constexpr int64 kMostHours = 100'000'000;
    if (hour > kMostHours || hour < -kMostHours) return kTimeOutOfRange;
    moment.microseconds =
        ((hour * 60 + int64{minute}) * 60 + int64{second}) * kMicrosecondsPerSecond + int64{microseconds};
    if (moment.presence == Presence::absent) moment.presence = Presence::present;
    return errcode{0};
  });
}

errcode FM_DateTime_SetNormalizedTime2(void* self, const fmx::FixPt& hour, const fmx::FixPt& minute,
                                       const fmx::FixPt& second, Failure& failure) noexcept {
  return hostCall(failure, [&] {
    const Decimal minutes = inside(hour).value * Decimal(60) + inside(minute).value;
    return setTime(as<DateTime>(self), minutes * Decimal(60) + inside(second).value);
  });
}

int16 FM_DateTime_GetYear(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return static_cast<int16>(calendarDay(as<DateTime>(self)).year); });
}

int16 FM_DateTime_GetMonth(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return static_cast<int16>(calendarDay(as<DateTime>(self)).month); });
}

int16 FM_DateTime_GetDay(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return static_cast<int16>(calendarDay(as<DateTime>(self)).day); });
}

int32 FM_DateTime_GetHour(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return static_cast<int32>(secondsIn(self) / 3600); });
}

int16 FM_DateTime_GetMinute(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return static_cast<int16>(secondsIn(self) / 60 % 60); });
}

int16 FM_DateTime_GetSec(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return static_cast<int16>(secondsIn(self) % 60); });
}

int32 FM_DateTime_GetUSec(const void* self, Failure& failure) noexcept {
  return hostCall(
      failure, [&] { return static_cast<int32>(as<DateTime>(self).microseconds % kMicrosecondsPerSecond); });
}

void FM_DateTime_Delete(void* self, Failure& failure) noexcept { destroy<DateTime>(self, failure); }
