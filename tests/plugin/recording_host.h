// A host that writes down what a plug-in registers and takes back. Linked into a test, it goes before the
// stand-in's functions of the same names.
#pragma once

#include <string>
#include <vector>

#include "FMWrapper/FMXCalcEngine.h"

namespace zuno::test {

struct HostCall {
  std::string operation;
  short id = 0;
  std::string name, prototype, description, definition;
  int minArgs = 0;
  int maxArgs = 0;
  fmx::uint32 flags = 0;
  fmx::ExtPluginType function = nullptr;
};

struct RecordingHost {
  std::vector<HostCall> calls;
  fmx::errcode answer = 0;  // of every call
  int failure = 0;          // left in the error holder of every call
  std::string pluginID;     // of the last call
};
RecordingHost& recordingHost();

}  // namespace zuno::test
