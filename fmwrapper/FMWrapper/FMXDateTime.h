// Dates, times and timestamps of the host's.
#pragma once

#include <memory>

#include "FMWrapper/FMXClient.h"
#include "FMWrapper/FMXFixPt.h"

extern "C" {
FMX_API fmx::DateTime* FM_DateTime_Constructor1(fmx::_fmxcpt&) noexcept;
FMX_API fmx::errcode FM_DateTime_SetNormalizedDate1(void* self, fmx::int16 month, fmx::int16 day,
                                                    fmx::int16 year, fmx::_fmxcpt&) noexcept;
FMX_API fmx::errcode FM_DateTime_SetNormalizedDate2(void* self, const fmx::FixPt& year,
                                                    const fmx::FixPt& month, const fmx::FixPt& day,
                                                    fmx::_fmxcpt&) noexcept;
FMX_API fmx::errcode FM_DateTime_SetNormalizedTime1(void* self, fmx::int64 hour, fmx::int16 minute,
                                                    fmx::int16 second, fmx::int32 microseconds,
                                                    fmx::_fmxcpt&) noexcept;
FMX_API fmx::errcode FM_DateTime_SetNormalizedTime2(void* self, const fmx::FixPt& hour,
                                                    const fmx::FixPt& minute, const fmx::FixPt& second,
                                                    fmx::_fmxcpt&) noexcept;
FMX_API fmx::int16 FM_DateTime_GetYear(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::int16 FM_DateTime_GetMonth(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::int16 FM_DateTime_GetDay(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::int32 FM_DateTime_GetHour(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::int16 FM_DateTime_GetMinute(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::int16 FM_DateTime_GetSec(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::int32 FM_DateTime_GetUSec(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API void FM_DateTime_Delete(void* self, fmx::_fmxcpt&) noexcept;
}

namespace fmx {

class DateTime {
 public:
  DateTime() = delete;
  DateTime(const DateTime&) = delete;
  DateTime& operator=(const DateTime&) = delete;

  // Month and day may be out of range: they carry. Mind the two orders.
  errcode SetNormalizedDate(int16 month, int16 day, int16 year) {
    return wrapper::checked(FM_DateTime_SetNormalizedDate1, this, month, day, year);
  }
  errcode SetNormalizedDate(const FixPt& year, const FixPt& month, const FixPt& day) {
    return wrapper::checked(FM_DateTime_SetNormalizedDate2, this, year, month, day);
  }
  errcode SetNormalizedTime(int64 hour, int16 minute, int16 second, int32 microseconds = 0) {
    return wrapper::checked(FM_DateTime_SetNormalizedTime1, this, hour, minute, second, microseconds);
  }
  errcode SetNormalizedTime(const FixPt& hour, const FixPt& minute, const FixPt& second) {
    return wrapper::checked(FM_DateTime_SetNormalizedTime2, this, hour, minute, second);
  }

  int16 GetYear() const { return wrapper::checked(FM_DateTime_GetYear, this); }
  int16 GetMonth() const { return wrapper::checked(FM_DateTime_GetMonth, this); }
  int16 GetDay() const { return wrapper::checked(FM_DateTime_GetDay, this); }
  int32 GetHour() const { return wrapper::checked(FM_DateTime_GetHour, this); }
  int16 GetMinute() const { return wrapper::checked(FM_DateTime_GetMinute, this); }
  int16 GetSec() const { return wrapper::checked(FM_DateTime_GetSec, this); }
  int32 GetUSec() const { return wrapper::checked(FM_DateTime_GetUSec, this); }

  static void operator delete(void* self) noexcept { wrapper::destroy(FM_DateTime_Delete, self); }
};

class DateTimeUniquePtr : public std::unique_ptr<DateTime> {
 public:
  DateTimeUniquePtr() : std::unique_ptr<DateTime>(wrapper::checked(FM_DateTime_Constructor1)) {}
};

}  // namespace fmx
