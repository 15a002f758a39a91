#include "host/plugin.h"

#include <algorithm>
#include <dlfcn.h>
#include <system_error>
#include <vector>

#include "foundation/text.h"
#include "host/wrapper/text_case.h"

namespace fmhost {
namespace {

constexpr FMX_PtrType kEnglishUnitedStates = 0x0409;
constexpr FMX_UChar kFileMakerPro = 1;
constexpr char16_t kVersionText[] = u"Pro 19.3.1";

constexpr std::size_t kOptionsLength = 11;
constexpr std::size_t kIdLength = 4;
constexpr std::size_t kInitialiseOption = 7;

std::string utf8(std::u16string_view text) { return foundation::utf8FromUtf16(text); }

// Empty when the option string is as the host wants it.
std::string faultOf(std::u16string_view options) {
  if (options.size() != kOptionsLength)
    return "has " + std::to_string(options.size()) + " characters, not 11";
  const auto id = options.substr(0, kIdLength);
  const bool isAlphanumeric = std::ranges::all_of(id, [](char16_t c) {
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
  });
  if (!isAlphanumeric) return "does not begin with an ID of four letters and digits";
  if (id.starts_with(u'F') || id.starts_with(u"Web")) return "has an ID that the host keeps for itself";
  if (options[4] != u'1' || options[6] != u'n' || options[10] != u'n') return "has a wrong fixed character";
  for (const std::size_t flag : {5U, 7U, 8U, 9U}) {
    if (options[flag] != u'Y' && options[flag] != u'n') return "has a flag that is neither Y nor n";
  }
  return {};
}

QuadChar idFrom(std::u16string_view options) {
  QuadChar id;
  std::transform(options.begin(), options.begin() + kIdLength, std::begin(id.bytes),
                 [](char16_t c) { return static_cast<std::uint8_t>(c); });
  return id;
}

const Registration* rowNamed(const Registrations& rows, std::u16string_view name) {
  const auto row = std::ranges::find_if(rows, [name](const Registration& candidate) {
    return std::is_eq(compareIgnoringCase(candidate.name, name));
  });
  return row == rows.end() ? nullptr : &*row;
}

}  // namespace

// The library is never closed: its globals hold what it made until the process ends.
Plugin::Plugin(const std::filesystem::path& file, int extensionVersion) {
  void* const library = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw PluginError(std::string("the plug-in cannot be loaded: ") + dlerror());
  entryPoint_ = reinterpret_cast<FMX_ExternCallProc>(dlsym(library, "FMExternCallProc"));
  if (entryPoint_ == nullptr) throw PluginError("the plug-in has no entry point FMExternCallProc");
  record_.extnVersion = static_cast<FMX_Int16>(extensionVersion);
  record_.entryPoint = entryPoint_;
  record_.unusedID = -1;
  askForTexts();
  initialise();
}

Plugin::~Plugin() { shutDown(); }

void Plugin::send(FMX_ExternCallSwitch message, FMX_UChar parm1, FMX_PtrType parm2, FMX_PtrType parm3,
                  FMX_PtrType result) {
  record_.whichCall = message;
  record_.parm1 = parm1;
  record_.parm2 = parm2;
  record_.parm3 = parm3;
  record_.result = result;
  entryPoint_(&record_);
}

std::optional<Text> Plugin::string(FMX_Strings id, std::uint32_t capacity) {
  constexpr FMX_Unichar kUntouched = 0xFFFF;
  std::vector<FMX_Unichar> buffer(capacity, 0);
  if (capacity > 0) buffer[0] = kUntouched;
  send(kFMXT_GetString, static_cast<FMX_UChar>(id), kEnglishUnitedStates, capacity,
       reinterpret_cast<FMX_PtrType>(buffer.data()));
  if (capacity == 0 || buffer[0] == kUntouched) return std::nullopt;
  return Text(buffer.begin(), std::ranges::find(buffer, 0));
}

void Plugin::askForTexts() {
  options_ = string(kFMXT_OptionsStr).value_or(Text());
  const std::string fault = faultOf(options_);
  if (!fault.empty()) throw PluginError("the plug-in's option string \"" + utf8(options_) + "\" " + fault);
  name_ = string(kFMXT_NameStr).value_or(Text());
  if (name_.empty()) throw PluginError("the plug-in has no name");
}

void Plugin::initialise() {
  if (options_[kInitialiseOption] != u'Y') throw PluginError("the plug-in does not ask to be initialised");
  standIn().open(idFrom(options_), extensionVersion());
  try {
    send(kFMXT_Init, kFileMakerPro, reinterpret_cast<FMX_PtrType>(kVersionText));
  } catch (const std::exception& thrown) {
    standIn().close();
    throw PluginError(std::string("the plug-in threw while it was initialised: ") + thrown.what());
  }
  const auto answer = static_cast<std::int64_t>(record_.result);
  if (answer == kBadExtnVersion || answer == kDoNotEnable || answer == 0) {
    standIn().close();
    const std::string version = std::to_string(static_cast<FMX_UInt16>(record_.extnVersion));
    throw PluginError(answer == kBadExtnVersion
                          ? "the plug-in refuses to be initialised by a host of version " + version
                          : "the plug-in refuses to be initialised");
  }
  isInitialised_ = true;
}

void Plugin::shutDown() {
  if (!isInitialised_) return;
  isInitialised_ = false;
  send(kFMXT_Shutdown);
  standIn().close();
}

const Registration* Plugin::function(std::u16string_view name) const { return rowNamed(functions(), name); }

const Registration* Plugin::step(std::u16string_view name) const { return rowNamed(steps(), name); }

void Plugin::call(const Registration& function, const Environment& environment, const Arguments& arguments,
                  Value& result) {
  fmx::errcode code = 0;
  try {
    code = function.function(function.id, opaque(environment), opaque(arguments), opaque(result));
  } catch (const std::bad_alloc&) {
    throw CallError(utf8(function.name) + " ran out of memory (std::bad_alloc)");
  } catch (const std::exception& thrown) {
    throw CallError(utf8(function.name) + " threw an exception (" + thrown.what() + ")");
  }
  if (code != 0) throw CallError(utf8(function.name) + " returned error " + std::to_string(code));
}

std::filesystem::path findPlugin(std::string_view fileName) {
  std::error_code ignored;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
  for (const auto& place : {folder, folder / "../plugin", folder / "../lib/zuno"}) {
    auto file = (place / fileName).lexically_normal();
    if (std::filesystem::exists(file, ignored)) return file;
  }
  throw PluginError("there is no " + std::string(fileName) + " beside this program; name it with --plugin");
}

}  // namespace fmhost
