// One value of the host's: what a function is given and what it answers with.
#pragma once

#include <memory>

#include "FMWrapper/FMXClient.h"
#include "FMWrapper/FMXDateTime.h"
#include "FMWrapper/FMXFixPt.h"
#include "FMWrapper/FMXText.h"
#include "FMWrapper/FMXTypes.h"

extern "C" {
FMX_API fmx::Data* FM_Data_Constructor1(fmx::_fmxcpt&) noexcept;
FMX_API const fmx::Text* FM_Data_GetAsText(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API const fmx::FixPt* FM_Data_GetAsNumber(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API const fmx::DateTime* FM_Data_GetAsDate(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API const fmx::DateTime* FM_Data_GetAsTime(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API const fmx::DateTime* FM_Data_GetAsTimeStamp(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API bool FM_Data_GetAsBoolean(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API const fmx::Locale* FM_Data_GetLocale(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::int32 FM_Data_GetNativeType(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::errcode FM_Data_SetAsText(void* self, const fmx::Text& text, const fmx::Locale& locale,
                                       fmx::int32 nativeType, fmx::_fmxcpt&) noexcept;
FMX_API void FM_Data_SetAsNumber(void* self, const fmx::FixPt& number, fmx::int32 nativeType,
                                 fmx::_fmxcpt&) noexcept;
FMX_API void FM_Data_SetAsDate(void* self, const fmx::DateTime& date, fmx::int32 nativeType,
                               fmx::_fmxcpt&) noexcept;
FMX_API void FM_Data_SetAsTime(void* self, const fmx::DateTime& time, fmx::int32 nativeType,
                               fmx::_fmxcpt&) noexcept;
FMX_API void FM_Data_SetAsTimeStamp(void* self, const fmx::DateTime& timestamp, fmx::int32 nativeType,
                                    fmx::_fmxcpt&) noexcept;
FMX_API void FM_Data_Delete(void* self, fmx::_fmxcpt&) noexcept;
}

namespace fmx {

class Data {
 public:
  enum DataType : int32 {
    kDTInvalid = 0,
    kDTText = 1,
    kDTNumber = 2,
    kDTDate = 3,
    kDTTime = 4,
    kDTTimeStamp = 5,
    kDTBinary = 6,
    kDTBoolean = 7
  };

  Data() = delete;
  Data(const Data&) = delete;
  Data& operator=(const Data&) = delete;

  // What these return belongs to this value and is good until it changes.
  const Text& GetAsText() const { return *wrapper::checked(FM_Data_GetAsText, this); }
  const FixPt& GetAsNumber() const { return *wrapper::checked(FM_Data_GetAsNumber, this); }
  const DateTime& GetAsDate() const { return *wrapper::checked(FM_Data_GetAsDate, this); }
  const DateTime& GetAsTime() const { return *wrapper::checked(FM_Data_GetAsTime, this); }
  const DateTime& GetAsTimeStamp() const { return *wrapper::checked(FM_Data_GetAsTimeStamp, this); }
  bool GetAsBoolean() const { return wrapper::checked(FM_Data_GetAsBoolean, this); }
  const Locale& GetLocale() const { return *wrapper::checked(FM_Data_GetLocale, this); }
  DataType GetNativeType() const {
    return static_cast<DataType>(wrapper::checked(FM_Data_GetNativeType, this));
  }

  errcode SetAsText(const Text& text, const Locale& locale, DataType nativeType = kDTText) {
    return wrapper::checked(FM_Data_SetAsText, this, text, locale, nativeType);
  }
  void SetAsNumber(const FixPt& number, DataType nativeType = kDTNumber) {
    wrapper::checked(FM_Data_SetAsNumber, this, number, nativeType);
  }
  void SetAsDate(const DateTime& date, DataType nativeType = kDTDate) {
    wrapper::checked(FM_Data_SetAsDate, this, date, nativeType);
  }
  void SetAsTime(const DateTime& time, DataType nativeType = kDTTime) {
    wrapper::checked(FM_Data_SetAsTime, this, time, nativeType);
  }
  void SetAsTimeStamp(const DateTime& timestamp, DataType nativeType = kDTTimeStamp) {
    wrapper::checked(FM_Data_SetAsTimeStamp, this, timestamp, nativeType);
  }

  static void operator delete(void* self) noexcept { wrapper::destroy(FM_Data_Delete, self); }
};

class DataUniquePtr : public std::unique_ptr<Data> {
 public:
  DataUniquePtr() : std::unique_ptr<Data>(wrapper::checked(FM_Data_Constructor1)) {}
};

}  // namespace fmx
