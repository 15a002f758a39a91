// How the plug-in starts. The host's messages arrive at FMExternCallProc.
#pragma once

namespace zuno {

// At the end of a successful initialisation: the backend and the error object.
void Do_PluginInit();

// Whether the system is one that has EventKit. Nothing asks: the EventKit backend is the only one.
bool UseEKImplementation();

}  // namespace zuno
