#include <optional>
#include <string>

#include "plugin/functions/call.h"
#include "plugin/shell/external_functions.h"

namespace zuno {

// All three do nothing without a type: no error, and the result stays empty.

fmx::errcode Zuno_NewItem(short /*functionId*/, const fmx::ExprEnv& environment,
                          const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> type = call.text(0);
    Call::clearErrors();
    if (!type) return;
    Call::ask([&](iCalEKFunctions& backend) { return backend.newItem(type); });
    call.succeed();
  });
}

fmx::errcode Zuno_SaveItem(short /*functionId*/, const fmx::ExprEnv& environment,
                           const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> type = call.text(0);
    const std::optional<std::string> span = call.text(1);
    Call::clearErrors();
    if (!type) return;
    Call::ask([&](iCalEKFunctions& backend) { return backend.saveItem(type, span); });
    call.succeed();
  });
}

fmx::errcode Zuno_RemoveItem(short /*functionId*/, const fmx::ExprEnv& environment,
                             const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> type = call.text(0);
    const std::optional<std::string> uid = call.text(1);
    const std::optional<Date> occurrence = call.date(2);
    const std::optional<std::string> span = call.text(3);
    Call::clearErrors();
    if (!type) return;
    Call::ask([&](iCalEKFunctions& backend) { return backend.removeItem(type, uid, occurrence, span); });
    call.succeed();
  });
}

}  // namespace zuno
