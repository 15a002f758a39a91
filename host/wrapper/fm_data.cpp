#include <stdexcept>

#include "host/wrapper/host_call.h"

using namespace fmhost;
using Failure = fmx::_fmxcpt;
using fmx::errcode;
using fmx::int32;
using fmx::uint32;

namespace {

// As which a plug-in wants a result to be kept.
ValueType typeFrom(int32 nativeType) {
  const auto type = static_cast<ValueType>(nativeType);
  if (type < ValueType::text || type > ValueType::timestamp) {
    throw std::invalid_argument("no type for a result");
  }
  return type;
}

// A result keeps its locale unless it is given one.
void assign(void* self, Value&& value, int32 nativeType) {
  const ValueType type = typeFrom(nativeType);
  as<Value>(self) = value.type() == type ? std::move(value) : value.converted(type);
}

template <class Reading>
auto read(const void* self, Failure& failure, Reading reading) noexcept {
  return hostCall(failure, [&] { return lent((as<Value>(self).*reading)()); });
}

const Value& at(const void* self, uint32 position) { return as<Arguments>(self).at(position); }

template <class Reading>
auto readAt(const void* self, uint32 position, Failure& failure, Reading reading) noexcept {
  return hostCall(failure, [&] { return lent((at(self, position).*reading)()); });
}

void assignDateTime(void* self, ValueType type, const DateTime& moment, int32 nativeType,
                    Failure& failure) noexcept {
  hostCall(failure, [&] {
    auto& result = as<Value>(self);
    if (typeFrom(nativeType) == type) return result.become(type, moment);
    Value value = Value::ofDateTime(type, moment);
    value.setLocale(result.locale());
    assign(self, std::move(value), nativeType);
  });
}

}  // namespace

fmx::Data* FM_Data_Constructor1(Failure& failure) noexcept { return make<Value>(failure); }

const fmx::Text* FM_Data_GetAsText(const void* self, Failure& failure) noexcept {
  return read(self, failure, &Value::asText);
}

const fmx::FixPt* FM_Data_GetAsNumber(const void* self, Failure& failure) noexcept {
  return read(self, failure, &Value::asNumber);
}

const fmx::DateTime* FM_Data_GetAsDate(const void* self, Failure& failure) noexcept {
  return read(self, failure, &Value::asDate);
}

const fmx::DateTime* FM_Data_GetAsTime(const void* self, Failure& failure) noexcept {
  return read(self, failure, &Value::asTime);
}

const fmx::DateTime* FM_Data_GetAsTimeStamp(const void* self, Failure& failure) noexcept {
  return read(self, failure, &Value::asTimestamp);
}

bool FM_Data_GetAsBoolean(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return as<Value>(self).asBoolean(); });
}

const fmx::Locale* FM_Data_GetLocale(const void* self, Failure& failure) noexcept {
  return read(self, failure, &Value::locale);
}

int32 FM_Data_GetNativeType(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return static_cast<int32>(as<Value>(self).type()); });
}

errcode FM_Data_SetAsText(void* self, const fmx::Text& text, const fmx::Locale& locale, int32 nativeType,
                          Failure& failure) noexcept {
  return hostCall(failure, [&] {
    auto& value = as<Value>(self);
    const ValueType type = typeFrom(nativeType);
    value.become(inside(text), inside(locale));
    if (type != ValueType::text) value = value.converted(type);
    return errcode{0};
  });
}

void FM_Data_SetAsNumber(void* self, const fmx::FixPt& number, int32 nativeType, Failure& failure) noexcept {
  hostCall(failure, [&] {
    Value value = Value::ofNumber(inside(number));
    value.setLocale(as<Value>(self).locale());
    assign(self, std::move(value), nativeType);
  });
}

void FM_Data_SetAsDate(void* self, const fmx::DateTime& date, int32 nativeType, Failure& failure) noexcept {
  const DateTime& moment = inside(date);
  assignDateTime(self, ValueType::date, DateTime{moment.day, 0, moment.presence}, nativeType, failure);
}

void FM_Data_SetAsTime(void* self, const fmx::DateTime& time, int32 nativeType, Failure& failure) noexcept {
  assignDateTime(self, ValueType::time, inside(time), nativeType, failure);
}

void FM_Data_SetAsTimeStamp(void* self, const fmx::DateTime& timestamp, int32 nativeType,
                            Failure& failure) noexcept {
  assignDateTime(self, ValueType::timestamp, inside(timestamp).normalised(), nativeType, failure);
}

void FM_Data_Delete(void* self, Failure& failure) noexcept { destroy<Value>(self, failure); }

fmx::DataVect* FM_DataVect_Constructor1(Failure& failure) noexcept { return make<Arguments>(failure); }

void FM_DataVect_Clear(void* self, Failure& failure) noexcept {
  hostCall(failure, [&] { as<Arguments>(self).clear(); });
}

void FM_DataVect_PushBack(void* self, const fmx::Data& value, Failure& failure) noexcept {
  hostCall(failure, [&] { as<Arguments>(self).push_back(inside(value)); });
}

uint32 FM_DataVect_Size(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return static_cast<uint32>(as<Arguments>(self).size()); });
}

const fmx::Data* FM_DataVect_At(const void* self, uint32 position, Failure& failure) noexcept {
  return hostCall(failure, [&] { return lent(at(self, position)); });
}

const fmx::Text* FM_DataVect_AtAsText(const void* self, uint32 position, Failure& failure) noexcept {
  return readAt(self, position, failure, &Value::asText);
}

const fmx::FixPt* FM_DataVect_AtAsNumber(const void* self, uint32 position, Failure& failure) noexcept {
  return readAt(self, position, failure, &Value::asNumber);
}

const fmx::DateTime* FM_DataVect_AtAsDate(const void* self, uint32 position, Failure& failure) noexcept {
  return readAt(self, position, failure, &Value::asDate);
}

const fmx::DateTime* FM_DataVect_AtAsTime(const void* self, uint32 position, Failure& failure) noexcept {
  return readAt(self, position, failure, &Value::asTime);
}

const fmx::DateTime* FM_DataVect_AtAsTimeStamp(const void* self, uint32 position, Failure& failure) noexcept {
  return readAt(self, position, failure, &Value::asTimestamp);
}

bool FM_DataVect_AtAsBoolean(const void* self, uint32 position, Failure& failure) noexcept {
  return hostCall(failure, [&] { return at(self, position).asBoolean(); });
}

void FM_DataVect_Delete(void* self, Failure& failure) noexcept { destroy<Arguments>(self, failure); }
