#include "eventkit/types.h"

#include <algorithm>

#include "eventkit/items.h"

namespace ek {

void throwException(const std::string& reason) { throw Exception(reason); }

Color calibratedColor(double red, double green, double blue, double alpha) {
  const auto clamp = [](double component) { return std::min(std::max(0.0, component), 1.0); };  // -0 is 0
  return {clamp(red), clamp(green), clamp(blue), clamp(alpha)};
}

DayOfWeek DayOfWeek::dayOfWeek(int dayOfTheWeek) {
  if (dayOfTheWeek < 1 || dayOfTheWeek > 7)
    throw Exception("day of the week " + std::to_string(dayOfTheWeek) + " is not between 1 and 7");
  return {.dayOfTheWeek = dayOfTheWeek};
}

RecurrenceEnd RecurrenceEnd::withEndDate(std::optional<Date> endDate) {
  if (!endDate) throw Exception("a recurrence end needs a date");
  return {.endDate = endDate};
}

RecurrenceEnd RecurrenceEnd::withOccurrenceCount(std::int64_t count) {
  if (count < 1) throw Exception("a recurrence end needs a count above 0");
  return {.occurrenceCount = count};
}

Reminder& asReminder(CalendarItem& item) {
  auto* reminder = dynamic_cast<Reminder*>(&item);
  if (reminder == nullptr)
    throw Exception("unrecognized selector: the open item is an event, not a reminder");
  return *reminder;
}

}  // namespace ek
