#include "plugin/shell/registration.h"

#include "plugin/shell/external_functions.h"
#include "plugin/shell/strings.h"

namespace zuno {

namespace {

struct Registration {
  short id;
  short minArgs;
  short maxArgs;
  fmx::ExtPluginType function;
};

// An ID is also the number of the function's string resources.
constexpr Registration kRegistrations[] = {
    {151, 0, 1, Zuno_Version},          {152, 1, 1, Zuno_GetItemCountForType},
    {153, 2, 2, Zuno_OpenItemAt},       {154, 2, 3, Zuno_OpenItemWithUID},
    {155, 2, 3, Zuno_GetProperty},      {156, 4, 4, Zuno_EventsFetch},
    {157, 3, 3, Zuno_RemindersFetch},   {158, 1, 1, Zuno_CalOpenCalendarWithTitle},
    {159, 3, 3, Zuno_SetProperty},      {160, 0, 1, Zuno_GetLastError},
    {161, 1, 2, Zuno_SaveItem},         {162, 7, 7, Zuno_AddRecurrence},
    {163, 6, 6, Zuno_AddAlarm},         {164, 2, 2, Zuno_RemoveAlarm},
    {165, 0, 0, Zuno_RemoveRecurrence}, {166, 1, 1, Zuno_NewItem},
    {167, 2, 4, Zuno_RemoveItem},       {168, 1, 1, Zuno_RemoveAllAlarmsFrom},
};

constexpr short kFirstUnregistered = 148;
constexpr short kLastUnregistered = 169;
constexpr short kDescriptionOffset = 200;  // from a function's ID to the number of its description

// The oldest hosts that take a function's description, and script steps.
constexpr FMX_Int16 kDescriptionVersion = 56;
constexpr FMX_Int16 kScriptStepVersion = 57;

// May run on a server; shown in every dialog of the host's.
constexpr fmx::uint32 kFlags = 0xFF01;

fmx::QuadCharUniquePtr pluginID() { return {'Z', 'u', 'n', 'o'}; }

FMX_Int16 hostVersion() { return gFMX_ExternCallPtr->extnVersion; }

}  // namespace

void RegisterFunctions() {
  for (const auto& [id, minArgs, maxArgs, function] : kRegistrations)
    RegisterFunction(id, minArgs, maxArgs, function);
}

fmx::errcode RegisterFunction(short functionID, short minArgs, short maxArgs, fmx::ExtPluginType function) {
  const fmx::QuadCharUniquePtr plugin = pluginID();
  const fmx::TextUniquePtr name;
  const fmx::TextUniquePtr prototype;
  const fmx::TextUniquePtr description;
  Do_GetString(functionID, *name, true);
  Do_GetString(functionID, *prototype, false);
  const FMX_Int16 version = hostVersion();
  if (version < kDescriptionVersion)
    return fmx::ExprEnv::RegisterExternalFunction(*plugin, functionID, *name, *prototype, minArgs, maxArgs,
                                                  kFlags, function);

  Do_GetString(functionID + kDescriptionOffset, *description, false);
  const fmx::errcode answer = fmx::ExprEnv::RegisterExternalFunctionEx(
      *plugin, functionID, *name, *prototype, *description, minArgs, maxArgs, kFlags, function);
  if (version < kScriptStepVersion) return answer;

  const fmx::TextUniquePtr definition;
  Do_GetString(functionID + kDescriptionOffset, *description, false);
  GetXMLDefinition(functionID, *definition);
  return fmx::ExprEnv::RegisterScriptStep(*plugin, functionID, *name, *definition, *description, kFlags,
                                          function);
}

void UnregisterFunctions() {
  const fmx::QuadCharUniquePtr plugin = pluginID();
  for (short id = kFirstUnregistered; id <= kLastUnregistered; ++id)
    fmx::ExprEnv::UnRegisterExternalFunction(*plugin, id);
  if (hostVersion() < kScriptStepVersion) return;
  for (short id = kFirstUnregistered; id <= kLastUnregistered; ++id)
    fmx::ExprEnv::UnRegisterScriptStep(*plugin, id);
}

}  // namespace zuno
