#pragma once

#include <functional>
#include <string>

#include "host/script/script.h"
#include "host/session.h"

namespace fmhost {

// What Show Custom Dialog shows.
using ShowDialog = std::function<void(const std::string& title, const std::string& message)>;

// Runs the script in the session and returns what it exits with. Throws ScriptError.
Value runScript(const Script& script, Session& session, Value parameter, const ShowDialog& showDialog);

}  // namespace fmhost
