#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FMWrapper/FMXExtern.h"
#include "plugin/backend/ical_ek_functions.h"
#include "plugin/shell/entry_point.h"
#include "plugin/shell/external_functions.h"
#include "plugin/shell/globals.h"
#include "plugin/shell/plugin_error.h"
#include "plugin/shell/registration.h"
#include "plugin/shell/strings.h"
#include "tests/plugin/recording_host.h"

namespace zuno::test {
namespace {

constexpr FMX_PtrType kUntouched = 4711;
constexpr auto kRefused = static_cast<FMX_PtrType>(-1);

class Shell : public testing::Test {
 protected:
  Shell() {
    host_ = {};
    record_.result = kUntouched;
  }
  void send(int version, FMX_ExternCallSwitch message) {
    record_.extnVersion = static_cast<FMX_Int16>(version);
    record_.whichCall = message;
    FMExternCallProc(&record_);
  }
  std::vector<std::string> operations(short id) const {
    std::vector<std::string> operations;
    for (const HostCall& call : host_.calls)
      if (call.id == id) operations.push_back(call.operation);
    return operations;
  }

  // The record is packed: its members cannot be referred to.
  FMX_PtrType result() const { return record_.result; }

  RecordingHost& host_ = recordingHost();
  FMX_ExternCallStruct record_{};
};

TEST_F(Shell, TakesHostsOfVersions50To255) {
  for (const int version : {50, 65, 255}) {
    record_.result = kUntouched;
    host_.calls.clear();
    send(version, kFMXT_Init);
    EXPECT_EQ(result(), FMX_PtrType{65}) << version;
    EXPECT_FALSE(host_.calls.empty());
  }
  error.reset();
  for (const int version : {0, 4, 49, 256, 257, -1}) {
    record_.result = kUntouched;
    host_.calls.clear();
    send(version, kFMXT_Init);
    EXPECT_EQ(result(), kRefused) << version;
    EXPECT_TRUE(host_.calls.empty());
    EXPECT_EQ(error, nullptr);
  }
}

TEST_F(Shell, InitialisationSetsTheGlobalsAndMakesAFreshError) {
  g_bUseEK = false;
  send(65, kFMXT_Init);
  EXPECT_TRUE(g_bUseEK);
  EXPECT_EQ(g_sharedEKFunctions, iCalEKFunctions::sharedICalFunctions());
  EXPECT_EQ(g_sharedFunctions, nullptr);
  error->setError(9034, 0, std::nullopt);
  send(65, kFMXT_Init);
  EXPECT_EQ(error->getError(), "Success");
  EXPECT_FALSE(UseEKImplementation());  // no such system here
}

TEST_F(Shell, LeavesOtherMessagesAlone) {
  for (const int message : {1, 3, 5, 8, 9, 10, 255}) {
    send(65, static_cast<FMX_ExternCallSwitch>(message));
    EXPECT_EQ(result(), kUntouched);
    EXPECT_EQ(gFMX_ExternCallPtr, &record_);
  }
  EXPECT_TRUE(host_.calls.empty());
}

TEST_F(Shell, RegistersByTheHostsVersion) {
  const std::pair<int, std::vector<std::string>> versions[] = {
      {55, {"function"}}, {56, {"function ex"}}, {57, {"function ex", "step"}}};
  for (const auto& [version, expected] : versions) {
    host_.calls.clear();
    send(version, kFMXT_Init);
    for (short id = 151; id <= 168; ++id) EXPECT_EQ(operations(id), expected) << version;
    EXPECT_EQ(host_.calls.size(), 18 * expected.size());
  }
}

TEST_F(Shell, RegistersTheTableInOrder) {
  const struct {
    short id;
    int min, max;
    const char* name;
    ExternalFunction* function;
  } table[] = {{151, 0, 1, "Zuno_Version", Zuno_Version},
               {152, 1, 1, "Zuno_GetItemCountForType", Zuno_GetItemCountForType},
               {153, 2, 2, "Zuno_OpenItemAt", Zuno_OpenItemAt},
               {154, 2, 3, "Zuno_OpenItemWithUID", Zuno_OpenItemWithUID},
               {155, 2, 3, "Zuno_GetProperty", Zuno_GetProperty},
               {156, 4, 4, "Zuno_EventsFetch", Zuno_EventsFetch},
               {157, 3, 3, "Zuno_RemindersFetch", Zuno_RemindersFetch},
               {158, 1, 1, "Zuno_CalOpenCalendarWithTitle", Zuno_CalOpenCalendarWithTitle},
               {159, 3, 3, "Zuno_SetProperty", Zuno_SetProperty},
               {160, 0, 1, "Zuno_GetLastError", Zuno_GetLastError},
               {161, 1, 2, "Zuno_SaveItem", Zuno_SaveItem},
               {162, 7, 7, "Zuno_AddRecurrence", Zuno_AddRecurrence},
               {163, 6, 6, "Zuno_AddAlarm", Zuno_AddAlarm},
               {164, 2, 2, "Zuno_RemoveAlarm", Zuno_RemoveAlarm},
               {165, 0, 0, "Zuno_RemoveRecurrence", Zuno_RemoveRecurrence},
               {166, 1, 1, "Zuno_NewItem", Zuno_NewItem},
               {167, 2, 4, "Zuno_RemoveItem", Zuno_RemoveItem},
               {168, 1, 1, "Zuno_RemoveAllAlarmsFrom", Zuno_RemoveAllAlarmsFrom}};
  host_.answer = 5;  // a refusal stops nothing
  send(65, kFMXT_Init);
  EXPECT_EQ(result(), FMX_PtrType{65});
  EXPECT_EQ(host_.pluginID, "Zuno");
  ASSERT_EQ(host_.calls.size(), 36U);
  for (std::size_t row = 0; row < std::size(table); ++row) {
    const HostCall& function = host_.calls[2 * row];
    const HostCall& step = host_.calls[2 * row + 1];
    SCOPED_TRACE(table[row].name);
    EXPECT_EQ(function.id, table[row].id);
    EXPECT_EQ(function.minArgs, table[row].min);
    EXPECT_EQ(function.maxArgs, table[row].max);
    for (const HostCall& call : {function, step}) {
      EXPECT_EQ(call.name, table[row].name);
      EXPECT_EQ(call.flags, 0xFF01U);
      EXPECT_EQ(call.function, table[row].function);
      EXPECT_NE(call.description.find('|'), std::string::npos);
    }
    const std::string last = "ID=\"" + std::to_string(function.maxArgs - 1) + "\"";
    EXPECT_EQ(step.definition.find(last) != std::string::npos, function.maxArgs > 0) << "a parameter each";
    EXPECT_EQ(step.id, function.id);
    EXPECT_EQ(step.description, function.description);
    EXPECT_TRUE(function.prototype.starts_with(function.name + "("));
    EXPECT_TRUE(function.prototype.ends_with(")"));
  }
}

TEST_F(Shell, RegistrationGivesTheLastAnswerAndPassesFailuresOn) {
  record_.extnVersion = 65;
  host_.answer = 7;
  gFMX_ExternCallPtr = &record_;
  EXPECT_EQ(RegisterFunction(151, 0, 1, Zuno_Version), 7);
  host_.failure = 1;
  EXPECT_THROW(send(65, kFMXT_Init), std::bad_alloc);
  host_.failure = 2;
  EXPECT_THROW(send(65, kFMXT_Shutdown), std::exception);
  EXPECT_EQ(result(), kUntouched);
}

TEST_F(Shell, ShutdownTakesBackMoreThanWasRegistered) {
  for (const int version : {56, 57}) {
    host_.calls.clear();
    send(version, kFMXT_Shutdown);
    ASSERT_EQ(host_.calls.size(), version == 56 ? 22U : 44U);
    for (std::size_t i = 0; i < host_.calls.size(); ++i) {
      EXPECT_EQ(host_.calls[i].operation, i < 22 ? "no function" : "no step");
      EXPECT_EQ(host_.calls[i].id, 148 + static_cast<int>(i % 22));
    }
  }
  EXPECT_EQ(host_.pluginID, "Zuno");
  EXPECT_EQ(result(), kUntouched);
}

class Strings : public Shell {
 protected:
  Strings() { gFMX_ExternCallPtr = &record_; }
  // What the host finds in its buffer of that capacity.
  std::string asked(FMX_UChar id, std::size_t capacity = 256) {
    std::vector<FMX_Unichar> buffer(capacity, 'x');
    buffer.back() = 0;
    record_.whichCall = kFMXT_GetString;
    record_.parm1 = id;
    record_.parm3 = capacity;
    record_.result = reinterpret_cast<FMX_PtrType>(buffer.data());
    FMExternCallProc(&record_);
    std::string text;
    for (const FMX_Unichar unit : buffer) {
      if (unit == 0) break;
      text += static_cast<char>(unit);
    }
    return text;
  }
};

TEST_F(Strings, TheHostIsAnswered) {
  EXPECT_EQ(asked(131), "Zuno1nnYnnn");
  EXPECT_EQ(asked(1), "Zuno1nnYnnn");
  EXPECT_EQ(asked(128), "Zuno");
  EXPECT_TRUE(asked(129).starts_with("Zuno "));
  EXPECT_TRUE(asked(132).ends_with("="));
  EXPECT_EQ(asked(166), "Zuno_NewItem( type )");
}

// Without such a string, or where it would fill the buffer, the buffer is left alone.
TEST_F(Strings, FitWithOneUnitToSpare) {
  EXPECT_EQ(asked(200, 4), "xxx");
  EXPECT_EQ(asked(128, 6), "Zuno");
  EXPECT_EQ(asked(128, 5), "xxxx");
  EXPECT_EQ(asked(131, 13), "Zuno1nnYnnn");
  EXPECT_EQ(asked(131, 12), "xxxxxxxxxxx");
  std::array<FMX_Unichar, 6> buffer{};
  EXPECT_EQ(Sub_OSXLoadString(128, buffer.data(), 6), 4);
  EXPECT_EQ(Sub_OSXLoadString(128, buffer.data(), 5), 0);
  EXPECT_EQ(Sub_OSXLoadString(128, buffer.data(), 1), 0);
  EXPECT_EQ(Sub_OSXLoadString(128, buffer.data(), -1), 0);
  EXPECT_EQ(Sub_OSXLoadString(128, nullptr, 6), 0);
  EXPECT_EQ(Sub_OSXLoadString(200, buffer.data(), 6), 0);
  EXPECT_EQ(buffer[0], 'Z');
}

TEST_F(Strings, AsTextsOfTheHost) {
  const fmx::TextUniquePtr text;
  const auto loaded = [&](FMX_Strings id, bool strip) {
    text->Assign("before");
    Do_GetString(id, *text, strip);
    std::string shown(text->GetSize(), ' ');
    std::vector<fmx::uint16> units(shown.size());
    text->GetUnicode(units.data(), 0, static_cast<fmx::uint32>(units.size()));
    return std::string(units.begin(), units.end());
  };
  EXPECT_EQ(loaded(166, true), "Zuno_NewItem");
  EXPECT_EQ(loaded(166, false), "Zuno_NewItem( type )");
  EXPECT_EQ(loaded(131, true), "Zuno1nnYnnn");
  EXPECT_EQ(loaded(200, false), "");
}

// The host reads these; a part that is no parameter's label is the same in each of them.
TEST(StepDefinitions, AreExact) {
  const std::string head = R"(<pluginstep><parameter type="target" label="Results" showinline="true"/>)";
  const std::pair<short, std::string> definitions[] = {
      {151,
       R"(<parameter type="list" showinline="true" label="Version Type" default="0" ID="0"><value ID="0">)"
       R"(Please Select</value><value ID="1">Short</value><value ID="2">Long</value></parameter>)"},
      {161, R"-(<parameter type="calc" showinline="true" label="Type" datatype="text" ID="0"/><parameter )-"
            R"-(type="calc" showinline="false" label="Time Span (Optional)" datatype="text" ID="1"/>)-"},
      {165, ""}};
  for (const auto& [id, own] : definitions) EXPECT_EQ(stepDefinition(id), head + own + "</pluginstep>") << id;
  for (const short id : std::array<short, 4>{0, 148, 150, 169}) EXPECT_EQ(stepDefinition(id), "");
}

}  // namespace
}  // namespace zuno::test
