// What the stand-in library tells zunohost besides the interface itself: what plug-ins registered, which of
// the objects that they made are alive, and failures on demand.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "FMWrapper/FMXCalcEngine.h"
#include "host/wrapper/value.h"

namespace fmhost {

enum class ObjectKind : std::uint8_t {
  text,
  number,
  dateTime,
  locale,
  quadChar,
  value,
  arguments,
  environment
};
constexpr std::array kObjectKindNames = {"Text",     "FixPt", "DateTime", "Locale",
                                         "QuadChar", "Data",  "DataVect", "ExprEnv"};

struct Registration {
  std::int16_t id = 0;
  Text name;
  Text prototype;    // functions only
  Text definition;   // steps only: their parameters as XML
  Text description;  // empty for a function that was registered without one
  std::int16_t fewestArguments = 0;
  std::int16_t mostArguments = 0;  // -1: any number
  std::uint32_t flags = 0;
  fmx::ExtPluginType function = nullptr;
};

// Functions or steps, in order of registration.
using Registrations = std::vector<Registration>;

// One for the process. Counters and failures may be used from any thread; a plug-in registers while it is
// loaded or unloaded, which no call may overlap.
class StandIn {
 public:
  // Who may register, and up to which interface: other plug-in IDs and newer operations are refused.
  void open(const QuadChar& pluginId, int extensionVersion);
  // Forgets what is registered.
  void close();

  // 0, or the number of a FileMaker error.
  std::int16_t addFunction(const QuadChar& pluginId, Registration function, int neededVersion);
  std::int16_t addStep(const QuadChar& pluginId, Registration step);
  std::int16_t removeFunction(const QuadChar& pluginId, std::int16_t id);
  std::int16_t removeStep(const QuadChar& pluginId, std::int16_t id);

  const Registrations& functions() const { return functions_; }
  const Registrations& steps() const { return steps_; }

  void made(ObjectKind kind) { counter(kind).fetch_add(1, std::memory_order_relaxed); }
  void deleted(ObjectKind kind) { counter(kind).fetch_sub(1, std::memory_order_relaxed); }
  // Objects that plug-ins made and have not deleted.
  std::int64_t liveObjects() const;
  // "2 Text, 1 FixPt"; empty when none is alive.
  std::string describeLiveObjects() const;

  // The n-th host call from now (1 is the next one) leaves this code in its error holder and does nothing
  // else.
  void failCall(std::int64_t n, std::int32_t code);
  // False once the failure has happened, and when none was asked for.
  bool failureIsPending() const { return callsUntilFailure_.load(std::memory_order_relaxed) > 0; }
  void cancelFailure() { callsUntilFailure_.store(0, std::memory_order_relaxed); }
  // The code for a host call that is beginning; 0 for one that shall work.
  std::int32_t failureOfThisCall() {
    return failureIsPending() && callsUntilFailure_.fetch_sub(1) == 1 ? failureCode_.load() : 0;
  }

 private:
  std::int16_t add(Registrations& rows, const QuadChar& pluginId, Registration row, int neededVersion);
  std::int16_t remove(Registrations& rows, const QuadChar& pluginId, std::int16_t id);
  std::atomic<std::int64_t>& counter(ObjectKind kind) { return live_[static_cast<std::size_t>(kind)]; }

  std::array<std::atomic<std::int64_t>, kObjectKindNames.size()> live_{};
  std::atomic<std::int64_t> callsUntilFailure_{0};
  std::atomic<std::int32_t> failureCode_{0};
  std::mutex mutex_;  // of what follows
  std::optional<QuadChar> pluginId_;
  int extensionVersion_ = 0;
  Registrations functions_;
  Registrations steps_;
};

// What passes through the interface's opaque pointers.
inline fmx::Data& opaque(Value& value) { return reinterpret_cast<fmx::Data&>(value); }
inline const fmx::DataVect& opaque(const Arguments& values) {
  return reinterpret_cast<const fmx::DataVect&>(values);
}
inline const fmx::ExprEnv& opaque(const Environment& environment) {
  return reinterpret_cast<const fmx::ExprEnv&>(environment);
}

}  // namespace fmhost

extern "C" FMX_API fmhost::StandIn* FM_StandIn_Shared() noexcept;
