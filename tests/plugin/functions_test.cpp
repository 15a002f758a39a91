#include "tests/plugin/host_test.h"

namespace zuno::test {
namespace {

class Functions : public HostTest {};

TEST_F(Functions, ANumberOutsideTheCatalogueIsUndefined) {
  store_.raiseAt(1);
  expectFailure(call("GetItemCountForType", {text("calendar")}), 9999);
  EXPECT_EQ(lastError().second, "Undefined Error.");
  EXPECT_EQ(backend_.getLastErrorString(), "the store broke");
}

// Lower-casing goes by Unicode: the sign for kelvin is a k as well, a dotted capital I is not an i.
TEST_F(Functions, KeywordsBeyondAscii) {
  fetchReminders();
  EXPECT_EQ(call("GetItemCountForType", {text("TAS\u212A")}), numberAnswer(2));
  expectFailure(call("GetItemCountForType", {text("REM\u0130NDER")}), 9042);
  EXPECT_EQ(call("GetItemCountForType", {text("REMINDERLIST")}), numberAnswer(1));
  expectFailure(call("GetItemCountForType", {text("tas\uFF4B")}), 9042);
  expectFailure(call("GetItemCountForType", {text(std::string("task\0", 5))}), 9042);
  for (const std::size_t length : {32, 33, 1'000'000})
    expectFailure(call("GetItemCountForType", {text("task" + std::string(length - 4, 'k'))}), 9042);
}

TEST_F(Functions, AWeekdayThatIsNoneIsLeftOutAndLogged) {
  const auto event = openEvent();
  testing::internal::CaptureStderr();
  EXPECT_EQ(call("AddRecurrence", {text("weekly"), number(1), text("Monday\r3\r8\r 5 \r2,4"), text("x"),
                                   text(""), text(""), number(0)}),
            kSuccess);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Empty object\nEmpty object\n");
  EXPECT_EQ(event->rules.front().daysOfTheWeek, (std::vector<ek::DayOfWeek>{{3, 0}, {5, 0}, {2, 0}}));
  EXPECT_TRUE(event->rules.front().daysOfTheMonth.empty());
}

TEST_F(Functions, TextsPassUnharmed) {
  const auto event = openEvent();
  const std::string longText(5000, 'x');
  const std::string nearBuffer(256, 'y');
  const std::string wide = "Café \U0001F9EA\rzwölf " + std::string(300, 'z');
  for (const std::string& title : {std::string("a"), longText, nearBuffer, wide, nearBuffer.substr(1)}) {
    EXPECT_EQ(call("SetProperty", {text("event"), text("title"), text(title)}), kSuccess);
    EXPECT_EQ(event->name, title);
    EXPECT_EQ(get("event", "title"), textAnswer(title));
  }
  fmhost::Value lone = fmhost::Value::ofText(u"a\xD83E");
  call("SetProperty", {text("event"), text("title"), lone});
  EXPECT_EQ(event->name, "a\uFFFD");
  EXPECT_EQ(call("SetProperty", {text("event"), text("title"), text("")}), kSuccess);
  EXPECT_EQ(event->name, std::nullopt);
  EXPECT_EQ(get("event", "title"), textAnswer(""));
}

TEST_F(Functions, WithoutTheEventKitBackendNothingIsAsked) {
  openEvent();
  g_bUseEK = false;
  store_.raiseAt(1);
  EXPECT_EQ(call("OpenItemAt", {text("calendar"), number(9)}), kSuccess);
  EXPECT_EQ(call("GetItemCountForType", {text("calendar")}), numberAnswer(0));
  EXPECT_EQ(get("event", "title"), textAnswer(""));
  expectFailure(call("RemoveAlarm", {text("event"), number(1)}), 9016);
  expectFailure(call("RemoveAllAlarmsFrom", {text("event")}), 9016);
  g_bUseEK = true;
}

}  // namespace
}  // namespace zuno::test
