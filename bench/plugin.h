// The plug-in in the stand-in host, called as FileMaker calls it: through the function pointers that it
// registered, with host values that were made before.
#pragma once

#include <FMWrapper/FMXCalcEngine.h>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "bench/contender.h"

namespace bench {

// A local timestamp, given as seconds since 1970 UTC.
struct Timestamp {
  std::int64_t seconds = 0;
};
using Value = std::variant<std::string_view, int, Timestamp>;

// A registered function.
struct Function {
  short id = 0;
  fmx::ExtPluginType pointer = nullptr;
};

// One call of a function, ready to be made any number of times.
class Call {
 public:
  Call(Function function, const std::vector<Value>& arguments);
  // The bare call; what came of it is seen by check().
  void run() { status_ = function_.pointer(function_.id, environment(), *arguments_, *result_); }
  // Throws when the function reported a failure in the last call.
  void check() const;
  void operator()() {
    run();
    check();
  }
  // The last call's result.
  long number() const;
  std::string text() const;

 private:
  static const fmx::ExprEnv& environment();

  Function function_;
  fmx::errcode status_ = 0;
  fmx::DataVectUniquePtr arguments_;
  fmx::DataUniquePtr result_;
};

// Loads the plug-in into this process, once, on this store, with functions of our own beside its:
// "Untouched" leaves everything as it is, "Zero" answers the number 0 and does nothing else.
void loadPlugin(const std::string& store);
// By its name; throws for one that is not registered.
Function function(std::string_view name);

}  // namespace bench
