#include "tests/plugin/recording_host.h"

#include "foundation/text.h"

using fmx::_fmxcpt;
using fmx::errcode;

namespace zuno::test {

RecordingHost& recordingHost() {
  static RecordingHost host;
  return host;
}

namespace {

std::string shown(const fmx::Text& text) {
  std::vector<fmx::uint16> units(text.GetSize());
  text.GetUnicode(units.data(), 0, static_cast<fmx::uint32>(units.size()));
  return foundation::utf8FromUtf16(std::u16string(units.begin(), units.end()));
}

errcode record(const fmx::QuadChar& plugin, HostCall call, _fmxcpt& failure) {
  RecordingHost& host = recordingHost();
  host.pluginID.clear();
  for (int i = 0; i < 4; ++i) host.pluginID += static_cast<char>(plugin[i]);
  host.calls.push_back(std::move(call));
  failure.m_code = host.failure;
  return host.answer;
}

}  // namespace
}  // namespace zuno::test

using zuno::test::record;
using zuno::test::shown;

errcode FM_ExprEnv_RegisterExternalFunction(const fmx::QuadChar& plugin, short id, const fmx::Text& name,
                                            const fmx::Text& prototype, short minArgs, short maxArgs,
                                            fmx::uint32 flags, fmx::ExtPluginType function,
                                            _fmxcpt& failure) noexcept {
  return record(plugin,
                {"function", id, shown(name), shown(prototype), "", "", minArgs, maxArgs, flags, function},
                failure);
}

errcode FM_ExprEnv_RegisterExternalFunctionEx(const fmx::QuadChar& plugin, short id, const fmx::Text& name,
                                              const fmx::Text& prototype, const fmx::Text& description,
                                              short minArgs, short maxArgs, fmx::uint32 flags,
                                              fmx::ExtPluginType function, _fmxcpt& failure) noexcept {
  return record(plugin,
                {"function ex", id, shown(name), shown(prototype), shown(description), "", minArgs, maxArgs,
                 flags, function},
                failure);
}

errcode FM_ExprEnv_RegisterScriptStep(const fmx::QuadChar& plugin, short id, const fmx::Text& name,
                                      const fmx::Text& definition, const fmx::Text& description,
                                      fmx::uint32 flags, fmx::ExtPluginType function, _fmxcpt& failure) {
  return record(plugin,
                {"step", id, shown(name), "", shown(description), shown(definition), 0, 0, flags, function},
                failure);
}

errcode FM_ExprEnv_UnRegisterExternalFunction(const fmx::QuadChar& plugin, short id,
                                              _fmxcpt& failure) noexcept {
  return record(plugin, {.operation = "no function", .id = id}, failure);
}

errcode FM_ExprEnv_UnRegisterScriptStep(const fmx::QuadChar& plugin, short id, _fmxcpt& failure) {
  return record(plugin, {.operation = "no step", .id = id}, failure);
}
