// Text of the host's: UTF-16. Positions and sizes count 16-bit units.
#pragma once

#include <memory>

#include "FMWrapper/FMXClient.h"

extern "C" {
FMX_API fmx::Text* FM_Text_Constructor1(fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_Assign(void* self, const char* s, fmx::int32 encoding, fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_AssignUnicode(void* self, const fmx::uint16* s, fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_AssignWide(void* self, const wchar_t* s, fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_AssignWithLength(void* self, const char* s, fmx::uint32 length, fmx::int32 encoding,
                                      fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_AssignUnicodeWithLength(void* self, const fmx::uint16* s, fmx::uint32 length,
                                             fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_AssignWideWithLength(void* self, const wchar_t* s, fmx::uint32 length,
                                          fmx::_fmxcpt&) noexcept;
FMX_API fmx::uint32 FM_Text_GetSize(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_GetUnicode(const void* self, fmx::uint16* buffer, fmx::uint32 position, fmx::uint32 size,
                                fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_GetBytes(const void* self, char* buffer, fmx::uint32 bufferBytes, fmx::uint32 position,
                              fmx::uint32 size, fmx::int32 encoding, fmx::_fmxcpt&) noexcept;
FMX_API fmx::uint32 FM_Text_GetBytesEx(const void* self, char* buffer, fmx::uint32 bufferBytes,
                                       fmx::uint32 position, fmx::uint32 size, fmx::int32 encoding,
                                       fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_SetText(void* self, const fmx::Text& other, fmx::uint32 position, fmx::uint32 size,
                             fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_AppendText(void* self, const fmx::Text& other, fmx::uint32 position, fmx::uint32 size,
                                fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_InsertText(void* self, const fmx::Text& other, fmx::uint32 position,
                                fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_DeleteText(void* self, fmx::uint32 position, fmx::uint32 size, fmx::_fmxcpt&) noexcept;
FMX_API fmx::uint32 FM_Text_Find(const void* self, const fmx::Text& what, fmx::uint32 position,
                                 fmx::_fmxcpt&) noexcept;
FMX_API fmx::uint32 FM_Text_FindPrev(const void* self, const fmx::Text& what, fmx::uint32 position,
                                     fmx::_fmxcpt&) noexcept;
FMX_API fmx::uint32 FM_Text_FindIgnoringCase(const void* self, const fmx::Text& what, fmx::uint32 position,
                                             fmx::_fmxcpt&) noexcept;
FMX_API fmx::uint32 FM_Text_FindPrevIgnoringCase(const void* self, const fmx::Text& what,
                                                 fmx::uint32 position, fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_Uppercase(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_Lowercase(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API bool FM_Text_operatorEQ(const void* self, const fmx::Text& other, fmx::_fmxcpt&) noexcept;
FMX_API bool FM_Text_operatorNE(const void* self, const fmx::Text& other, fmx::_fmxcpt&) noexcept;
FMX_API bool FM_Text_operatorLT(const void* self, const fmx::Text& other, fmx::_fmxcpt&) noexcept;
FMX_API bool FM_Text_operatorLE(const void* self, const fmx::Text& other, fmx::_fmxcpt&) noexcept;
FMX_API bool FM_Text_operatorGT(const void* self, const fmx::Text& other, fmx::_fmxcpt&) noexcept;
FMX_API bool FM_Text_operatorGE(const void* self, const fmx::Text& other, fmx::_fmxcpt&) noexcept;
FMX_API void FM_Text_Delete(void* self, fmx::_fmxcpt&) noexcept;
}

namespace fmx {

class Text {
 public:
  enum Encoding : int32 {
    kEncoding_Native = 0,
    kEncoding_UTF8 = 1,
    kEncoding_ASCII_DOS = 2,
    kEncoding_ASCII_Windows = 3,
    kEncoding_ASCII_Mac = 4,  // Mac Roman
    kEncoding_ISO_8859_1 = 5
  };
  // The end of a text, and the position of what was not found.
  enum : uint32 { kSize_Invalid = 0xFFFFFFFF, kSize_End = 0xFFFFFFFF };

  Text() = delete;
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  void Assign(const char* s, Encoding encoding = kEncoding_Native) {
    wrapper::checked(FM_Text_Assign, this, s, encoding);
  }
  void AssignUnicode(const uint16* s) { wrapper::checked(FM_Text_AssignUnicode, this, s); }
  void AssignWide(const wchar_t* s) { wrapper::checked(FM_Text_AssignWide, this, s); }
  void AssignWithLength(const char* s, uint32 length, Encoding encoding = kEncoding_Native) {
    wrapper::checked(FM_Text_AssignWithLength, this, s, length, encoding);
  }
  void AssignUnicodeWithLength(const uint16* s, uint32 length) {
    wrapper::checked(FM_Text_AssignUnicodeWithLength, this, s, length);
  }
  void AssignWideWithLength(const wchar_t* s, uint32 length) {
    wrapper::checked(FM_Text_AssignWideWithLength, this, s, length);
  }

  uint32 GetSize() const { return wrapper::checked(FM_Text_GetSize, this); }
  // No terminator is written.
  void GetUnicode(uint16* buffer, uint32 position, uint32 size) const {
    wrapper::checked(FM_Text_GetUnicode, this, buffer, position, size);
  }
  // Ends with a NUL.
  void GetBytes(char* buffer, uint32 bufferBytes, uint32 position = 0, uint32 size = kSize_End,
                Encoding encoding = kEncoding_Native) const {
    wrapper::checked(FM_Text_GetBytes, this, buffer, bufferBytes, position, size, encoding);
  }
  // The number of bytes written; no NUL follows them.
  uint32 GetBytesEx(char* buffer, uint32 bufferBytes, uint32 position = 0, uint32 size = kSize_End,
                    Encoding encoding = kEncoding_UTF8) const {
    return wrapper::checked(FM_Text_GetBytesEx, this, buffer, bufferBytes, position, size, encoding);
  }

  // Both take a range of the other text.
  void SetText(const Text& other, uint32 position = 0, uint32 size = kSize_End) {
    wrapper::checked(FM_Text_SetText, this, other, position, size);
  }
  void AppendText(const Text& other, uint32 position = 0, uint32 size = kSize_End) {
    wrapper::checked(FM_Text_AppendText, this, other, position, size);
  }
  void InsertText(const Text& other, uint32 position) {
    wrapper::checked(FM_Text_InsertText, this, other, position);
  }
  void DeleteText(uint32 position, uint32 size = kSize_End) {
    wrapper::checked(FM_Text_DeleteText, this, position, size);
  }

  // What is not found is at kSize_Invalid.
  uint32 Find(const Text& what, uint32 position) const {
    return wrapper::checked(FM_Text_Find, this, what, position);
  }
  uint32 FindPrev(const Text& what, uint32 position) const {
    return wrapper::checked(FM_Text_FindPrev, this, what, position);
  }
  uint32 FindIgnoringCase(const Text& what, uint32 position) const {
    return wrapper::checked(FM_Text_FindIgnoringCase, this, what, position);
  }
  uint32 FindPrevIgnoringCase(const Text& what, uint32 position) const {
    return wrapper::checked(FM_Text_FindPrevIgnoringCase, this, what, position);
  }

  // Both change this text, const or not: so they are declared to plug-ins.
  void Uppercase() const { wrapper::checked(FM_Text_Uppercase, this); }
  void Lowercase() const { wrapper::checked(FM_Text_Lowercase, this); }

  // By raw UTF-16 value.
  bool operator==(const Text& other) const { return wrapper::checked(FM_Text_operatorEQ, this, other); }
  bool operator!=(const Text& other) const { return wrapper::checked(FM_Text_operatorNE, this, other); }
  bool operator<(const Text& other) const { return wrapper::checked(FM_Text_operatorLT, this, other); }
  bool operator<=(const Text& other) const { return wrapper::checked(FM_Text_operatorLE, this, other); }
  bool operator>(const Text& other) const { return wrapper::checked(FM_Text_operatorGT, this, other); }
  bool operator>=(const Text& other) const { return wrapper::checked(FM_Text_operatorGE, this, other); }

  static void operator delete(void* self) noexcept { wrapper::destroy(FM_Text_Delete, self); }
};

class TextUniquePtr : public std::unique_ptr<Text> {
 public:
  TextUniquePtr() : std::unique_ptr<Text>(wrapper::checked(FM_Text_Constructor1)) {}
};

}  // namespace fmx
