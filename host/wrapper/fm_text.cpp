#include <algorithm>
#include <cstring>

#include "host/wrapper/encoding.h"
#include "host/wrapper/host_call.h"
#include "host/wrapper/text_case.h"

using namespace fmhost;
using Failure = fmx::_fmxcpt;
using fmx::int32;
using fmx::uint16;
using fmx::uint32;

namespace {

void assignUnits(Text& text, const uint16* units, std::size_t count) {
  static_assert(sizeof(uint16) == sizeof(char16_t) && alignof(uint16) == alignof(char16_t));
  text.assign(reinterpret_cast<const char16_t*>(units), count);
}

Text fromWide(std::wstring_view wide) {
  Text text;
  text.reserve(wide.size());
  for (const wchar_t c : wide) appendCodePoint(text, static_cast<char32_t>(c));
  return text;
}

std::u16string_view range(const Text& text, uint32 position, uint32 size) {
  if (position >= text.size()) return {};
  return std::u16string_view(text).substr(position, size);
}

uint32 positionOrInvalid(std::size_t position) {
  return position == Text::npos ? static_cast<uint32>(fmx::Text::kSize_Invalid)
                                : static_cast<uint32>(position);
}

uint32 writeBytes(const Text& text, char* buffer, uint32 room, uint32 position, uint32 size, int32 encoding) {
  const std::string bytes = encoded(range(text, position, size), encoding);
  const std::size_t count = std::min<std::size_t>(bytes.size(), room);
  std::copy_n(bytes.data(), count, buffer);
  return static_cast<uint32>(count);
}

template <class Relation>
bool related(const void* self, const fmx::Text& other, Failure& failure, Relation relation) noexcept {
  return hostCall(failure, [&] { return relation(as<Text>(self), inside(other)); });
}

}  // namespace

fmx::Text* FM_Text_Constructor1(Failure& failure) noexcept { return make<Text>(failure); }

void FM_Text_Assign(void* self, const char* s, int32 encoding, Failure& failure) noexcept {
  hostCall(failure, [&] { as<Text>(self) = decoded(s, encoding); });
}

void FM_Text_AssignUnicode(void* self, const uint16* s, Failure& failure) noexcept {
  hostCall(failure, [&] {
    const uint16* end = s;
    while (*end != 0) ++end;
    assignUnits(as<Text>(self), s, static_cast<std::size_t>(end - s));
  });
}

void FM_Text_AssignWide(void* self, const wchar_t* s, Failure& failure) noexcept {
  hostCall(failure, [&] { as<Text>(self) = fromWide(s); });
}

void FM_Text_AssignWithLength(void* self, const char* s, uint32 length, int32 encoding,
                              Failure& failure) noexcept {
  hostCall(failure, [&] { as<Text>(self) = decoded({s, length}, encoding); });
}

void FM_Text_AssignUnicodeWithLength(void* self, const uint16* s, uint32 length, Failure& failure) noexcept {
  hostCall(failure, [&] { assignUnits(as<Text>(self), s, length); });
}

void FM_Text_AssignWideWithLength(void* self, const wchar_t* s, uint32 length, Failure& failure) noexcept {
  hostCall(failure, [&] { as<Text>(self) = fromWide({s, length}); });
}

uint32 FM_Text_GetSize(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return static_cast<uint32>(as<Text>(self).size()); });
}

void FM_Text_GetUnicode(const void* self, uint16* buffer, uint32 position, uint32 size,
                        Failure& failure) noexcept {
  hostCall(failure, [&] {
    const auto units = range(as<Text>(self), position, size);
    if (!units.empty()) std::memcpy(buffer, units.data(), units.size() * sizeof(char16_t));
  });
}

void FM_Text_GetBytes(const void* self, char* buffer, uint32 bufferBytes, uint32 position, uint32 size,
                      int32 encoding, Failure& failure) noexcept {
  hostCall(failure, [&] {
    if (bufferBytes == 0) return;
    buffer[writeBytes(as<Text>(self), buffer, bufferBytes - 1, position, size, encoding)] = '\0';
  });
}

uint32 FM_Text_GetBytesEx(const void* self, char* buffer, uint32 bufferBytes, uint32 position, uint32 size,
                          int32 encoding, Failure& failure) noexcept {
  return hostCall(failure,
                  [&] { return writeBytes(as<Text>(self), buffer, bufferBytes, position, size, encoding); });
}

void FM_Text_SetText(void* self, const fmx::Text& other, uint32 position, uint32 size,
                     Failure& failure) noexcept {
  hostCall(failure, [&] { as<Text>(self) = Text(range(inside(other), position, size)); });
}

void FM_Text_AppendText(void* self, const fmx::Text& other, uint32 position, uint32 size,
                        Failure& failure) noexcept {
  hostCall(failure, [&] { as<Text>(self) += Text(range(inside(other), position, size)); });
}

void FM_Text_InsertText(void* self, const fmx::Text& other, uint32 position, Failure& failure) noexcept {
  hostCall(failure, [&] {
    Text& text = as<Text>(self);
    text.insert(std::min<std::size_t>(position, text.size()), Text(inside(other)));
  });
}

void FM_Text_DeleteText(void* self, uint32 position, uint32 size, Failure& failure) noexcept {
  hostCall(failure, [&] {
    Text& text = as<Text>(self);
    if (position < text.size()) text.erase(position, size);
  });
}

uint32 FM_Text_Find(const void* self, const fmx::Text& what, uint32 position, Failure& failure) noexcept {
  return hostCall(failure, [&] { return positionOrInvalid(as<Text>(self).find(inside(what), position)); });
}

uint32 FM_Text_FindPrev(const void* self, const fmx::Text& what, uint32 position, Failure& failure) noexcept {
  return hostCall(failure, [&] { return positionOrInvalid(as<Text>(self).rfind(inside(what), position)); });
}

uint32 FM_Text_FindIgnoringCase(const void* self, const fmx::Text& what, uint32 position,
                                Failure& failure) noexcept {
  return hostCall(
      failure, [&] { return positionOrInvalid(findIgnoringCase(as<Text>(self), inside(what), position)); });
}

uint32 FM_Text_FindPrevIgnoringCase(const void* self, const fmx::Text& what, uint32 position,
                                    Failure& failure) noexcept {
  return hostCall(failure, [&] {
    return positionOrInvalid(findLastIgnoringCase(as<Text>(self), inside(what), position));
  });
}

void FM_Text_Uppercase(const void* self, Failure& failure) noexcept {
  hostCall(failure, [&] { makeUpperCase(as<Text>(const_cast<void*>(self))); });
}

void FM_Text_Lowercase(const void* self, Failure& failure) noexcept {
  hostCall(failure, [&] { makeLowerCase(as<Text>(const_cast<void*>(self))); });
}

bool FM_Text_operatorEQ(const void* self, const fmx::Text& other, Failure& failure) noexcept {
  return related(self, other, failure, std::equal_to<>());
}

bool FM_Text_operatorNE(const void* self, const fmx::Text& other, Failure& failure) noexcept {
  return related(self, other, failure, std::not_equal_to<>());
}

bool FM_Text_operatorLT(const void* self, const fmx::Text& other, Failure& failure) noexcept {
  return related(self, other, failure, std::less<>());
}

bool FM_Text_operatorLE(const void* self, const fmx::Text& other, Failure& failure) noexcept {
  return related(self, other, failure, std::less_equal<>());
}

bool FM_Text_operatorGT(const void* self, const fmx::Text& other, Failure& failure) noexcept {
  return related(self, other, failure, std::greater<>());
}

bool FM_Text_operatorGE(const void* self, const fmx::Text& other, Failure& failure) noexcept {
  return related(self, other, failure, std::greater_equal<>());
}

void FM_Text_Delete(void* self, Failure& failure) noexcept { destroy<Text>(self, failure); }
