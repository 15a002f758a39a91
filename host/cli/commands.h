// The commands of zunohost. Each returns the program's exit status.
#pragma once

#include <string>
#include <vector>

#include "host/session.h"

namespace fmhost {

int listFunctions(const Plugin& plugin, bool json);
// One calculation after the other, in one session; from standard input, one a line, when there are none.
int evaluateAll(Session& session, const std::vector<std::string>& calculations, bool json);
int runScriptFile(Session& session, const std::string& file, const std::string& parameter);
int readEvaluatePrint(Session& session, bool json);

// Prints the value, or why there is none. Whether there is one.
bool evaluateAndPrint(Session& session, const std::string& calculation, bool json);

}  // namespace fmhost
