#include "eventkit/embedded/store/time_form.h"

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/ical/zones.h"

namespace ek::embedded {

namespace {

using Kind = TimeForm::Kind;

// What an item calls a zone that the zone database has no name for.
std::string nameOf(const TimeZone& zone) {
  if (!zone.name().empty()) return zone.name();
  return zone.posixRule().empty() ? "Local" : zone.posixRule();
}

}  // namespace

WallTime TimeForm::wallOf(Date date) const {
  const WallTime wall = zone->wallTimeOf(date);
  return kind == Kind::day ? WallTime(std::chrono::floor<std::chrono::days>(wall)) : wall;
}

std::string TimeForm::value(WallTime wall) const {
  return ical::formatDateTime({.wall = wall, .isDate = kind == Kind::day, .isUtc = kind == Kind::utc});
}

ical::Line TimeForm::line(std::string_view name, WallTime wall) const {
  switch (kind) {
    case Kind::day:
      return ical::Line::make(name, value(wall), {{"VALUE", "DATE"}});
    case Kind::zoned:
      return ical::Line::make(name, value(wall), {{"TZID", tzid}});
    case Kind::floating:
      if (!tzid.empty()) return ical::Line::make(name, value(wall), {{"TZID", tzid}});
      break;
    case Kind::utc:
      break;
  }
  return ical::Line::make(name, value(wall));
}

TimeForm formOf(const ical::Line& line, const ZoneFinder& zones) {
  const std::optional<ZonedTime> time = readTime(line, zones);
  if (!time) return localForm();
  if (time->isDate) return dayForm();
  const auto tzid = line.parameter("TZID");
  if (!time->zone.zone) return {Kind::floating, tzid.value_or(""), TimeZone::defaultZone()};
  return tzid ? TimeForm{Kind::zoned, *tzid, time->zone.zone} : TimeForm{Kind::utc, {}, time->zone.zone};
}

TimeForm dayForm() { return {Kind::day, {}, TimeZone::defaultZone()}; }

TimeForm localForm() {
  const auto zone = TimeZone::defaultZone();
  if (zone->name() == "UTC") return {Kind::utc, {}, zone};
  return {Kind::zoned, nameOf(*zone), zone};
}

void keepZone(ItemTable& items, RowId calendar, const TimeForm& form) {
  if (form.kind != Kind::zoned || items.hasTimeZone(calendar, form.tzid)) return;
  items.ensureTimeZone(calendar, form.tzid, ical::vtimezoneFor(*form.zone, form.tzid).text());
}

}  // namespace ek::embedded
