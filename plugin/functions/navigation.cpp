#include <optional>
#include <string>

#include "plugin/backend/keywords.h"
#include "plugin/functions/call.h"
#include "plugin/shell/external_functions.h"

namespace zuno {

namespace {

using OpenAt = int (iCalEKFunctions::*)(std::int32_t);
using OpenWithUID = int (*)(iCalEKFunctions&, const std::string&, std::optional<Date>);

OpenAt openAt(ItemType type) {
  switch (type) {
    case ItemType::calendar:
      return &iCalEKFunctions::openCalendarAt;
    case ItemType::reminderList:
      return &iCalEKFunctions::openReminderListAt;
    case ItemType::event:
      return &iCalEKFunctions::openEventAt;
    case ItemType::reminder:
      return &iCalEKFunctions::openReminderAt;
    case ItemType::attendee:
      return &iCalEKFunctions::openParticipantAt;
    case ItemType::alarm:
      return &iCalEKFunctions::openAlarmAt;
    case ItemType::recurrenceRule:
    case ItemType::none:
      break;
  }
  return nullptr;
}

void openWithUID(Call& call, ItemType type, const std::string& uid, std::optional<Date> occurrence) {
  switch (type) {
    case ItemType::calendar:
    case ItemType::reminderList:
      Call::ask([&](iCalEKFunctions& backend) { return backend.openCalendarWithUID(uid); });
      break;
    case ItemType::event:
      Call::ask([&](iCalEKFunctions& backend) { return backend.openEventWithUID(uid, occurrence); });
      break;
    case ItemType::reminder:
      Call::ask([&](iCalEKFunctions& backend) { return backend.openReminderWithUID(uid); });
      break;
    default:
      Call::fail(kErrInvalidParameters);
  }
  call.succeed();
}

}  // namespace

fmx::errcode Zuno_GetItemCountForType(short /*functionId*/, const fmx::ExprEnv& environment,
                                      const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const Keyword type = call.keyword(0);
    Call::clearErrors();
    if (type.isNone()) return;
    const int count = Call::ask([&](iCalEKFunctions& backend) { return backend.getObjectCount(type); });
    if (!Call::failed()) assignNumber(count, call.result());
  });
}

// Without a type the calendar at that position is opened: scripts count on it.
fmx::errcode Zuno_OpenItemAt(short /*functionId*/, const fmx::ExprEnv& environment,
                             const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const Keyword type = call.keyword(0);
    const std::int32_t position = call.number(1);
    Call::clearErrors();
    const OpenAt open = openAt(type.isNone() ? ItemType::calendar : itemTypeFrom(type));
    if (open == nullptr) return Call::fail(kErrInvalidParameters);
    Call::ask([&](iCalEKFunctions& backend) { return (backend.*open)(position); });
    call.succeed();
  });
}

fmx::errcode Zuno_OpenItemWithUID(short /*functionId*/, const fmx::ExprEnv& environment,
                                  const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const Keyword type = call.keyword(0);
    const std::optional<std::string> uid = call.text(1);
    const std::optional<Date> occurrence = call.date(2);
    Call::clearErrors();
    if (!uid) return Call::fail(kErrInvalidParameters);
    openWithUID(call, itemTypeFrom(type), *uid, occurrence);
  });
}

fmx::errcode Zuno_CalOpenCalendarWithTitle(short /*functionId*/, const fmx::ExprEnv& environment,
                                           const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> title = call.text(0);
    Call::clearErrors();
    if (!title) return Call::fail(kErrInvalidParameters);
    Call::ask([&](iCalEKFunctions& backend) { return backend.openCalendarWithTitle(*title); });
    call.succeed();
  });
}

// A date left empty leaves that end of the range open.
fmx::errcode Zuno_EventsFetch(short /*functionId*/, const fmx::ExprEnv& environment,
                              const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const Date start = call.date(0).value_or(foundation::distantPast());
    const Date end = call.date(1).value_or(foundation::distantFuture());
    const std::optional<std::string> calendars = call.text(2);
    const std::optional<std::string> uid = call.text(3);
    Call::clearErrors();
    Call::ask([&](iCalEKFunctions& backend) {
      return backend.fetchEventsWithStartDate(start, end, uid, calendars);
    });
    call.succeed();
  });
}

fmx::errcode Zuno_RemindersFetch(short /*functionId*/, const fmx::ExprEnv& environment,
                                 const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> calendars = call.text(0);
    const std::optional<std::string> status = call.text(1);
    const std::optional<Date> date = call.date(2);
    Call::clearErrors();
    Call::ask([&](iCalEKFunctions& backend) { return backend.fetchReminders(calendars, status, date); });
    call.succeed();
  });
}

}  // namespace zuno
