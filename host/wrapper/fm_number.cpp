#include <algorithm>
#include <limits>
#include <stdexcept>

#include "host/wrapper/host_call.h"

using namespace fmhost;
using Failure = fmx::_fmxcpt;
using fmx::int32;
using fmx::int64;

namespace {

// An absent or invalid number counts 0.
Decimal counted(const Number& number) {
  return number.presence == Presence::present ? number.value : Decimal();
}

void assign(void* self, const Decimal& value) {
  auto& number = as<Number>(self);
  number.value = value;
  number.presence = Presence::present;
}

}  // namespace

fmx::FixPt* FM_FixPt_Constructor1(int32 value, int precision, Failure& failure) noexcept {
  return make<Number>(failure, Decimal(value), precision);
}

fmx::FixPt* FM_FixPt_Constructor2(int32 value, const fmx::FixPt& precisionOf, Failure& failure) noexcept {
  return make<Number>(failure, Decimal(value), inside(precisionOf).precision);
}

void FM_FixPt_AssignInt(void* self, int32 n, Failure& failure) noexcept {
  hostCall(failure, [&] { assign(self, Decimal(n)); });
}

void FM_FixPt_AssignInt64(void* self, int64 n, Failure& failure) noexcept {
  hostCall(failure, [&] { assign(self, Decimal(n)); });
}

void FM_FixPt_AssignDouble(void* self, double x, Failure& failure) noexcept {
  hostCall(failure, [&] {
    const auto number = Decimal::fromDouble(x);
    if (!number) throw std::invalid_argument("no finite number");
    assign(self, *number);
  });
}

void FM_FixPt_AssignFixPt(void* self, const fmx::FixPt& other, Failure& failure) noexcept {
  hostCall(failure, [&] { as<Number>(self) = inside(other); });
}

int32 FM_FixPt_AsLong(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] {
    using Limits = std::numeric_limits<int32>;
    return static_cast<int32>(
        std::clamp<int64>(counted(as<Number>(self)).truncated(), Limits::min(), Limits::max()));
  });
}

int64 FM_FixPt_AsLong64(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return int64{counted(as<Number>(self)).truncated()}; });
}

double FM_FixPt_AsFloat(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return counted(as<Number>(self)).toDouble(); });
}

bool FM_FixPt_AsBool(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return !counted(as<Number>(self)).isZero(); });
}

void FM_FixPt_Delete(void* self, Failure& failure) noexcept { destroy<Number>(self, failure); }
