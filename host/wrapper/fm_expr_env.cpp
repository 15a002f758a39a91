#include "host/wrapper/host_call.h"

using namespace fmhost;
using Failure = fmx::_fmxcpt;
using fmx::errcode;

namespace fmhost {

constinit StandIn sharedStandIn;

}  // namespace fmhost

fmhost::StandIn* FM_StandIn_Shared() noexcept { return &sharedStandIn; }

fmx::ExprEnv* FM_ExprEnv_Constructor1(Failure& failure) noexcept { return make<Environment>(failure); }

fmx::ptrtype FM_ExprEnv_SessionID(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return fmx::ptrtype{as<Environment>(self).session}; });
}

fmx::ptrtype FM_ExprEnv_FileID(const void* self, Failure& failure) noexcept {
  return hostCall(failure, [&] { return fmx::ptrtype{as<Environment>(self).file}; });
}

void FM_ExprEnv_Delete(void* self, Failure& failure) noexcept { destroy<Environment>(self, failure); }

errcode FM_ExprEnv_RegisterExternalFunction(const fmx::QuadChar& pluginId, short functionId,
                                            const fmx::Text& name, const fmx::Text& prototype, short minArgs,
                                            short maxArgs, fmx::uint32 flags, fmx::ExtPluginType function,
                                            Failure& failure) noexcept {
  return hostCall(failure, [&] {
    return sharedStandIn.addFunction(inside(pluginId),
                                     {.id = functionId,
                                      .name = inside(name),
                                      .prototype = inside(prototype),
                                      .fewestArguments = minArgs,
                                      .mostArguments = maxArgs,
                                      .flags = flags,
                                      .function = function},
                                     kMinExtnVersion);
  });
}

errcode FM_ExprEnv_RegisterExternalFunctionEx(const fmx::QuadChar& pluginId, short functionId,
                                              const fmx::Text& name, const fmx::Text& prototype,
                                              const fmx::Text& description, short minArgs, short maxArgs,
                                              fmx::uint32 flags, fmx::ExtPluginType function,
                                              Failure& failure) noexcept {
  return hostCall(failure, [&] {
    return sharedStandIn.addFunction(inside(pluginId),
                                     {.id = functionId,
                                      .name = inside(name),
                                      .prototype = inside(prototype),
                                      .description = inside(description),
                                      .fewestArguments = minArgs,
                                      .mostArguments = maxArgs,
                                      .flags = flags,
                                      .function = function},
                                     k150ExtnVersion);
  });
}

errcode FM_ExprEnv_UnRegisterExternalFunction(const fmx::QuadChar& pluginId, short functionId,
                                              Failure& failure) noexcept {
  return hostCall(failure, [&] { return sharedStandIn.removeFunction(inside(pluginId), functionId); });
}

errcode FM_ExprEnv_RegisterScriptStep(const fmx::QuadChar& pluginId, short stepId, const fmx::Text& name,
                                      const fmx::Text& definition, const fmx::Text& description,
                                      fmx::uint32 flags, fmx::ExtPluginType function, Failure& failure) {
  return hostCall(failure, [&] {
    return sharedStandIn.addStep(inside(pluginId), {.id = stepId,
                                                    .name = inside(name),
                                                    .definition = inside(definition),
                                                    .description = inside(description),
                                                    .flags = flags,
                                                    .function = function});
  });
}

errcode FM_ExprEnv_UnRegisterScriptStep(const fmx::QuadChar& pluginId, short stepId, Failure& failure) {
  return hostCall(failure, [&] { return sharedStandIn.removeStep(inside(pluginId), stepId); });
}
