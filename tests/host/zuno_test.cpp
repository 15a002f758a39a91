// The plug-in file itself in the host, on a store of its own: what only both together can get wrong.
#include <array>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "host/output.h"
#include "host/session.h"

namespace fmhost {
namespace {

class TemporaryStore {
 public:
  TemporaryStore() {
    std::string folder = (std::filesystem::temp_directory_path() / "zuno-host-XXXXXX").string();
    folder_ = mkdtemp(folder.data());
    setenv("ZUNO_STORE", (folder_ / "calendars.sqlite").c_str(), 1);
  }
  ~TemporaryStore() {
    unsetenv("ZUNO_STORE");
    std::filesystem::remove_all(folder_);
  }
  TemporaryStore(const TemporaryStore&) = delete;
  TemporaryStore& operator=(const TemporaryStore&) = delete;

 private:
  std::filesystem::path folder_;
};

class Zuno : public testing::Test {
 protected:
  void TearDown() override {
    plugin_.shutDown();
    EXPECT_EQ(Plugin::standIn().describeLiveObjects(), "");
  }

  static std::string evaluate(Session& session, std::u16string_view calculation) {
    return shown(session.evaluate(calculation));
  }

  TemporaryStore store_;
  Plugin plugin_{ZUNO_FILE};
  Session session_{plugin_};
};

TEST_F(Zuno, NoHostFailureInAnyFunctionLeaksOrBreaksTheNextCall) {
  constexpr std::u16string_view kCalls[] = {
      u"Zuno_Version",
      u"Zuno_Version ( \"Short\" )",
      u"Zuno_GetLastError",
      u"Zuno_GetLastError ( \"Number\" )",
      u"Zuno_EventsFetch ( Get ( CurrentTimestamp ) ; Get ( CurrentTimestamp ) + 1 ; \"Calendar\" ; \"\" )",
      u"Zuno_RemindersFetch ( \"\" ; \"incomplete\" ; Get ( CurrentTimestamp ) )",
      u"Zuno_GetItemCountForType ( \"reminder\" )",
      u"Zuno_CalOpenCalendarWithTitle ( \"Calendar\" )",
      u"Zuno_NewItem ( \"event\" )",
      u"Zuno_SetProperty ( \"event\" ; \"title\" ; \"A title of more than a few letters\" )",
      u"Zuno_SetProperty ( \"event\" ; \"startdate\" ; Timestamp ( Date ( 2 ; 4 ; 2026 ) ; 0 ) )",
      u"Zuno_GetProperty ( \"event\" ; \"title\" )",
      u"Zuno_GetProperty ( \"event\" ; \"startdate\" )",
      u"Zuno_AddRecurrence ( \"weekly\" ; 1 ; \"2¶3\" ; \"\" ; \"\" ; \"\" ; 4 )",
      u"Zuno_RemoveRecurrence",
      u"Zuno_AddAlarm ( \"event\" ; \"\" ; \"display\" ; \"\" ; -900 ; \"\" )",
      u"Zuno_OpenItemAt ( \"alarm\" ; 1 )",
      u"Zuno_RemoveAlarm ( \"event\" ; 1 )",
      u"Zuno_RemoveAllAlarmsFrom ( \"event\" )",
      u"Zuno_SaveItem ( \"event\" ; \"this\" )",
      u"Zuno_OpenItemWithUID ( \"event\" ; \"nobody\" ; \"\" )",
      u"Zuno_RemoveItem ( \"event\" ; \"nobody\" ; \"\" ; \"this\" )"};
  // One object of each kind that results are handed over in, once it was needed.
  const std::set<std::string> kept = {"", "1 Text", "1 Text, 1 FixPt", "1 Text, 1 FixPt, 1 DateTime"};
  StandIn& standIn = Plugin::standIn();
  for (const std::u16string_view call : kCalls) {
    const Calculation calculation(call, session_);
    for (const std::int32_t code : {fmx::_fmxcpt::kBadAlloc, fmx::_fmxcpt::kUnknown}) {
      int n = 1;
      for (bool reached = true; reached; ++n) {
        standIn.failCall(n, code);
        try {
          session_.evaluate(calculation);
        } catch (const CalculationError&) {
          // The failure left the function, as it has to outside the reading of a date.
        }
        reached = !standIn.failureIsPending();
        const std::string alive = standIn.describeLiveObjects();
        ASSERT_TRUE(kept.contains(alive))
            << alive << " after " << testing::PrintToString(std::u16string(call)) << " call " << n;
      }
      standIn.cancelFailure();
      EXPECT_GT(n, 2) << "no host call was made";
      ASSERT_EQ(evaluate(session_, u"Zuno_Version"), "3.0.1.0");
    }
  }
}

TEST_F(Zuno, EachSessionHasItsOwnCursorAndErrors) {
  constexpr int kSessions = 4;
  std::array<std::string, kSessions> faults;
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < kSessions; ++i) {
      threads.emplace_back([this, i, &fault = faults[i]] {
        Session session(plugin_);
        const Text title = widened("Event of session " + std::to_string(i));
        session.setVariable(u"$title", Value::ofText(title));
        for (int turn = 0; turn < 20 && fault.empty(); ++turn) {
          const std::string answer = evaluate(session,
                                              u"Let ( [ a = Zuno_NewItem ( \"event\" ) ; b = "
                                              u"Zuno_SetProperty ( \"event\" ; \"title\" ; $title ) ] "
                                              u"; a & b & Zuno_GetProperty ( \"event\" ; \"title\" ) )");
          if (answer != "00Event of session " + std::to_string(i)) fault = answer;
          const std::string error = evaluate(
              session,
              i % 2 == 0 ? u"Let ( a = Zuno_OpenItemAt ( \"event\" ; 1 ) ; Zuno_GetLastError ( \"Number\" ) )"
                         : u"Zuno_GetLastError ( \"Number\" )");
          if ((error == "0") != (i % 2 == 1)) fault = "error " + error;
        }
      });
    }
  }
  for (const std::string& fault : faults) EXPECT_EQ(fault, "");
}

TEST_F(Zuno, StepsAndFunctionsGiveTheSameAnswers) {
  for (const Registration& step : plugin_.steps()) {
    const Registration* const function = plugin_.function(step.name);
    ASSERT_NE(function, nullptr);
    EXPECT_EQ(function->id, step.id);
    EXPECT_EQ(function->function, step.function);
  }
  EXPECT_EQ(plugin_.steps().size(), 18U);
}

}  // namespace
}  // namespace fmhost
