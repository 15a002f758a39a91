#include "eventkit/embedded/store/refusals.h"

#include <algorithm>
#include <string_view>

namespace ek::embedded {

namespace {

constexpr struct {
  ErrorCode code;
  std::string_view text;
} kTexts[] = {
    {ErrorCode::eventNotMutable, "Somebody else is the organizer of this event."},
    {ErrorCode::noCalendar, "The item has no calendar."},
    {ErrorCode::noStartDate, "The event has no start date."},
    {ErrorCode::noEndDate, "The event has no end date."},
    {ErrorCode::datesInverted, "The event ends before it starts."},
    {ErrorCode::internalFailure, "The item cannot be kept there."},
    {ErrorCode::calendarReadOnly, "The calendar does not allow changes."},
    {ErrorCode::durationGreaterThanRecurrence, "The event lasts longer than it takes to repeat."},
    {ErrorCode::startDateCollidesWithOtherOccurrence, "Another occurrence of the event starts then."},
    {ErrorCode::invalidSpan, "A single occurrence cannot repeat otherwise than its series."},
    {ErrorCode::calendarHasNoSource, "The calendar has no account."},
    {ErrorCode::calendarSourceCannotBeModified, "A calendar cannot move to another account."},
    {ErrorCode::calendarIsImmutable, "The calendar cannot be changed or removed."},
    {ErrorCode::recurringReminderRequiresDueDate, "A repeating reminder needs a due date."},
    {ErrorCode::calendarDoesNotAllowEvents, "A reminder list takes no events."},
    {ErrorCode::calendarDoesNotAllowReminders, "A calendar for events takes no reminders."},
    {ErrorCode::priorityIsInvalid, "A priority lies between 0 and 9."},
    {ErrorCode::eventStoreNotAuthorized, "The calendar store cannot be written."},
    {ErrorCode::reminderAlarmContainsEmailOrUrl, "A reminder's alarm sends no mail and opens nothing."},
};

}  // namespace

bool refuse(std::optional<Error>& error, ErrorCode code) {
  const auto* entry = std::ranges::find(kTexts, code, [](const auto& each) { return each.code; });
  error = Error{.code = code, .text = entry == std::end(kTexts) ? "" : std::string(entry->text)};
  return false;
}

}  // namespace ek::embedded
