// The plug-in as FileMaker runs it, its functions over the bridge: one process-wide plug-in, whose calendars
// grow from case to case; each case stays in a year of its own.
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "foundation/text.h"
#include "host/output.h"
#include "host/session.h"

namespace fmhost {
namespace {

class PluginOnEventKit : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    // A zone without summer time: dates that scripts hand in are read with today's offset.
    ::setenv("TZ", "Asia/Tokyo", 1);
    ::setenv("GNUSTEP_TZ", "Asia/Tokyo", 1);
    plugin_ = std::make_unique<Plugin>(PLUGIN_FILE);
    session_ = std::make_unique<Session>(*plugin_);
  }
  static void TearDownTestSuite() {
    session_.reset();
    plugin_->shutDown();
  }
  void TearDown() override { EXPECT_EQ(Plugin::standIn().describeLiveObjects(), "") << "host values leaked"; }

  static std::string evaluate(const std::string& calculation) {
    try {
      return shown(session_->evaluate(foundation::utf16FromUtf8(calculation)));
    } catch (const CalculationError& fault) {
      return std::string("error: ") + fault.what();
    }
  }
  static std::string lastError() { return evaluate("Zuno_GetLastError( \"Number\" )"); }
  // Succeeds, with the result "0" that functions without a value of their own have.
  static void run(const std::string& call) {
    EXPECT_EQ(evaluate(call), "0") << call << ": " << evaluate("Zuno_GetLastError") << " " << lastError();
  }
  static std::string event(const std::string& property) {
    return evaluate("Zuno_GetProperty( \"event\" ; \"" + property + "\" )");
  }
  static void addEvent(const std::string& title, const std::string& start, const std::string& end) {
    run("Zuno_NewItem( \"event\" )");
    run("Zuno_SetProperty( \"event\" ; \"title\" ; \"" + title + "\" )");
    run("Zuno_SetProperty( \"event\" ; \"calendartitle\" ; \"Calendar\" )");
    run("Zuno_SetProperty( \"event\" ; \"startdate\" ; Timestamp( " + start + " ) )");
    run("Zuno_SetProperty( \"event\" ; \"enddate\" ; Timestamp( " + end + " ) )");
  }
  static std::string fetchYear(int year) {
    const auto january = [](int of) { return "Timestamp( Date( 1 ; 1 ; " + std::to_string(of) + " ) ; 0 )"; };
    return evaluate("Zuno_EventsFetch( " + january(year) + " ; " + january(year + 1) +
                    " ; \"Calendar\" ; \"\" )");
  }

  static std::unique_ptr<Plugin> plugin_;
  static std::unique_ptr<Session> session_;
};
std::unique_ptr<Plugin> PluginOnEventKit::plugin_;
std::unique_ptr<Session> PluginOnEventKit::session_;

TEST_F(PluginOnEventKit, ListsAndOpensCalendars) {
  EXPECT_EQ(evaluate("Zuno_GetItemCountForType( \"calendar\" )"), "1");
  EXPECT_EQ(evaluate("Zuno_GetItemCountForType( \"reminderlist\" )"), "1");
  run("Zuno_CalOpenCalendarWithTitle( \"Calendar\" )");
  EXPECT_EQ(evaluate("Zuno_GetProperty( \"calendar\" ; \"type\" )"), "Local");
  EXPECT_EQ(evaluate("Zuno_CalOpenCalendarWithTitle( \"Nowhere\" )"), "!!ERROR!!");
  EXPECT_EQ(lastError(), "9058");
}

TEST_F(PluginOnEventKit, AnEventIsMadeFetchedChangedAndRemoved) {
  addEvent("Review", "Date( 5 ; 1 ; 2024 ) ; Time( 9 ; 0 ; 0 )",
           "Date( 5 ; 1 ; 2024 ) ; Time( 10 ; 30 ; 0 )");
  run("Zuno_SetProperty( \"event\" ; \"notes\" ; \"one¶two\" )");
  run("Zuno_SaveItem( \"event\" ; \"this\" )");
  EXPECT_EQ(fetchYear(2024), "0");
  EXPECT_EQ(evaluate("Zuno_GetItemCountForType( \"event\" )"), "1");
  run("Zuno_OpenItemAt( \"event\" ; 1 )");
  EXPECT_EQ(event("title"), "Review");
  EXPECT_EQ(evaluate("Zuno_GetProperty( \"event\" ; \"notes\" ) = \"one¶two\""), "1");
  EXPECT_EQ(evaluate("Zuno_GetProperty( \"event\" ; \"startdate\" ) ="
                     " Timestamp( Date( 5 ; 1 ; 2024 ) ; Time( 9 ; 0 ; 0 ) )"),
            "1");
  EXPECT_EQ(evaluate("Zuno_OpenItemAt( \"event\" ; 2 )"), "!!ERROR!!");
  EXPECT_EQ(lastError(), "9002");

  run("Zuno_OpenItemAt( \"event\" ; 1 )");
  run("Zuno_SetProperty( \"event\" ; \"title\" ; \"Retrospective\" )");
  run("Zuno_OpenItemAt( \"event\" ; 1 )");
  EXPECT_EQ(event("title"), "Review") << "nothing was saved";
  run("Zuno_SetProperty( \"event\" ; \"title\" ; \"Retrospective\" )");
  run("Zuno_SaveItem( \"event\" ; \"this\" )");
  run("Zuno_SaveItem( \"event\" ; \"this\" )");
  const std::string uid = event("uid");
  run("Zuno_OpenItemWithUID( \"event\" ; \"" + uid + "\" )");
  EXPECT_EQ(event("title"), "Retrospective");
  run("Zuno_RemoveItem( \"event\" ; \"" + uid + "\" ; \"\" ; \"this\" )");
  EXPECT_EQ(evaluate("Zuno_OpenItemWithUID( \"event\" ; \"" + uid + "\" )"), "!!ERROR!!");
  EXPECT_EQ(lastError(), "9001");
}

TEST_F(PluginOnEventKit, AllTimeFindsWhatOnePlatformQueryCannot) {
  addEvent("Long ago", "Date( 6 ; 1 ; 1950 ) ; Time( 9 ; 0 ; 0 )",
           "Date( 6 ; 1 ; 1950 ) ; Time( 10 ; 0 ; 0 )");
  run("Zuno_SaveItem( \"event\" )");
  addEvent("Far away", "Date( 6 ; 1 ; 2090 ) ; Time( 9 ; 0 ; 0 )",
           "Date( 6 ; 1 ; 2090 ) ; Time( 10 ; 0 ; 0 )");
  run("Zuno_SaveItem( \"event\" )");
  run("Zuno_EventsFetch( \"\" ; \"\" ; \"\" ; \"\" )");
  EXPECT_EQ(evaluate("Zuno_GetItemCountForType( \"event\" )"), "2");
  run("Zuno_OpenItemAt( \"event\" ; 1 )");
  EXPECT_EQ(event("title"), "Long ago");
  run("Zuno_OpenItemAt( \"event\" ; 2 )");
  EXPECT_EQ(event("title"), "Far away");
}

TEST_F(PluginOnEventKit, ASeriesAndItsAlarmsAreEdited) {
  addEvent("Standup", "Date( 3 ; 4 ; 2030 ) ; Time( 9 ; 0 ; 0 )",
           "Date( 3 ; 4 ; 2030 ) ; Time( 9 ; 15 ; 0 )");
  run("Zuno_AddRecurrence( \"daily\" ; 1 ; \"\" ; \"\" ; \"\" ; \"\" ; 5 )");
  run("Zuno_AddAlarm( \"event\" ; \"\" ; \"sound\" ; \"\" ; -600 ; \"Basso\" )");
  run("Zuno_SaveItem( \"event\" ; \"future\" )");
  EXPECT_EQ(fetchYear(2030), "0");
  EXPECT_EQ(evaluate("Zuno_GetItemCountForType( \"event\" )"), "5");
  run("Zuno_OpenItemAt( \"event\" ; 3 )");
  EXPECT_EQ(evaluate("Zuno_GetProperty( \"recurrencerule\" ; \"recurrencetype\" )"), "daily");
  EXPECT_EQ(evaluate("Zuno_GetItemCountForType( \"alarm\" )"), "1");
  run("Zuno_OpenItemAt( \"alarm\" ; 1 )");
  EXPECT_EQ(evaluate("Zuno_GetProperty( \"alarm\" ; \"sound\" )"), "Basso");
  run("Zuno_SetProperty( \"event\" ; \"title\" ; \"Moved\" )");
  run("Zuno_SaveItem( \"event\" ; \"this\" )");
  run("Zuno_OpenItemAt( \"event\" ; 3 )");
  EXPECT_EQ(event("title"), "Moved");
  run("Zuno_OpenItemAt( \"event\" ; 4 )");
  EXPECT_EQ(event("title"), "Standup");
}

TEST_F(PluginOnEventKit, RemindersAreFetchedAndCompleted) {
  for (const std::string title : {"Bread", "Milk"}) {
    run("Zuno_NewItem( \"reminder\" )");
    run("Zuno_SetProperty( \"reminder\" ; \"title\" ; \"" + title + "\" )");
    run("Zuno_SetProperty( \"reminder\" ; \"calendartitle\" ; \"Reminders\" )");
    run("Zuno_SaveItem( \"reminder\" )");
  }
  run("Zuno_RemindersFetch( \"Reminders\" ; \"incomplete\" ; \"\" )");
  EXPECT_EQ(evaluate("Zuno_GetItemCountForType( \"reminder\" )"), "2");
  run("Zuno_OpenItemAt( \"reminder\" ; 2 )");
  EXPECT_EQ(evaluate("Zuno_GetProperty( \"reminder\" ; \"title\" )"), "Milk");
  run("Zuno_SetProperty( \"reminder\" ; \"iscompleted\" ; \"True\" )");
  run("Zuno_SaveItem( \"reminder\" )");
  EXPECT_EQ(evaluate("Zuno_GetItemCountForType( \"reminder\" )"), "1");
}

}  // namespace
}  // namespace fmhost
