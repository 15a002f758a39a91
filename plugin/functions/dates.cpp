#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "foundation/date.h"
#include "foundation/time_zone.h"
#include "plugin/functions/host_values.h"
#include "plugin/shell/kept_objects.h"

namespace zuno {

namespace {

struct Offset {
  const char* sign;
  int hours;
  int rest;
};

// The default zone's offset of today, whatever the date that it is put to. Exactly GMT has a minus, and the
// rest is in seconds: 05 and 1800 half past five hours east. Dates in scripts depend on both.
Offset offsetToday() {
  const auto seconds =
      static_cast<int>(foundation::TimeZone::defaultZone()->offsetAt(foundation::now()).count());
  const int hours = seconds / 3600;
  return {seconds > 0 ? "+" : "-", std::abs(hours), std::abs(seconds - hours * 3600)};
}

std::optional<Date> dateFrom(const fmx::DateTime& timestamp) {
  const Offset offset = offsetToday();
  std::array<char, 128> text;
  std::snprintf(text.data(), text.size(), "%d-%.2d-%.2d %.2d:%.2d:%.2d %s%.2d%.2d", timestamp.GetYear(),
                timestamp.GetMonth(), timestamp.GetDay(), timestamp.GetHour(), timestamp.GetMinute(),
                timestamp.GetSec(), offset.sign, offset.hours, offset.rest);
  return foundation::dateWithString(text.data());
}

// What the text of a date can tell, and the host can hold.
bool isShown(int year) { return year >= 1 && year <= 9999; }

// False where the host does not take them.
bool put(const foundation::WallFields& wall, fmx::DateTime& moment) {
  const fmx::errcode dateFault =
      moment.SetNormalizedDate(static_cast<fmx::int16>(wall.month), static_cast<fmx::int16>(wall.day),
                               static_cast<fmx::int16>(wall.year));
  const fmx::errcode timeFault = moment.SetNormalizedTime(wall.hour, static_cast<fmx::int16>(wall.minute),
                                                          static_cast<fmx::int16>(wall.second), 0);
  return dateFault == 0 && timeFault == 0;
}

void assign(Date date, DateForm form, fmx::Data& result) {
  const foundation::WallFields wall =
      foundation::fieldsOf(foundation::TimeZone::defaultZone()->wallTimeOf(date));
  if (!isShown(wall.year)) return;
  const auto handOver = [&](const fmx::DateTime& moment) {
    if (form == DateForm::timestamp)
      result.SetAsTimeStamp(moment);
    else
      result.SetAsDate(moment);
  };
  fmx::DateTime& kept = dateTimeForResult();
  if (put(wall, kept)) return handOver(kept);
  // The kept one may still hold an earlier date.
  const fmx::DateTimeUniquePtr refused;
  put(wall, *refused);
  handOver(*refused);
}

}  // namespace

std::optional<Date> Arguments::date(fmx::uint32 index) const {
  if (index >= count_ || values_.AtAsText(index).GetSize() == 0) return std::nullopt;
  try {
    return dateFrom(values_.AtAsTimeStamp(index));
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

void assignDate(const Value& value, DateForm form, fmx::Data& result) {
  if (const Date* date = std::get_if<Date>(&value)) return assign(*date, form, result);
  const TextArgument text = plainTextOf(value);
  if (const std::optional<Date> told = text ? foundation::dateWithString(*text) : std::nullopt)
    assign(*told, form, result);
}

}  // namespace zuno
