// Numbers of the host's: decimal, with a precision of their own.
#pragma once

#include <memory>

#include "FMWrapper/FMXClient.h"

extern "C" {
FMX_API fmx::FixPt* FM_FixPt_Constructor1(fmx::int32 value, int precision, fmx::_fmxcpt&) noexcept;
FMX_API fmx::FixPt* FM_FixPt_Constructor2(fmx::int32 value, const fmx::FixPt& precisionOf,
                                          fmx::_fmxcpt&) noexcept;
FMX_API void FM_FixPt_AssignInt(void* self, fmx::int32 n, fmx::_fmxcpt&) noexcept;
FMX_API void FM_FixPt_AssignInt64(void* self, fmx::int64 n, fmx::_fmxcpt&) noexcept;
FMX_API void FM_FixPt_AssignDouble(void* self, double x, fmx::_fmxcpt&) noexcept;
FMX_API void FM_FixPt_AssignFixPt(void* self, const fmx::FixPt& other, fmx::_fmxcpt&) noexcept;
FMX_API fmx::int32 FM_FixPt_AsLong(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::int64 FM_FixPt_AsLong64(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API double FM_FixPt_AsFloat(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API bool FM_FixPt_AsBool(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API void FM_FixPt_Delete(void* self, fmx::_fmxcpt&) noexcept;
}

namespace fmx {

class FixPt {
 public:
  enum { kDefltFixedPrecision = 16 };

  FixPt() = delete;
  FixPt(const FixPt&) = delete;
  FixPt& operator=(const FixPt&) = delete;

  void AssignInt(int32 n) { wrapper::checked(FM_FixPt_AssignInt, this, n); }
  void AssignInt64(int64 n) { wrapper::checked(FM_FixPt_AssignInt64, this, n); }
  void AssignDouble(double x) { wrapper::checked(FM_FixPt_AssignDouble, this, x); }
  void AssignFixPt(const FixPt& other) { wrapper::checked(FM_FixPt_AssignFixPt, this, other); }

  int32 AsLong() const { return wrapper::checked(FM_FixPt_AsLong, this); }
  int64 AsLong64() const { return wrapper::checked(FM_FixPt_AsLong64, this); }
  double AsFloat() const { return wrapper::checked(FM_FixPt_AsFloat, this); }
  bool AsBool() const { return wrapper::checked(FM_FixPt_AsBool, this); }

  static void operator delete(void* self) noexcept { wrapper::destroy(FM_FixPt_Delete, self); }
};

class FixPtUniquePtr : public std::unique_ptr<FixPt> {
 public:
  explicit FixPtUniquePtr(int32 value = 0, int precision = FixPt::kDefltFixedPrecision)
      : std::unique_ptr<FixPt>(wrapper::checked(FM_FixPt_Constructor1, value, precision)) {}
  FixPtUniquePtr(int32 value, const FixPt& precisionOf)
      : std::unique_ptr<FixPt>(wrapper::checked(FM_FixPt_Constructor2, value, precisionOf)) {}
};

}  // namespace fmx
