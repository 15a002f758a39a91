#include <stdexcept>

#include "host/wrapper/host_call.h"

using namespace fmhost;
using Failure = fmx::_fmxcpt;

namespace {

std::uint8_t byteFrom(char c) { return static_cast<std::uint8_t>(c); }

}  // namespace

fmx::QuadChar* FM_QuadChar_Constructor1(Failure& failure) noexcept { return make<QuadChar>(failure); }

fmx::QuadChar* FM_QuadChar_Constructor2(char first, char second, char third, char fourth,
                                        Failure& failure) noexcept {
  return make<QuadChar>(failure,
                        QuadChar{{byteFrom(first), byteFrom(second), byteFrom(third), byteFrom(fourth)}});
}

fmx::QuadChar* FM_QuadChar_Constructor3(const fmx::QuadChar& other, Failure& failure) noexcept {
  return make<QuadChar>(failure, inside(other));
}

fmx::uchar FM_QuadChar_operatorCAR(const void* self, int index, Failure& failure) noexcept {
  return hostCall(failure, [&] {
    if (index < 0 || index > 3) throw std::out_of_range("a four-character code has positions 0 to 3");
    return fmx::uchar{as<QuadChar>(self).bytes[index]};
  });
}

fmx::uint32 FM_QuadChar_GetMacType(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] {
    fmx::uint32 code = 0;
    for (const std::uint8_t byte : as<QuadChar>(self).bytes) code = code << 8 | byte;
    return code;
  });
}

void FM_QuadChar_Delete(void* self, Failure& failure) noexcept { destroy<QuadChar>(self, failure); }

fmx::Locale* FM_Locale_Constructor1(fmx::int32 kind, Failure& failure) noexcept {
  return make<Locale>(failure, kind);
}

fmx::Locale* FM_Locale_Constructor2(const fmx::Locale& other, Failure& failure) noexcept {
  return make<Locale>(failure, inside(other));
}

void FM_Locale_Delete(void* self, Failure& failure) noexcept { destroy<Locale>(self, failure); }
