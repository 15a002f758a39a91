#include "plugin/shell/entry_point.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "FMWrapper/FMXExtern.h"
#include "foundation/bundle.h"
#include "plugin/backend/ical_ek_functions.h"
#include "plugin/shell/globals.h"
#include "plugin/shell/host_boundary.h"
#include "plugin/shell/kept_objects.h"
#include "plugin/shell/plugin_error.h"
#include "plugin/shell/registration.h"
#include "plugin/shell/sessions.h"
#include "plugin/shell/strings.h"

FMX_ExternCallPtr gFMX_ExternCallPtr = nullptr;

namespace zuno {

namespace {

constexpr FMX_UInt16 kOldestHost = 50;
constexpr FMX_UInt16 kNewestHost = 255;
constexpr FMX_PtrType kOwnVersion = 65;  // of the host's interface
constexpr auto kRefusal = static_cast<FMX_PtrType>(std::int64_t{-1});

constexpr std::uint32_t kGestaltMinorVersion = 0x73797332;
constexpr std::int32_t kLastMinorWithoutEventKit = 7;

void initialise() {
  const auto version = static_cast<FMX_UInt16>(gFMX_ExternCallPtr->extnVersion);
  if (version < kOldestHost || version > kNewestHost) {
    gFMX_ExternCallPtr->result = kRefusal;
    return;
  }
  RegisterFunctions();
  Do_PluginInit();
  gFMX_ExternCallPtr->result = kOwnVersion;
}

void answerString() {
  const FMX_ExternCallStruct& message = *gFMX_ExternCallPtr;
  Do_GetString(message.parm1, static_cast<FMX_UInt32>(message.parm2), static_cast<FMX_Int32>(message.parm3),
               // The host hands the buffer's address over as a number.
               reinterpret_cast<FMX_Unichar*>(message.result));  // NOLINT(performance-no-int-to-ptr)
}

void answerMessage() {
  switch (gFMX_ExternCallPtr->whichCall) {
    case kFMXT_Init:
      return initialise();
    case kFMXT_Shutdown:
      UnregisterFunctions();
      return releaseKeptObjects();
    case kFMXT_GetString:
      return answerString();
    default:
      return;
  }
}

}  // namespace

void Do_PluginInit() {
  const SessionLock lock;
  g_bUseEK = true;
  g_sharedEKFunctions = iCalEKFunctions::sharedICalFunctions();
  g_sharedFunctions = nullptr;
  error = std::make_unique<zuno_PluginError>();
}

bool UseEKImplementation() {
  const std::optional<std::int32_t> minor = foundation::gestalt(kGestaltMinorVersion);
  return minor && *minor > kLastMinorWithoutEventKit;
}

}  // namespace zuno

extern "C" __attribute__((visibility("default"))) void FMExternCallProc(FMX_ExternCallPtr record) {
  gFMX_ExternCallPtr = record;
  zuno::atHostBoundary(zuno::answerMessage, [] {});
}
