// A plug-in, loaded and driven as FileMaker does it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "FMWrapper/FMXExtern.h"
#include "host/wrapper/stand_in.h"

namespace fmhost {

// A plug-in that cannot be used, and why.
class PluginError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// An external function that failed to come back in order: it threw, or returned an error number.
class CallError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// One at a time in a process: what plug-ins register is the process's. Functions may be called from several
// threads at once, each with an environment and values of its own.
class Plugin {
 public:
  // Loads the library, asks for its texts, and initialises it. Throws PluginError.
  explicit Plugin(const std::filesystem::path& file, int extensionVersion = kCurrentExtnVersion);
  ~Plugin();
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  const Text& name() const { return name_; }
  const Text& options() const { return options_; }
  int extensionVersion() const { return record_.extnVersion; }

  // The plug-in's text of that number; nothing when it leaves the buffer alone.
  std::optional<Text> string(FMX_Strings id, std::uint32_t capacity = kStringCapacity);

  const Registrations& functions() const { return standIn().functions(); }
  const Registrations& steps() const { return standIn().steps(); }
  // Null when there is none; letter case makes no difference.
  const Registration* function(std::u16string_view name) const;
  const Registration* step(std::u16string_view name) const;

  // The result is as the function leaves it, untouched maybe. Throws CallError.
  static void call(const Registration& function, const Environment& environment, const Arguments& arguments,
                   Value& result);

  // Sends the last message, once; the destructor does it otherwise. Nothing is registered afterwards.
  void shutDown();

  // Live objects and failures on demand.
  static StandIn& standIn() { return *FM_StandIn_Shared(); }

 private:
  static constexpr std::uint32_t kStringCapacity = 1024;

  void send(FMX_ExternCallSwitch message, FMX_UChar parm1 = 0, FMX_PtrType parm2 = 0, FMX_PtrType parm3 = 0,
            FMX_PtrType result = 0);
  void askForTexts();
  void initialise();

  FMX_ExternCallProc entryPoint_ = nullptr;
  // Stays where it is: a plug-in may keep the address of the last message.
  FMX_ExternCallStruct record_{};
  Text name_;
  Text options_;
  bool isInitialised_ = false;
};

// Where the plug-in of that file name is when nobody says: beside the program, or in the build tree around
// it. Throws PluginError.
std::filesystem::path findPlugin(std::string_view fileName);

}  // namespace fmhost
