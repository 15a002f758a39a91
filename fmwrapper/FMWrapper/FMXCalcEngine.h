// The calculation engine: the vector of a call's arguments, its environment, and the registration of
// functions and script steps.
#pragma once

#include <memory>

#include "FMWrapper/FMXClient.h"
#include "FMWrapper/FMXData.h"
#include "FMWrapper/FMXDateTime.h"
#include "FMWrapper/FMXFixPt.h"
#include "FMWrapper/FMXText.h"
#include "FMWrapper/FMXTypes.h"

namespace fmx {

// A function of the plug-in's, and a script step too: it reads the arguments, leaves its answer in the result
// and returns 0.
using ExtPluginType = errcode(FMX_PROCPTR*)(short functionId, const ExprEnv& environment,
                                            const DataVect& arguments, Data& result);

}  // namespace fmx

extern "C" {
FMX_API fmx::DataVect* FM_DataVect_Constructor1(fmx::_fmxcpt&) noexcept;
FMX_API void FM_DataVect_Clear(void* self, fmx::_fmxcpt&) noexcept;
FMX_API void FM_DataVect_PushBack(void* self, const fmx::Data& value, fmx::_fmxcpt&) noexcept;
FMX_API fmx::uint32 FM_DataVect_Size(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API const fmx::Data* FM_DataVect_At(const void* self, fmx::uint32 position, fmx::_fmxcpt&) noexcept;
FMX_API const fmx::Text* FM_DataVect_AtAsText(const void* self, fmx::uint32 position, fmx::_fmxcpt&) noexcept;
FMX_API const fmx::FixPt* FM_DataVect_AtAsNumber(const void* self, fmx::uint32 position,
                                                 fmx::_fmxcpt&) noexcept;
FMX_API const fmx::DateTime* FM_DataVect_AtAsDate(const void* self, fmx::uint32 position,
                                                  fmx::_fmxcpt&) noexcept;
FMX_API const fmx::DateTime* FM_DataVect_AtAsTime(const void* self, fmx::uint32 position,
                                                  fmx::_fmxcpt&) noexcept;
FMX_API const fmx::DateTime* FM_DataVect_AtAsTimeStamp(const void* self, fmx::uint32 position,
                                                       fmx::_fmxcpt&) noexcept;
FMX_API bool FM_DataVect_AtAsBoolean(const void* self, fmx::uint32 position, fmx::_fmxcpt&) noexcept;
FMX_API void FM_DataVect_Delete(void* self, fmx::_fmxcpt&) noexcept;

FMX_API fmx::ExprEnv* FM_ExprEnv_Constructor1(fmx::_fmxcpt&) noexcept;
FMX_API fmx::ptrtype FM_ExprEnv_SessionID(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::ptrtype FM_ExprEnv_FileID(const void* self, fmx::_fmxcpt&) noexcept;
FMX_API void FM_ExprEnv_Delete(void* self, fmx::_fmxcpt&) noexcept;
FMX_API fmx::errcode FM_ExprEnv_RegisterExternalFunction(const fmx::QuadChar& pluginId, short functionId,
                                                         const fmx::Text& name, const fmx::Text& prototype,
                                                         short minArgs, short maxArgs, fmx::uint32 flags,
                                                         fmx::ExtPluginType function, fmx::_fmxcpt&) noexcept;
FMX_API fmx::errcode FM_ExprEnv_RegisterExternalFunctionEx(const fmx::QuadChar& pluginId, short functionId,
                                                           const fmx::Text& name, const fmx::Text& prototype,
                                                           const fmx::Text& description, short minArgs,
                                                           short maxArgs, fmx::uint32 flags,
                                                           fmx::ExtPluginType function,
                                                           fmx::_fmxcpt&) noexcept;
FMX_API fmx::errcode FM_ExprEnv_UnRegisterExternalFunction(const fmx::QuadChar& pluginId, short functionId,
                                                           fmx::_fmxcpt&) noexcept;
FMX_API fmx::errcode FM_ExprEnv_RegisterScriptStep(const fmx::QuadChar& pluginId, short stepId,
                                                   const fmx::Text& name, const fmx::Text& definition,
                                                   const fmx::Text& description, fmx::uint32 flags,
                                                   fmx::ExtPluginType function, fmx::_fmxcpt&);
FMX_API fmx::errcode FM_ExprEnv_UnRegisterScriptStep(const fmx::QuadChar& pluginId, short stepId,
                                                     fmx::_fmxcpt&);
}

namespace fmx {

class DataVect {
 public:
  DataVect() = delete;
  DataVect(const DataVect&) = delete;
  DataVect& operator=(const DataVect&) = delete;

  void Clear() { wrapper::checked(FM_DataVect_Clear, this); }
  void PushBack(const Data& value) { wrapper::checked(FM_DataVect_PushBack, this, value); }

  uint32 Size() const { return wrapper::checked(FM_DataVect_Size, this); }
  // Positions count from 0; what one past the end does is up to the host, so ask for the size first. What
  // these return belongs to the vector and is good until the call returns.
  const Data& At(uint32 position) const { return *wrapper::checked(FM_DataVect_At, this, position); }
  const Text& AtAsText(uint32 position) const {
    return *wrapper::checked(FM_DataVect_AtAsText, this, position);
  }
  const FixPt& AtAsNumber(uint32 position) const {
    return *wrapper::checked(FM_DataVect_AtAsNumber, this, position);
  }
  const DateTime& AtAsDate(uint32 position) const {
    return *wrapper::checked(FM_DataVect_AtAsDate, this, position);
  }
  const DateTime& AtAsTime(uint32 position) const {
    return *wrapper::checked(FM_DataVect_AtAsTime, this, position);
  }
  const DateTime& AtAsTimeStamp(uint32 position) const {
    return *wrapper::checked(FM_DataVect_AtAsTimeStamp, this, position);
  }
  bool AtAsBoolean(uint32 position) const {
    return wrapper::checked(FM_DataVect_AtAsBoolean, this, position);
  }

  static void operator delete(void* self) noexcept { wrapper::destroy(FM_DataVect_Delete, self); }
};

class DataVectUniquePtr : public std::unique_ptr<DataVect> {
 public:
  DataVectUniquePtr() : std::unique_ptr<DataVect>(wrapper::checked(FM_DataVect_Constructor1)) {}
};

class ExprEnv {
 public:
  ExprEnv() = delete;
  ExprEnv(const ExprEnv&) = delete;
  ExprEnv& operator=(const ExprEnv&) = delete;

  ptrtype SessionID() const { return wrapper::checked(FM_ExprEnv_SessionID, this); }
  ptrtype FileID() const { return wrapper::checked(FM_ExprEnv_FileID, this); }

  // The plug-in's ID is the one at the head of its option string. 0 is success; -1 for the most arguments is
  // any number. The host keeps copies of the texts.
  static errcode RegisterExternalFunction(const QuadChar& pluginId, short functionId, const Text& name,
                                          const Text& prototype, short minArgs, short maxArgs, uint32 flags,
                                          ExtPluginType function) {
    return wrapper::checked(FM_ExprEnv_RegisterExternalFunction, pluginId, functionId, name, prototype,
                            minArgs, maxArgs, flags, function);
  }
  // From API version 56. A description reads "words for type-ahead|text to show".
  static errcode RegisterExternalFunctionEx(const QuadChar& pluginId, short functionId, const Text& name,
                                            const Text& prototype, const Text& description, short minArgs,
                                            short maxArgs, uint32 flags, ExtPluginType function) {
    return wrapper::checked(FM_ExprEnv_RegisterExternalFunctionEx, pluginId, functionId, name, prototype,
                            description, minArgs, maxArgs, flags, function);
  }
  static errcode UnRegisterExternalFunction(const QuadChar& pluginId, short functionId) {
    return wrapper::checked(FM_ExprEnv_UnRegisterExternalFunction, pluginId, functionId);
  }
  // From API version 57. Mind the order: the definition comes before the description.
  static errcode RegisterScriptStep(const QuadChar& pluginId, short stepId, const Text& name,
                                    const Text& definition, const Text& description, uint32 flags,
                                    ExtPluginType function) {
    return wrapper::checked(FM_ExprEnv_RegisterScriptStep, pluginId, stepId, name, definition, description,
                            flags, function);
  }
  static errcode UnRegisterScriptStep(const QuadChar& pluginId, short stepId) {
    return wrapper::checked(FM_ExprEnv_UnRegisterScriptStep, pluginId, stepId);
  }

  static void operator delete(void* self) noexcept { wrapper::destroy(FM_ExprEnv_Delete, self); }
};

class ExprEnvUniquePtr : public std::unique_ptr<ExprEnv> {
 public:
  ExprEnvUniquePtr() : std::unique_ptr<ExprEnv>(wrapper::checked(FM_ExprEnv_Constructor1)) {}
};

}  // namespace fmx
