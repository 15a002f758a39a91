// How every FM_ function is written: the pending failure, the body, and no exception across the boundary.
#pragma once

#include <new>
#include <type_traits>

#include "host/wrapper/stand_in.h"

namespace fmhost {

extern StandIn sharedStandIn;

// What the body returns, or nothing (0, null) with a code in the holder.
template <class Body>
auto hostCall(fmx::_fmxcpt& failure, Body body) noexcept -> decltype(body()) {
  using Answer = decltype(body());
  if (const std::int32_t code = sharedStandIn.failureOfThisCall(); code != 0) [[unlikely]] {
    failure.m_code = code;
    return Answer();
  }
  try {
    return body();
  } catch (const std::bad_alloc&) {
    failure.m_code = fmx::_fmxcpt::kBadAlloc;
  } catch (...) {
    failure.m_code = fmx::_fmxcpt::kUnknown;
  }
  return Answer();
}

template <class Object>
struct Opaque;
template <>
struct Opaque<Text> {
  using Class = fmx::Text;
  static constexpr ObjectKind kKind = ObjectKind::text;
};
template <>
struct Opaque<Number> {
  using Class = fmx::FixPt;
  static constexpr ObjectKind kKind = ObjectKind::number;
};
template <>
struct Opaque<DateTime> {
  using Class = fmx::DateTime;
  static constexpr ObjectKind kKind = ObjectKind::dateTime;
};
template <>
struct Opaque<Locale> {
  using Class = fmx::Locale;
  static constexpr ObjectKind kKind = ObjectKind::locale;
};
template <>
struct Opaque<QuadChar> {
  using Class = fmx::QuadChar;
  static constexpr ObjectKind kKind = ObjectKind::quadChar;
};
template <>
struct Opaque<Value> {
  using Class = fmx::Data;
  static constexpr ObjectKind kKind = ObjectKind::value;
};
template <>
struct Opaque<Arguments> {
  using Class = fmx::DataVect;
  static constexpr ObjectKind kKind = ObjectKind::arguments;
};
template <>
struct Opaque<Environment> {
  using Class = fmx::ExprEnv;
  static constexpr ObjectKind kKind = ObjectKind::environment;
};

template <class Object>
Object& as(void* self) {
  return *static_cast<Object*>(self);
}
template <class Object>
const Object& as(const void* self) {
  return *static_cast<const Object*>(self);
}

inline const Text& inside(const fmx::Text& text) { return reinterpret_cast<const Text&>(text); }
inline const Number& inside(const fmx::FixPt& number) { return reinterpret_cast<const Number&>(number); }
inline const DateTime& inside(const fmx::DateTime& moment) {
  return reinterpret_cast<const DateTime&>(moment);
}
inline const Locale& inside(const fmx::Locale& locale) { return reinterpret_cast<const Locale&>(locale); }
inline const QuadChar& inside(const fmx::QuadChar& code) { return reinterpret_cast<const QuadChar&>(code); }
inline const Value& inside(const fmx::Data& value) { return reinterpret_cast<const Value&>(value); }

template <class Object>
const typename Opaque<Object>::Class* lent(const Object& object) {
  return reinterpret_cast<const typename Opaque<Object>::Class*>(&object);
}

template <class Object, class... Parts>
typename Opaque<Object>::Class* make(fmx::_fmxcpt& failure, Parts&&... parts) {
  return hostCall(failure, [&] {
    auto* object = new Object{std::forward<Parts>(parts)...};
    sharedStandIn.made(Opaque<Object>::kKind);
    return reinterpret_cast<typename Opaque<Object>::Class*>(object);
  });
}

// The object goes even when the call is one that shall fail: what a plug-in lets go of is no leak of its.
template <class Object>
void destroy(void* self, fmx::_fmxcpt& failure) noexcept {
  if (self != nullptr) {
    delete static_cast<Object*>(self);
    sharedStandIn.deleted(Opaque<Object>::kKind);
  }
  hostCall(failure, [] {});
}

}  // namespace fmhost
