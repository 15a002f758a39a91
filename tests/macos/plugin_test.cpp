// The plug-in as FileMaker runs it, its functions over the bridge: one for the process.
#include <cstdlib>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

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
    EXPECT_EQ(Plugin::standIn().describeLiveObjects(), "") << "host values leaked";
  }

  static std::string evaluate(const std::string& calculation) {
    try {
      return shown(session_->evaluate(foundation::utf16FromUtf8(calculation)));
    } catch (const CalculationError& fault) {
      return std::string("error: ") + fault.what();
    }
  }
  // Calculations in their order, and what each of them gives.
  static void expectAll(std::initializer_list<std::pair<const char*, const char*>> steps) {
    for (const auto& [calculation, expected] : steps)
      EXPECT_EQ(evaluate(calculation), expected) << calculation << ": " << evaluate("Zuno_GetLastError");
  }

  static std::unique_ptr<Plugin> plugin_;
  static std::unique_ptr<Session> session_;
};
std::unique_ptr<Plugin> PluginOnEventKit::plugin_;
std::unique_ptr<Session> PluginOnEventKit::session_;

TEST_F(PluginOnEventKit, AnEventIsMadeFetchedChangedAndRemoved) {
  expectAll({
      {"Zuno_NewItem( \"event\" )", "0"},
      {"Zuno_SetProperty( \"event\" ; \"title\" ; \"Review\" )", "0"},
      {"Zuno_SetProperty( \"event\" ; \"calendartitle\" ; \"Calendar\" )", "0"},
      {"Zuno_SetProperty( \"event\" ; \"startdate\" ; Timestamp( Date( 5 ; 1 ; 2024 ) ; 32400 ) )", "0"},
      {"Zuno_SetProperty( \"event\" ; \"enddate\" ; Timestamp( Date( 5 ; 1 ; 2024 ) ; 37800 ) )", "0"},
      {"Zuno_SetProperty( \"event\" ; \"notes\" ; \"one¶two\" )", "0"},
      {"Zuno_SaveItem( \"event\" ; \"this\" )", "0"},
      {"Zuno_EventsFetch( \"\" ; \"\" ; \"Calendar\" ; \"\" )", "0"},
      {"Zuno_GetItemCountForType( \"event\" )", "1"},
      {"Zuno_OpenItemAt( \"event\" ; 1 )", "0"},
      {"Zuno_GetProperty( \"event\" ; \"title\" )", "Review"},
      {"Zuno_GetProperty( \"event\" ; \"notes\" ) = \"one¶two\"", "1"},
      {"Zuno_GetProperty( \"event\" ; \"startdate\" )", "5/1/2024 9:00:00 AM"},
      {"Zuno_OpenItemAt( \"event\" ; 2 )", "!!ERROR!!"},
      {"Zuno_GetLastError( \"Number\" )", "9002"},
      {"Zuno_OpenItemAt( \"event\" ; 1 )", "0"},
      {"Zuno_SetProperty( \"event\" ; \"title\" ; \"Retrospective\" )", "0"},
      {"Zuno_SaveItem( \"event\" ; \"this\" )", "0"},
      {"Zuno_SaveItem( \"event\" ; \"this\" )", "0"},
      {"Let( $uid = Zuno_GetProperty( \"event\" ; \"uid\" ) ; Zuno_OpenItemWithUID( \"event\" ; $uid ) )",
       "0"},
      {"Zuno_GetProperty( \"event\" ; \"title\" )", "Retrospective"},
      {"Zuno_RemoveItem( \"event\" ; $uid ; \"\" ; \"this\" )", "0"},
      {"Zuno_OpenItemWithUID( \"event\" ; $uid )", "!!ERROR!!"},
      {"Zuno_GetLastError( \"Number\" )", "9001"},
  });
}

TEST_F(PluginOnEventKit, RemindersAreFetchedAndCompleted) {
  expectAll({
      {"Zuno_NewItem( \"reminder\" )", "0"},
      {"Zuno_SetProperty( \"reminder\" ; \"title\" ; \"Milk\" )", "0"},
      {"Zuno_SetProperty( \"reminder\" ; \"calendartitle\" ; \"Reminders\" )", "0"},
      {"Zuno_SaveItem( \"reminder\" )", "0"},
      {"Zuno_RemindersFetch( \"Reminders\" ; \"incomplete\" ; \"\" )", "0"},
      {"Zuno_GetItemCountForType( \"reminder\" )", "1"},
      {"Zuno_OpenItemAt( \"reminder\" ; 1 )", "0"},
      {"Zuno_GetProperty( \"reminder\" ; \"title\" )", "Milk"},
      {"Zuno_SetProperty( \"reminder\" ; \"iscompleted\" ; \"True\" )", "0"},
      {"Zuno_SaveItem( \"reminder\" )", "0"},
      {"Zuno_GetItemCountForType( \"reminder\" )", "0"},
  });
}

}  // namespace
}  // namespace fmhost
