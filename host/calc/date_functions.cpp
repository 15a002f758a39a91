#include "host/calc/builtins.h"

namespace fmhost {
namespace {

using Values = std::span<const Value>;

Decimal counted(const Value& value) {
  const Number& number = value.asNumber();
  return number.presence == Presence::present ? number.value : Decimal();
}

Value date(Values a) {
  return Value::ofDateTime(
      ValueType::date,
      dateFromParts(counted(a[2]).truncated(), counted(a[0]).truncated(), counted(a[1]).truncated()));
}

Value time(Values a) {
  const Decimal minutes = counted(a[0]) * Decimal(60) + counted(a[1]);
  return Value::ofDateTime(ValueType::time, timeFromSeconds(minutes * Decimal(60) + counted(a[2])));
}

Value timestamp(Values a) {
  DateTime moment = a[0].asDate();
  const DateTime& timeOfDay = a[1].asTime();
  if (!moment.isPresent()) return Value::ofDateTime(ValueType::timestamp, moment);
  if (timeOfDay.presence == Presence::invalid) return Value::ofDateTime(ValueType::timestamp, timeOfDay);
  moment.microseconds = timeOfDay.microseconds;
  return Value::ofDateTime(ValueType::timestamp, moment.normalised());
}

// A part of a date or time; of what is none, what it is instead.
template <class Part>
Value part(const DateTime& moment, Part of) {
  if (!moment.isPresent()) return Value::ofNumber(Number{.presence = moment.presence});
  return Value::ofNumber(Decimal(of(moment)));
}

Value year(Values a) {
  return part(a[0].asDate(), [](const DateTime& date) { return calendarDay(date).year; });
}

Value month(Values a) {
  return part(a[0].asDate(), [](const DateTime& date) { return calendarDay(date).month; });
}

Value day(Values a) {
  return part(a[0].asDate(), [](const DateTime& date) { return calendarDay(date).day; });
}

Value weekday(Values a) { return part(a[0].asDate(), dayOfWeek); }

std::int64_t wholeSeconds(const DateTime& time) { return secondsOf(time).truncated(); }

Value hour(Values a) {
  return part(a[0].asTime(), [](const DateTime& time) { return wholeSeconds(time) / 3600; });
}

Value minute(Values a) {
  return part(a[0].asTime(), [](const DateTime& time) { return wholeSeconds(time) / 60 % 60; });
}

Value seconds(Values a) {
  const DateTime& time = a[0].asTime();
  if (!time.isPresent()) return Value::ofNumber(Number{.presence = time.presence});
  return Value::ofNumber(secondsOf(time) - Decimal(wholeSeconds(time) / 60 * 60));
}

constexpr Builtin kFunctions[] = {
    {"Date", 3, 3, date},     {"Time", 3, 3, time},      {"Timestamp", 2, 2, timestamp}, {"Year", 1, 1, year},
    {"Month", 1, 1, month},   {"Day", 1, 1, day},        {"DayOfWeek", 1, 1, weekday},   {"Hour", 1, 1, hour},
    {"Minute", 1, 1, minute}, {"Seconds", 1, 1, seconds}};

}  // namespace

std::span<const Builtin> dateFunctions() { return kFunctions; }

}  // namespace fmhost
