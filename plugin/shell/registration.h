// Announcing the functions and their script steps to the host.
#pragma once

#include <string>

#include "FMWrapper/FMXCalcEngine.h"

namespace zuno {

// All eighteen, in ascending order of ID. What the host refuses is missing, and nobody is told.
void RegisterFunctions();
// IDs around those in use are taken back too: the host ignores one that it does not know.
void UnregisterFunctions();

// One function and, where the host is new enough, its script step. The host's answer to the last of it.
fmx::errcode RegisterFunction(short functionID, short minArgs, short maxArgs, fmx::ExtPluginType function);

// What the host needs to know of a step's parameters, as XML; empty for an ID that is no step.
void GetXMLDefinition(short functionID, fmx::Text& definition);
std::string stepDefinition(short functionID);

}  // namespace zuno
