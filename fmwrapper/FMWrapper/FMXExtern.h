// The binary interface between FileMaker and a plug-in: basic types, message numbers, the call record and the
// entry point. Everything with C linkage that a host and a plug-in must agree on byte for byte starts here.
#pragma once

#include <cstddef>
#include <cstdint>

// What the functions of the host's library carry. Empty for a plug-in, except where importing has to be said.
#ifndef FMX_API
#ifdef _MSC_VER
#define FMX_API __declspec(dllimport)
#else
#define FMX_API
#endif
#endif

#ifdef _MSC_VER
#define FMX_ENTRYPT __declspec(dllexport)
#else
// A plug-in that is built with hidden visibility exports its entry point itself.
#define FMX_ENTRYPT
#endif

#ifdef _WIN32
#define FMX_PROCPTR __stdcall
#else
#define FMX_PROCPTR
#endif

namespace fmx {

using uchar = unsigned char;
using int16 = std::int16_t;
using uint16 = std::uint16_t;
using int32 = std::int32_t;
using uint32 = std::uint32_t;
using int64 = std::int64_t;
using uint64 = std::uint64_t;
using ptrtype = std::uint64_t;
using errcode = std::int16_t;
using unichar16 = unsigned short;
#ifdef _WIN32
using unusedid = std::int16_t;
#else
using unusedid = std::int32_t;
#endif

class BinaryData;
class CharacterStyle;
class Data;
class DataVect;
class DateTime;
class ExprEnv;
class FixPt;
class Locale;
class QuadChar;
class RowVect;
class Text;

}  // namespace fmx

using FMX_UChar = fmx::uchar;
using FMX_Char = char;
using FMX_Boolean = char;
using FMX_Int16 = fmx::int16;
using FMX_UInt16 = fmx::uint16;
using FMX_Int32 = fmx::int32;
using FMX_UInt32 = fmx::uint32;
using FMX_PtrType = fmx::ptrtype;
using FMX_ErrorCode = fmx::errcode;
using FMX_Unichar = fmx::unichar16;

static_assert(sizeof(FMX_PtrType) == sizeof(void*), "The record's slots hold addresses: 64-bit hosts only");
static_assert(sizeof(FMX_Unichar) == 2 && sizeof(FMX_Boolean) == 1 && sizeof(bool) == 1);

// API versions, by product.
enum {
  k40ExtnVersion = 11,
  k41ExtnVersion = 12,
  k50ExtnVersion = 14,
  k60ExtnVersion = 17,
  k70ExtnVersion = 50,
  k80ExtnVersion = 51,
  k110ExtnVersion = 52,
  k120ExtnVersion = 53,
  k130ExtnVersion = 54,
  k140ExtnVersion = 55,
  k150ExtnVersion = 56,  // descriptions of functions; session and file messages
  k160ExtnVersion = 57,  // script steps
  k170ExtnVersion = 59,
  k180ExtnVersion = 60,
  k190ExtnVersion = 62,
  k191ExtnVersion = 63,
  k192ExtnVersion = 64,
  k193ExtnVersion = 65,
  kCurrentExtnVersion = k193ExtnVersion,
  kMinExtnVersion = 4,
  kMaxExtnVersion = 255
};

// Refusals that a plug-in leaves in the result slot at kFMXT_Init, in place of its API version.
enum { kBadExtnVersion = -1, kDoNotEnable = -2 };

using FMX_ExternCallSwitch = FMX_UChar;
enum {
  kFMXT_Init = 0,
  kFMXT_Idle = 1,
  kFMXT_Shutdown = 4,
  kFMXT_DoAppPreferences = 5,
  kFMXT_GetString = 7,
  kFMXT_SessionShutdown = 8,
  kFMXT_FileShutdown = 9,
  kFMXT_SchemaChange = 10
};

using FMX_Strings = FMX_UInt32;
enum { kFMXT_NameStr = 128, kFMXT_AppConfigStr = 129, kFMXT_OptionsStr = 131, kFMXT_HelpURLStr = 132 };

// Flags of a registration. Any display bit shows a function in every picker; with no compatibility bit at all
// the host takes them all as set.
enum : fmx::uint32 {
  kMayEvaluateOnServer = 0x00000001,
  kDisplayCalcFields = 0x00000100,
  kDisplayAutoEnter = 0x00000200,
  kDisplayValidation = 0x00000400,
  kDisplayCustomFunctions = 0x00000800,
  kDisplayPrivileges = 0x00001000,
  kDisplayInFuture1 = 0x00002000,
  kDisplayInFuture2 = 0x00004000,
  kDisplayGeneric = 0x00008000,
  kDisplayInAllDialogs = 0x0000FF00,
  kMacCompatible = 0x00000002,
  kWinCompatible = 0x00000004,
  kServerCompatible = 0x00000008,
  kIOSCompatible = 0x00000010,
  kCustomWebCompatible = 0x00000020,
  kWebDirectCompatible = 0x00000040,
  kAllDeviceCompatible = 0x0000007E,
  kFutureCompatible = 0x00FF007E
};

// Returned by a function or step, these make its result the host's detail of the last error.
enum {
  kPluginErrResult1 = 1552,
  kPluginErrResult2 = 1553,
  kPluginErrResult3 = 1554,
  kPluginErrResult4 = 1555,
  kPluginErrResult5 = 1556,
  kPluginErrResult6 = 1557,
  kPluginErrResult7 = 1558,
  kPluginErrResult8 = 1559
};

extern "C" {

struct FMX_ExternCallStruct;
using FMX_ExternCallPtr = FMX_ExternCallStruct*;
using FMX_ExternCallProc = void(FMX_PROCPTR*)(FMX_ExternCallPtr);

using FMX_ScriptControl = FMX_UChar;
enum { kFMXT_Halt = 0, kFMXT_Exit = 1, kFMXT_Resume = 2, kFMXT_Pause = 3 };
using FMX_StartScriptCall = fmx::errcode(FMX_PROCPTR*)(const fmx::Text* file, const fmx::Text* script,
                                                       FMX_ScriptControl control, const fmx::Data* parameter);
using FMX_CurrentEnvCall = fmx::errcode(FMX_PROCPTR*)(fmx::ExprEnv* environment);

// One message of the host's, packed to single bytes. What a message does not use is zero.
#pragma pack(push, 1)
struct FMX_ExternCallStruct {
  FMX_Int16 extnVersion;  // the host's API version
  fmx::unusedid unusedID;
  FMX_ExternCallProc entryPoint;
  FMX_Boolean unusedFlag;
  FMX_ExternCallSwitch whichCall;
  FMX_Boolean unsafeCalls;  // not on the main thread
  FMX_UChar parm1;
  FMX_PtrType parm2;
  FMX_PtrType parm3;
  FMX_PtrType instanceID;  // on macOS the plug-in's own bundle
  FMX_PtrType result;
  FMX_PtrType unused;
  FMX_StartScriptCall cStartScript;
  FMX_CurrentEnvCall cCurrentEnv;
};
#pragma pack(pop)

// The record of the message in hand. The plug-in defines it; no host looks for it.
extern FMX_ExternCallPtr gFMX_ExternCallPtr;

void FMX_ENTRYPT FMExternCallProc(FMX_ExternCallPtr record);

}  // extern "C"

static_assert(alignof(FMX_ExternCallStruct) == 1);
#ifndef _WIN32
static_assert(sizeof(FMX_ExternCallStruct) == 74);
static_assert(offsetof(FMX_ExternCallStruct, unusedID) == 2);
static_assert(offsetof(FMX_ExternCallStruct, entryPoint) == 6);
static_assert(offsetof(FMX_ExternCallStruct, unusedFlag) == 14);
static_assert(offsetof(FMX_ExternCallStruct, whichCall) == 15);
static_assert(offsetof(FMX_ExternCallStruct, unsafeCalls) == 16);
static_assert(offsetof(FMX_ExternCallStruct, parm1) == 17);
static_assert(offsetof(FMX_ExternCallStruct, parm2) == 18);
static_assert(offsetof(FMX_ExternCallStruct, parm3) == 26);
static_assert(offsetof(FMX_ExternCallStruct, instanceID) == 34);
static_assert(offsetof(FMX_ExternCallStruct, result) == 42);
static_assert(offsetof(FMX_ExternCallStruct, unused) == 50);
static_assert(offsetof(FMX_ExternCallStruct, cStartScript) == 58);
static_assert(offsetof(FMX_ExternCallStruct, cCurrentEnv) == 66);
#endif
