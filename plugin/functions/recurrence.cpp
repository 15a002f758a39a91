#include <optional>
#include <string>
#include <utility>

#include "plugin/functions/call.h"
#include "plugin/functions/list_parsers.h"
#include "plugin/shell/external_functions.h"

namespace zuno {

fmx::errcode Zuno_AddRecurrence(short /*functionId*/, const fmx::ExprEnv& environment,
                                const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> type = call.text(0);
    const std::int32_t interval = call.number(1);
    const std::optional<std::string> daysOfTheWeek = call.text(2);
    const std::optional<std::string> daysOfTheMonth = call.text(3);
    const std::optional<std::string> months = call.text(4);
    const std::optional<Date> endDate = call.date(5);
    const std::int32_t endCount = call.number(6);
    Call::clearErrors();
    Call::ask([&](iCalEKFunctions& backend) {
      auto weekdays = NSStringToNSArrayDOW(daysOfTheWeek);
      auto monthDays = NSStringToNSArrayInts(daysOfTheMonth);
      auto monthNumbers = NSStringToNSArrayInts(months);
      return backend.addRecurrence(type, interval, std::move(weekdays), std::move(monthDays), 0,
                                   std::move(monthNumbers), endDate, endCount);
    });
    call.succeed();
  });
}

fmx::errcode Zuno_RemoveRecurrence(short /*functionId*/, const fmx::ExprEnv& environment,
                                   const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    Call::clearErrors();
    Call::ask([](iCalEKFunctions& backend) { return backend.removeRecurrence(); });
    call.succeed();
  });
}

}  // namespace zuno
