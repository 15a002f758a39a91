#include <optional>
#include <string>

#include "plugin/functions/call.h"
#include "plugin/shell/external_functions.h"

namespace zuno {

namespace {

// Alarms are the EventKit backend's alone. It is asked without a type too, and then says what is missing.
template <class Operation>
void askAboutAlarms(Call& call, Operation operation) {
  if (!g_bUseEK) return Call::fail(kErrUnsupportedParameter);
  Call::ask(operation);
  call.succeed();
}

}  // namespace

fmx::errcode Zuno_AddAlarm(short /*functionId*/, const fmx::ExprEnv& environment,
                           const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> type = call.text(0);
    const std::optional<Date> absoluteTrigger = call.date(1);
    const std::optional<std::string> action = call.text(2);
    const std::optional<std::string> address = call.text(3);
    const std::int32_t relativeTrigger = call.number(4);
    const std::optional<std::string> sound = call.text(5);
    Call::clearErrors();
    askAboutAlarms(call, [&](iCalEKFunctions& backend) {
      return backend.addAlarm(type, absoluteTrigger, action, address, relativeTrigger, sound);
    });
  });
}

fmx::errcode Zuno_RemoveAlarm(short /*functionId*/, const fmx::ExprEnv& environment,
                              const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> type = call.text(0);
    const std::int32_t position = call.number(1);
    Call::clearErrors();
    askAboutAlarms(call, [&](iCalEKFunctions& backend) { return backend.removeAlarmFrom(type, position); });
  });
}

fmx::errcode Zuno_RemoveAllAlarmsFrom(short /*functionId*/, const fmx::ExprEnv& environment,
                                      const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> type = call.text(0);
    Call::clearErrors();
    askAboutAlarms(call, [&](iCalEKFunctions& backend) { return backend.removeAllAlarmsFrom(type); });
  });
}

}  // namespace zuno
