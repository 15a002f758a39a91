// The error holder of every host call. The host's functions never throw: they leave a code in a holder of the
// caller's, and the wrapper methods of the other headers turn that code into an exception on this side.
#pragma once

#include <cstddef>
#include <exception>
#include <new>
#include <type_traits>
#include <utility>

#include "FMWrapper/FMXExtern.h"

namespace fmx {

struct _fmxcpt {
  enum { kNoErr = 0, kBadAlloc = 1, kUnknown = 2 };

  int32 m_vers = 1;
  int32 m_code = kNoErr;

  void Check() const {
    if (m_code != kNoErr) [[unlikely]]
      raise(m_code);
  }

 private:
  // Codes of a later interface pass.
  static void raise(int32 code) {
    if (code == kBadAlloc) throw std::bad_alloc();
    if (code == kUnknown) throw std::exception();
  }
};

static_assert(sizeof(_fmxcpt) == 8 && alignof(_fmxcpt) == 4 && offsetof(_fmxcpt, m_code) == 4);

namespace wrapper {

// One host call: what it returns, or the exception that its code stands for.
template <class Function, class... Arguments>
auto checked(Function function, Arguments&&... arguments) {
  _fmxcpt failure;
  if constexpr (std::is_void_v<decltype(function(std::forward<Arguments>(arguments)..., failure))>) {
    function(std::forward<Arguments>(arguments)..., failure);
    failure.Check();
  } else {
    const auto answer = function(std::forward<Arguments>(arguments)..., failure);
    failure.Check();
    return answer;
  }
}

// Deleting cannot fail: a code that the host leaves then has nobody to go to.
template <class Function>
void destroy(Function function, void* object) noexcept {
  _fmxcpt ignored;
  function(object, ignored);
}

}  // namespace wrapper
}  // namespace fmx
