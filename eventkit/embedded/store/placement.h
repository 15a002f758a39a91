// Where one event, or one occurrence of a series, lies in time.
#pragma once

#include <optional>

#include "eventkit/embedded/recurrence/series.h"
#include "eventkit/embedded/storage/item_index.h"

namespace ek::embedded {

using foundation::TimeZone;
using foundation::WallTime;

struct Placement {
  Date start, end;  // all-day: 00:00 of the first day and of the day after the last, in the default zone
  bool isAllDay = false;
  // The rest is for members of a series.
  std::optional<WallTime> recurrenceId;  // in the series' zone
  std::optional<Date> occurrenceDate;
  bool isDetached = false;
};

Placement placementOf(const recurrence::Series& series, const recurrence::Occurrence& occurrence,
                      const TimeZone& defaultZone);
Placement placementOf(const SingleEvent& event, const TimeZone& defaultZone);

// 00:00 of the day on which the instant falls in that zone.
Date startOfDay(Date date, const TimeZone& zone);
// What an all-day event that is given this end reads: the last second of its last day.
Date endOfLastDay(Date end, Date start, const TimeZone& zone);

// The text behind an item's identifier that names a detached occurrence, and the way back.
std::string occurrenceSuffix(Date occurrenceDate);
struct OccurrenceIdentifier {
  std::string item;
  Date occurrenceDate;
};
std::optional<OccurrenceIdentifier> parseOccurrenceIdentifier(std::string_view identifier);

}  // namespace ek::embedded
