// Four-character codes and locales.
#pragma once

#include <memory>

#include "FMWrapper/FMXClient.h"

extern "C" {
FMX_API fmx::QuadChar* FM_QuadChar_Constructor1(fmx::_fmxcpt&) noexcept;
FMX_API fmx::QuadChar* FM_QuadChar_Constructor2(char, char, char, char, fmx::_fmxcpt&) noexcept;
FMX_API fmx::QuadChar* FM_QuadChar_Constructor3(const fmx::QuadChar&, fmx::_fmxcpt&) noexcept;
FMX_API fmx::uchar FM_QuadChar_operatorCAR(const void* self, int index, fmx::_fmxcpt&) noexcept;
FMX_API fmx::uint32 FM_QuadChar_GetMacType(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API void FM_QuadChar_Delete(void* self, fmx::_fmxcpt&) noexcept;

FMX_API fmx::Locale* FM_Locale_Constructor1(fmx::int32 kind, fmx::_fmxcpt&) noexcept;
FMX_API fmx::Locale* FM_Locale_Constructor2(const fmx::Locale&, fmx::_fmxcpt&) noexcept;
FMX_API void FM_Locale_Delete(void* self, fmx::_fmxcpt&) noexcept;
}

namespace fmx {

class QuadChar {
 public:
  QuadChar() = delete;
  QuadChar(const QuadChar&) = delete;
  QuadChar& operator=(const QuadChar&) = delete;

  uchar operator[](int index) const { return wrapper::checked(FM_QuadChar_operatorCAR, this, index); }
  uint32 GetMacType() const { return wrapper::checked(FM_QuadChar_GetMacType, this); }

  static void operator delete(void* self) noexcept { wrapper::destroy(FM_QuadChar_Delete, self); }
};

class QuadCharUniquePtr : public std::unique_ptr<QuadChar> {
 public:
  QuadCharUniquePtr() : std::unique_ptr<QuadChar>(wrapper::checked(FM_QuadChar_Constructor1)) {}
  QuadCharUniquePtr(char first, char second, char third, char fourth)
      : std::unique_ptr<QuadChar>(wrapper::checked(FM_QuadChar_Constructor2, first, second, third, fourth)) {}
  explicit QuadCharUniquePtr(const QuadChar& other)
      : std::unique_ptr<QuadChar>(wrapper::checked(FM_QuadChar_Constructor3, other)) {}
};

class Locale {
 public:
  enum Type : int32 { kType_None = 0, kType_System = 1, kType_Invalid = 0xFFFF };

  Locale() = delete;
  Locale(const Locale&) = delete;
  Locale& operator=(const Locale&) = delete;

  static void operator delete(void* self) noexcept { wrapper::destroy(FM_Locale_Delete, self); }
};

class LocaleUniquePtr : public std::unique_ptr<Locale> {
 public:
  explicit LocaleUniquePtr(Locale::Type kind = Locale::kType_System)
      : std::unique_ptr<Locale>(wrapper::checked(FM_Locale_Constructor1, kind)) {}
  explicit LocaleUniquePtr(const Locale& other)
      : std::unique_ptr<Locale>(wrapper::checked(FM_Locale_Constructor2, other)) {}
};

}  // namespace fmx
