// The external functions, called as the host calls them: with the stand-in's values, through the functions
// that the plug-in registered.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "FMWrapper/FMXExtern.h"
#include "foundation/text.h"
#include "host/wrapper/stand_in.h"
#include "plugin/shell/plugin_error.h"
#include "tests/plugin/backend_test.h"

namespace zuno::test {

inline fmhost::Value text(const std::string& utf8) {
  return fmhost::Value::ofText(foundation::utf16FromUtf8(utf8));
}
inline fmhost::Value number(std::int64_t n) { return fmhost::Value::ofNumber(fmhost::Decimal(n)); }
// Month/day/year, with a time.
inline fmhost::Value timestamp(const std::string& written) {
  return fmhost::Value::ofDateTime(fmhost::ValueType::timestamp,
                                   fmhost::parseTimestamp(foundation::utf16FromUtf8(written)));
}

// What a function left: the result's text and type.
struct Answer {
  fmhost::ValueType type;
  std::string shown;
  bool operator==(const Answer&) const = default;
};
inline void PrintTo(const Answer& answer, std::ostream* out) {
  *out << static_cast<int>(answer.type) << " \"" << answer.shown << '"';
}
inline Answer textAnswer(std::string shown) { return {fmhost::ValueType::text, std::move(shown)}; }
inline Answer numberAnswer(int n) { return {fmhost::ValueType::number, std::to_string(n)}; }
inline Answer timestampAnswer(std::string shown) { return {fmhost::ValueType::timestamp, std::move(shown)}; }
inline Answer dateAnswer(std::string shown) { return {fmhost::ValueType::date, std::move(shown)}; }
inline const Answer kUntouched{fmhost::ValueType::untouched, ""};
inline const Answer kSuccess = numberAnswer(0);
inline const Answer kFailure = textAnswer("!!ERROR!!");

// The plug-in as it is between its start and its end.
class RunningPlugin {
 protected:
  RunningPlugin() {
    host_.open({{'Z', 'u', 'n', 'o'}}, kVersion);
    record_.extnVersion = kVersion;
    send(kFMXT_Init);
  }
  ~RunningPlugin() {
    send(kFMXT_Shutdown);
    host_.close();
    EXPECT_EQ(host_.describeLiveObjects(), "");
  }

  void send(FMX_ExternCallSwitch message) {
    record_.whichCall = message;
    FMExternCallProc(&record_);
  }

  fmhost::Value run(std::string_view name, const fmhost::Arguments& arguments, std::uint64_t session = 1) {
    const auto row = std::find_if(host_.functions().begin(), host_.functions().end(), [&](const auto& entry) {
      return foundation::utf8FromUtf16(entry.name) == "Zuno_" + std::string(name);
    });
    if (row == host_.functions().end()) throw std::logic_error("no such function");
    const fmhost::Environment environment{.session = session};
    fmhost::Value result;
    EXPECT_EQ(row->function(row->id, opaque(environment), opaque(arguments), opaque(result)), 0);
    return result;
  }
  Answer call(std::string_view name, const fmhost::Arguments& arguments = {}, std::uint64_t session = 1) {
    const fmhost::Value result = run(name, arguments, session);
    return {result.type(), foundation::utf8FromUtf16(result.asText())};
  }

  // The number and the message that Zuno_GetLastError gives.
  std::pair<int, std::string> lastError(std::uint64_t session = 1) {
    return {std::stoi(call("GetLastError", {text("Number")}, session).shown),
            call("GetLastError", {}, session).shown};
  }
  void expectFailure(const Answer& answer, int error) {
    EXPECT_EQ(answer, kFailure);
    EXPECT_EQ(lastError().first, error);
  }
  Answer get(const std::string& type, const std::string& property) {
    return call("GetProperty", {text(type), text(property)});
  }

  static constexpr int kVersion = 65;
  fmhost::StandIn& host_ = *FM_StandIn_Shared();
  FMX_ExternCallStruct record_{};
};

class HostTest : public BackendTest, protected RunningPlugin {};

}  // namespace zuno::test
