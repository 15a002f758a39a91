// The plug-in file itself in the host, on a store of its own: what only both together can get wrong.
#include <gtest/gtest.h>
#include <set>
#include <string>

#include "host/output.h"
#include "host/session.h"
#include "tests/foundation/scoped_variable.h"
#include "tests/storage/temporary_folder.h"

namespace fmhost {
namespace {

class Zuno : public testing::Test {
 protected:
  void TearDown() override {
    plugin_.shutDown();
    EXPECT_EQ(Plugin::standIn().describeLiveObjects(), "");
  }

  zuno_test::TemporaryFolder folder_;
  ScopedVariable store_{"ZUNO_STORE", folder_.file("calendars.sqlite")};
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
      ASSERT_EQ(shown(session_.evaluate(u"Zuno_Version")), "3.0.1.0");
    }
  }
}

}  // namespace
}  // namespace fmhost
