#include "eventkit/embedded/store/placement.h"

#include <charconv>
#include <string>

namespace ek::embedded {

namespace {

constexpr std::string_view kSuffix = "/RID=";
// What the seconds of an occurrence's identifier count from.
constexpr Date kReferenceDate = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);

}  // namespace

Placement placementOf(const recurrence::Series& series, const recurrence::Occurrence& occurrence,
                      const TimeZone& defaultZone) {
  const TimeZone& zone = series.zone ? *series.zone : defaultZone;
  const bool isDetached = occurrence.override >= 0;
  return {.start = occurrence.start,
          .end = occurrence.end,
          .isAllDay = isDetached ? series.overrides[static_cast<std::size_t>(occurrence.override)].isAllDay
                                 : series.isAllDay,
          .recurrenceId = occurrence.recurrenceId,
          .occurrenceDate = zone.instantOf(occurrence.recurrenceId),
          .isDetached = isDetached};
}

Placement placementOf(const SingleEvent& event, const TimeZone& defaultZone) {
  return {.start = instantOf(event.start, defaultZone),
          .end = instantOf(event.end, defaultZone),
          .isAllDay = event.isAllDay,
          .recurrenceId = std::nullopt,
          .occurrenceDate = std::nullopt,
          .isDetached = false};
}

Date startOfDay(Date date, const TimeZone& zone) {
  return zone.instantOf(std::chrono::floor<std::chrono::days>(zone.wallTimeOf(date)));
}

Date endOfLastDay(Date end, Date start, const TimeZone& zone) {
  const WallTime wall = zone.wallTimeOf(end);
  auto day = std::chrono::floor<std::chrono::days>(wall);
  if (wall == day && end > start) day -= std::chrono::days(1);
  return zone.instantOf(day + std::chrono::days(1)) - std::chrono::seconds(1);
}

std::string occurrenceSuffix(Date occurrenceDate) {
  return std::string(kSuffix) + std::to_string((occurrenceDate - kReferenceDate).count());
}

std::optional<OccurrenceIdentifier> parseOccurrenceIdentifier(std::string_view identifier) {
  const std::size_t at = identifier.rfind(kSuffix);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view digits = identifier.substr(at + kSuffix.size());
  std::int64_t seconds = 0;
  const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
  if (failure != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return OccurrenceIdentifier{std::string(identifier.substr(0, at)),
                              kReferenceDate + std::chrono::seconds(seconds)};
}

}  // namespace ek::embedded
