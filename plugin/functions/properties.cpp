#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "plugin/backend/keywords.h"
#include "plugin/functions/call.h"
#include "plugin/shell/external_functions.h"

namespace zuno {

namespace {

// By keyword alone, whatever the type. What may be set as a date is a shorter list than what reads as one.
constexpr PackedWord kTimestampProperties[] = {"absolutetrigger", "enddate",    "modifieddate",
                                               "startdate",       "occurrence", "datestamp"};
constexpr PackedWord kDateProperties[] = {"completeddate", "duedate"};
constexpr PackedWord kSettableDates[] = {"absolutetrigger", "enddate",       "startdate",
                                         "occurrence",      "completeddate", "duedate"};

template <std::size_t N>
bool isOneOf(const PackedWord (&words)[N], const Keyword& keyword) {
  return std::any_of(std::begin(words), std::end(words),
                     [&](const PackedWord& word) { return keyword == word; });
}

Value read(iCalEKFunctions& backend, ItemType type, const Keyword& property, const Keyword& subProperty) {
  switch (type) {
    case ItemType::event:
      return backend.getEventAttribute(property, 1, std::nullopt);
    case ItemType::reminder:
      return backend.getReminderAttribute(property, 1, std::nullopt);
    case ItemType::calendar:
    case ItemType::reminderList:
      return backend.getCalendarAttribute(property, 1, std::nullopt);
    case ItemType::alarm:
      return backend.getAlarmAttribute(property, 1, std::nullopt);
    case ItemType::attendee:
      return backend.getParticipantAttribute(property, 1, std::nullopt);
    case ItemType::recurrenceRule:
      return backend.getEventRecurrenceRuleAttribute(property, subProperty);
    case ItemType::none:
      Call::fail(kErrInvalidParameters);
  }
  return {};
}

int write(iCalEKFunctions& backend, ItemType type, const std::string& property, const Value& value) {
  switch (type) {
    case ItemType::event:
      return backend.setEventProp(property, value);
    case ItemType::reminder:
      return backend.setReminderProp(property, value);
    case ItemType::calendar:
    case ItemType::reminderList:
      return backend.setCalendarProp(property, value);
    case ItemType::alarm:
      return backend.setAlarmProp(property, value);
    case ItemType::recurrenceRule:  // accepted, without effect
      return 0;
    case ItemType::attendee:
    case ItemType::none:
      Call::fail(kErrInvalidParameters);
  }
  return -1;
}

void assignValue(const Value& value, const Keyword& property, const Keyword& subProperty, fmx::Data& result) {
  if (isOneOf(kTimestampProperties, property) || subProperty == "enddate")
    assignDate(value, DateForm::timestamp, result);
  else if (isOneOf(kDateProperties, property))
    assignDate(value, DateForm::date, result);
  else if (std::holds_alternative<Date>(value))
    AssignStringResult(textOf(value), result);
  else
    AssignStringResult(plainTextOf(value), result);
}

}  // namespace

fmx::errcode Zuno_GetProperty(short /*functionId*/, const fmx::ExprEnv& environment,
                              const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const Keyword type = call.keyword(0);
    const Keyword property = call.keyword(1);
    const Keyword subProperty = call.keyword(2);
    Call::clearErrors();
    if (type.isNone() || property.isNone()) return;
    const ItemType kind = itemTypeFrom(type);
    const Value value =
        Call::ask([&](iCalEKFunctions& backend) { return read(backend, kind, property, subProperty); });
    if (!Call::failed()) assignValue(value, property, subProperty, call.result());
  });
}

fmx::errcode Zuno_SetProperty(short /*functionId*/, const fmx::ExprEnv& environment,
                              const fmx::DataVect& arguments, fmx::Data& result) {
  return runCall(environment, arguments, result, [](Call& call) {
    const std::optional<std::string> type = call.text(0);
    const std::optional<std::string> property = call.text(1);
    const bool isDate = property && isOneOf(kSettableDates, Keyword(property));
    const Value value = isDate ? valueOf(call.date(2)) : valueOf(call.text(2));
    Call::clearErrors();
    if (!type || !property) return;
    if (isDate && !dateOf(value)) return Call::fail(kErrMissingArgument);
    const ItemType kind = itemTypeFrom(type);
    Call::ask([&](iCalEKFunctions& backend) { return write(backend, kind, *property, value); });
    call.succeed();
  });
}

}  // namespace zuno
