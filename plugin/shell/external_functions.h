// The functions that the host calls, each also as a script step. They are defined in plugin/functions.
#pragma once

#include "FMWrapper/FMXCalcEngine.h"

namespace zuno {

using ExternalFunction = fmx::errcode(short functionId, const fmx::ExprEnv& environment,
                                      const fmx::DataVect& arguments, fmx::Data& result);

ExternalFunction Zuno_Version;
ExternalFunction Zuno_GetItemCountForType;
ExternalFunction Zuno_OpenItemAt;
ExternalFunction Zuno_OpenItemWithUID;
ExternalFunction Zuno_GetProperty;
ExternalFunction Zuno_EventsFetch;
ExternalFunction Zuno_RemindersFetch;
ExternalFunction Zuno_CalOpenCalendarWithTitle;
ExternalFunction Zuno_SetProperty;
ExternalFunction Zuno_GetLastError;
ExternalFunction Zuno_SaveItem;
ExternalFunction Zuno_AddRecurrence;
ExternalFunction Zuno_AddAlarm;
ExternalFunction Zuno_RemoveAlarm;
ExternalFunction Zuno_RemoveRecurrence;
ExternalFunction Zuno_NewItem;
ExternalFunction Zuno_RemoveItem;
ExternalFunction Zuno_RemoveAllAlarmsFrom;

}  // namespace zuno
