#include "plugin/shell/error_catalogue.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace zuno {

namespace {

struct CatalogueEntry {
  std::int32_t number;
  std::string_view message;
};

constexpr std::string_view kUndefined = "Undefined Error.";

// Scripts compare against these texts: their spelling, misspellings included, never changes.
constexpr CatalogueEntry kBackendErrors[] = {
    {kErrInvalidCallOrder, "Invalid call order. Must access other item prior to call."},
    {kErrItemNotFound, "Item not found."},
    {kErrIndexOutOfBounds, "Item index out of bounds."},
    {kErrEventPredicate, "Unable to create event predicate."},
    {kErrCalendarArray, "Cannot create calendar array from names."},
    {kErrMissingArgument, "Missing argument in function."},
    {kErrInvalidArgument, "Invalid argument in function."},
    {kErrReminderPredicate, "Unable to create reminder predicate."},
    {kErrNoAlarms, "No Alarms available."},
    {kErrCreateItem, "Unable to create item."},
    {kErrRecurrenceEnd, "Unable to create recurrence end."},
    {kErrRecurrenceRule, "Unable to create recurrence rule."},
    {kErrCreateOtherItem, "Unable to create item."},
    {kErrCalendarByUid, "Unable to locate Calendar by UID."},
    {kErrOpenCalendar, "Unable to open calendar."},
    {kErrUnsupportedSystem, "This operating system is not supported."},
    {kErrUnsupportedParameter, "Parameter is not supported."},
    {kErrSaveCalendar,
     "Unable to save calendar. Either a parameter is invalid or the calendar is read-only."},
    {kErrSaveEvent, "Unable to save event. Either a parameter is invalid or the event is read-only."},
    {kErrSaveReminder, "Unable to save reminder."},
    {kErrRecurrenceParameters, "Invalid parameters passed for adding a recurrence rule."},
    {kErrRecurrenceType, "Invalid recurrence type. Must be 'Daily','Weekly','Monthly' or 'Yearly'"},
    {kErrDeleteCalendar,
     "Unable to delete calendar. Calendar could be non-deletable or the only calendar existing."},
    {kErrCalendarReadOnly, "This calendar can't be modified."},
    {kErrRecurrenceInterval, "An interval greater than 0 is required for adding recurrence to an event."},
    {kErrDueDate, "Due date is invalid. Please verify there is a valid due date."},
    {kErrAddAlarm, "Alarm was unable to be added."},
    {kErrDeleteAlarm, "Alarm was unable to be deleted."},
    {kErrAlarmNeedsEmail, "An email must be specified when setting an alarm type to 'email'"},
    {kErrAlarmProcedure, "URLs and an alarm type of 'procedure' are not supported after OSX 10.9"},
    {kErrAlarmNeedsSound, "A sound name must be specified when setting up an alarm type to 'sound'"},
    {kErrAlarmNeedsTrigger, "A relative offset or absolute date must be specified for the alarm"},
    {kErrAlarmNeedsAction, "An action for the alarm must be specified."},
    {kErrAlarmDateFormat, "Invalid date format for the alarm."},
    {kErrEventNotFound, "Event was not found."},
    {kErrReminderNotFound, "Reminder was not found."},
    {kErrCalendarNotFound, "Calendar was not found."},
    {kErrSpanMissing, "A span must be specified."},
    {kErrCreateCalendar, "Unable to create calendar."},
    {kErrCreateReminderList, "Unable to create reminder list."},
    {kErrCreateEvent, "Unable to create event."},
    {kErrCreateReminder, "Unable to create reminder."},
    {kErrInvalidType, "Invalid type specified in parameter."},
    {kErrAddRecurrenceNeedsEvent, "An event must be opened before a recurrence rule can be added."},
    {kErrAlarmActionUnknown, "An alarm action was not specified."},
    {kErrAlarmTypeMissing, "An alarm type must be specified."},
    {kErrAlarmNeedsReminder, "A reminder must be opened before adding an alarm."},
    {kErrAlarmNeedsEvent, "An event must be opened before adding an alarm."},
    {kErrRemoveRecurrenceNeedsEvent, "An event must be opened before a recurrence rule can be removed."},
    {kErrSetNeedsEvent, "An event must be opened before setting a property."},
    {kErrPropertyMissing, "A property must be specified."},
    {kErrSetNeedsCalendar, "A calendar must be opened before setting a property."},
    {kErrSetNeedsReminder, "A reminder must be opened before setting a property."},
    {kErrSpanUnknown, "An invalid span value was passed. Valid values are 'this', 'future', or 'all'."},
    {kErrCountNeedsEventFetch, "You must fetch events before getting an object count of events."},
    {kErrCountNeedsReminderFetch, "You must fetch reminders before getting an object count of reminders."},
    {kErrCountNeedsEvent, "An event must be opened before getting an object count"},
    {kErrCountNeedsItem, "A reminder or event must be opened before getting an alarm count"},
    {kErrCalendarByTitle, "Unable to find calendar by title."},
    {kErrReminderByUid, "Unable to find reminder by uid."},
    {kErrOpenReminder, "Unable to open reminder at the specfied index."},
    {kErrOpenAlarm, "Unable to open alarm at the specified index."},
    {kErrGetNeedsAttendee, "An attendee must be opened before getting a property."},
    {kErrPropertyUnknown, "Invalid property specified in parameter."},
    {kErrGetNeedsAlarm, "An alarm must be opened before getting a property."},
    {kErrGetNeedsCalendar, "A calendar must be opened before getting a property."},
    {kErrGetNeedsEvent, "An event must be opened before getting a property."},
    {kErrGetNeedsReminder, "A reminder must be opened before getting a property."},
    {kErrGetRecurrenceNeedsEvent, "An event must be opened before getting a recurrence rule property."},
    {kErrRecurrenceEndProperty,
     "Invalid Recurrence Rule End property specified in parameter. Valid sub properties are 'usesEndDate' , "
     "'occurenceCount' , or 'endDate'."},
    {kErrEventHasAttendees,
     "Event could not be saved. Events containing attendees can't be modified externally from the calendar "
     "application."},
    {kErrCalendarModification, "Calendar could not be saved. Verify that it allows content modification."},
    {kErrOpenReminderList, "Unable to open reminder list."},
    {kErrWeeksOfTheYear, "The Recurrence Rule Property 'WeeksOfTheYear' is currently not supported."},
    {kErrRelativeOffsetMissing,
     "No Relative offset specified when adding the Relative Offset alarm property."},
    {kErrAbsoluteDateMissing, "No Absolute offset specified when adding the Absolute Offset alarm property."},
    {kErrDatesInverted, "Start Date is greater than End Date for this event."},
    {kErrNoEventPredicate,
     "An Event Predicate has not been created. Get an Event Predicate before opening an event."},
    {kErrDeleteReminder, "Unable to delete reminder."},
    {kErrDeleteEvent, "Unable to delete event."},
};

constexpr CatalogueEntry kGeneralErrors[] = {
    {-10, kUndefined},
    {-9, kUndefined},
    {-8, kUndefined},
    {-7, kUndefined},
    {-6, kUndefined},
    {-5, kUndefined},
    {kErrInvalidParameters, "Invalid Parameter value(s)"},
    {kErrInvalidParameterCount, "Invalid Number of Parameters"},
    {-2, kUndefined},
    {-1, kUndefined},
    {kErrNone, "SUCCESS"},
};

constexpr CatalogueEntry kOtherErrors[] = {
    {kErrLibraryLoad, "Library failed to load"},
    {kErrFileNotFound, "The specified file cannot be found"},
    {kErrFolderNotFound, "The specified folder cannot be found"},
    {kErrFolderAccess, "The specified folder cannot be accessed"},
    {kErrSystem, "System Error"},
    {kErrUnknownException, "Unknown Exception"},
    {kErrComException, "COM Exception"},
};

// A dense table is indexed by number, so each row must stand at its number's place.
template <std::size_t N>
constexpr bool countsUpFrom(const CatalogueEntry (&rows)[N], std::int32_t first) {
  for (std::size_t i = 0; i < N; ++i)
    if (rows[i].number != first + static_cast<std::int32_t>(i)) return false;
  return true;
}
static_assert(countsUpFrom(kBackendErrors, 9000) && std::size(kBackendErrors) == 80);
static_assert(countsUpFrom(kGeneralErrors, -10) && std::size(kGeneralErrors) == 11);

}  // namespace

std::string_view errorMessage(std::int32_t number) {
  if (number >= 9000 && number <= 9079) return kBackendErrors[number - 9000].message;
  if (number >= -10 && number <= 0) return kGeneralErrors[number + 10].message;
  const auto* const entry =
      std::find_if(std::begin(kOtherErrors), std::end(kOtherErrors),
                   [number](const CatalogueEntry& row) { return row.number == number; });
  return entry == std::end(kOtherErrors) ? kUndefined : entry->message;
}

}  // namespace zuno
