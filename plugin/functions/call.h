// The frame that the external functions stand on. It makes the calling session's state current, clears the
// last error, and turns an error number that is left at the end into the error marker; what the function
// returns to the host is always 0. A function reads its arguments first, then forgets the error of the call
// before (clearErrors), asks the backend, and writes its result where it did not fail.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>

#include "FMWrapper/FMXCalcEngine.h"
#include "foundation/run_loop.h"
#include "plugin/backend/ical_ek_functions.h"
#include "plugin/functions/host_values.h"
#include "plugin/shell/error_catalogue.h"
#include "plugin/shell/globals.h"
#include "plugin/shell/host_boundary.h"
#include "plugin/shell/host_session.h"
#include "plugin/shell/sessions.h"

namespace zuno {

class Call {
 public:
  Call(const fmx::DataVect& arguments, fmx::Data& result) : arguments_(arguments), result_(result) {}
  // Before anything is read.
  static void begin() {
    g_llasterror = 0;
    if (g_sharedFunctions != nullptr) g_sharedFunctions->resetLastErrorString();
  }

  std::optional<std::string> text(fmx::uint32 index) const { return arguments_.text(index); }
  Keyword keyword(fmx::uint32 index) const { return arguments_.keyword(index); }
  // For what the backend takes in 32 bits; the host's integers have no more.
  std::int32_t number(fmx::uint32 index) const {
    return static_cast<std::int32_t>(arguments_.integer(index));
  }
  std::optional<Date> date(fmx::uint32 index) const { return arguments_.date(index); }

  static void clearErrors() { ClearError(); }
  static void fail(ErrorNumber number) { g_llasterror = number; }
  static bool failed() { return g_llasterror != 0; }

  // What the operation gives when asked of the backend in force; nothing is asked of one that is not there.
  // An exception of the calendar store's, or of ours, is an unclassified error with its reason kept. Nothing
  // of the host's may be called in here: what the host raises has to reach it.
  template <class Operation>
  static auto ask(Operation operation) -> decltype(operation(*g_sharedEKFunctions)) {
    if (!g_bUseEK || g_sharedEKFunctions == nullptr) return {};
    try {
      return operation(*g_sharedEKFunctions);
    } catch (const std::exception& raised) {
      g_sharedEKFunctions->failRaised(raised.what());
      return {};
    }
  }

  fmx::Data& result() { return result_; }
  // The result of whatever only has to succeed.
  void succeed() {
    if (!failed()) assignNumber(0, result_);
  }
  // Records the error that the call leaves and marks the result.
  void finish() {
    if (failed()) recordFailure();
  }

 private:
  void recordFailure();

  Arguments arguments_;
  fmx::Data& result_;
};

// For the functions that report state and ask no backend: without the clearing and the marking.
template <class Body>
fmx::errcode runInSession(const fmx::ExprEnv& environment, fmx::Data& result, Body body) {
  const auto mark = [&result] { assignErrorMarker(result); };
  const auto inSession = [&] {
    const foundation::AutoreleasePool pool;
    const SessionScope session(sessionOf(environment));
    atHostBoundary(body, mark);  // here the session is current, whose error it is
  };
  atHostBoundary(inSession, mark);
  return 0;
}

template <class Body>
fmx::errcode runCall(const fmx::ExprEnv& environment, const fmx::DataVect& arguments, fmx::Data& result,
                     Body body) {
  return runInSession(environment, result, [&] {
    Call::begin();
    Call call(arguments, result);
    body(call);
    call.finish();
  });
}

}  // namespace zuno
