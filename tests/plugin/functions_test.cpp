#include "tests/plugin/host_test.h"

namespace zuno::test {
namespace {

class Functions : public HostTest {};

TEST_F(Functions, VersionIsShortUnlessAskedForAnythingElse) {
  EXPECT_EQ(call("Version"), textAnswer("3.0.1.0"));
  const std::pair<const char*, const char*> cases[] = {
      {"short", "3.0.1.0"},    {"SHORT", "3.0.1.0"},        {"Short", "3.0.1.0"},
      {"", "Zunomat 3.0.1.0"}, {"Long", "Zunomat 3.0.1.0"}, {" short", "Zunomat 3.0.1.0"},
      {"1", "Zunomat 3.0.1.0"}};
  for (const auto& [asked, version] : cases)
    EXPECT_EQ(call("Version", {text(asked)}), textAnswer(version)) << asked;
}

TEST_F(Functions, VersionForgetsTheErrorAndLastErrorDoesNot) {
  EXPECT_EQ(call("OpenItemWithUID", {text("event"), text("nobody")}), kFailure);
  for (int again = 0; again < 2; ++again)
    EXPECT_EQ(lastError(), std::pair(9001, std::string("Item not found.")));
  call("Version");
  EXPECT_EQ(lastError(), std::pair(0, std::string("Success")));
}

TEST_F(Functions, LastErrorIsAMessageUnlessAskedForAnythingElse) {
  call("NewItem", {text("meeting")});
  const Answer message = textAnswer("Invalid type specified in parameter.");
  EXPECT_EQ(call("GetLastError"), message);
  for (const char* form : {"", "text", "TEXT", "Text"})
    EXPECT_EQ(call("GetLastError", {text(form)}), message);
  for (const char* form : {"Number", "1", "Please Select", "text "})
    EXPECT_EQ(call("GetLastError", {text(form)}), numberAnswer(9042)) << form;
  EXPECT_EQ(call("GetLastError", {number(1)}), numberAnswer(9042));
}

TEST_F(Functions, ANumberOutsideTheCatalogueIsUndefined) {
  store_.raiseAt(1);
  expectFailure(call("GetItemCountForType", {text("calendar")}), 9999);
  EXPECT_EQ(lastError().second, "Undefined Error.");
  EXPECT_EQ(backend_.getLastErrorString(), "the store broke");
}

TEST_F(Functions, EachCallForgetsTheErrorBefore) {
  call("NewItem", {text("meeting")});
  EXPECT_EQ(call("GetItemCountForType", {text("calendar")}), numberAnswer(1));
  EXPECT_EQ(lastError(), std::pair(0, std::string("Success")));
  call("NewItem", {text("meeting")});
  EXPECT_EQ(call("NewItem", {nothing}), kUntouched);
  EXPECT_EQ(lastError(), std::pair(0, std::string("Success")));
}

TEST_F(Functions, WhatIsLeftEmptyCallsNothing) {
  const std::pair<const char*, fmhost::Arguments> calls[] = {
      {"GetItemCountForType", {text("")}},
      {"NewItem", {text("")}},
      {"SaveItem", {text("")}},
      {"RemoveItem", {text(""), text("nobody")}},
      {"GetProperty", {text(""), text("title")}},
      {"GetProperty", {text("event"), text("")}},
      {"SetProperty", {text(""), text("title"), text("x")}},
      {"SetProperty", {text(""), text("startdate"), text("")}},
      {"SetProperty", {text("event"), text(""), text("x")}}};
  store_.raiseAt(1);
  for (const auto& [name, arguments] : calls) {
    EXPECT_EQ(call(name, arguments), kUntouched) << name;
    EXPECT_EQ(lastError().first, 0) << name;
  }
}

TEST_F(Functions, UnknownOrMissingTypes) {
  for (const char* type : {"meeting", " event", "recurrencerule"}) {
    SCOPED_TRACE(type);
    expectFailure(call("OpenItemAt", {text(type), number(1)}), -4);
    expectFailure(call("OpenItemWithUID", {text(type), text("nobody")}), -4);
  }
  for (const char* type : {"alarm", "attendee", ""})
    expectFailure(call("OpenItemWithUID", {text(type), text("nobody")}), -4);
  expectFailure(call("OpenItemWithUID", {text("event"), text("")}), -4);
  expectFailure(call("CalOpenCalendarWithTitle", {text("")}), -4);
  expectFailure(call("GetProperty", {text("meeting"), text("title")}), -4);
  expectFailure(call("SetProperty", {text("meeting"), text("title"), text("x")}), -4);
  expectFailure(call("SetProperty", {text("attendee"), text("title"), text("x")}), -4);
}

TEST_F(Functions, FetchCountAndOpen) {
  EXPECT_EQ(call("EventsFetch", {text(""), text(""), text(""), text("")}), kSuccess);
  EXPECT_EQ(store_.lastPredicate->from, foundation::distantPast());
  EXPECT_EQ(store_.lastPredicate->to, foundation::distantFuture());
  EXPECT_EQ(call("GetItemCountForType", {text("EVENT")}), numberAnswer(3));
  EXPECT_EQ(call("OpenItemAt", {text("Event"), number(2)}), kSuccess);
  EXPECT_EQ(get("EVENT", "Title"), textAnswer("Review"));
  expectFailure(call("OpenItemAt", {text("event"), number(0)}), 9002);
  expectFailure(call("OpenItemAt", {text("event")}), 9002);
  EXPECT_EQ(call("RemindersFetch", {text("Chores"), text("Incomplete"), text("")}), kSuccess);
  EXPECT_EQ(call("GetItemCountForType", {text("task")}), numberAnswer(2));
  EXPECT_EQ(call("OpenItemAt", {text("reminder"), text("2")}), kSuccess);
  EXPECT_EQ(get("task", "title"), textAnswer("Taxes"));
  EXPECT_EQ(call("OpenItemAt", {text("reminderlist"), number(1)}), kSuccess);
  EXPECT_EQ(get("reminderlist", "title"), textAnswer("Chores"));
  EXPECT_EQ(call("CalOpenCalendarWithTitle", {text("Work")}), kSuccess);
  EXPECT_EQ(get("calendar", "uid"), textAnswer(work_->identifier));
  EXPECT_EQ(call("OpenItemWithUID", {text("reminderlist"), text(work_->identifier)}), kSuccess);
  EXPECT_EQ(call("OpenItemWithUID", {text("Event"), text(store_.events()[2]->identifier), text("soon")}),
            kSuccess);
  EXPECT_EQ(get("event", "title"), textAnswer("Lunch"));
}

// Lower-casing goes by Unicode: the sign for kelvin is a k as well, a dotted capital I is not an i.
TEST_F(Functions, KeywordsBeyondAscii) {
  fetchReminders();
  EXPECT_EQ(call("GetItemCountForType", {text("TAS\u212A")}), numberAnswer(2));
  expectFailure(call("GetItemCountForType", {text("REM\u0130NDER")}), 9042);
  expectFailure(call("GetItemCountForType", {text("tas\uFF4B")}), 9042);
  for (const std::size_t length : {32, 33, 1'000'000})
    expectFailure(call("GetItemCountForType", {text("task" + std::string(length - 4, 'k'))}), 9042);
}

TEST_F(Functions, AnEmptyTypeOpensTheCalendarAtThePosition) {
  EXPECT_EQ(call("OpenItemAt", {text(""), number(1)}), kSuccess);
  EXPECT_EQ(get("calendar", "title"), textAnswer("Work"));
}

TEST_F(Functions, NewSaveRemove) {
  EXPECT_EQ(call("NewItem", {text("EVENT")}), kSuccess);
  EXPECT_EQ(call("SaveItem", {text("Event"), text("ALL")}), kSuccess);
  EXPECT_EQ(store_.lastSpan, ek::Span::futureEvents);
  EXPECT_EQ(call("SaveItem", {text("event")}), kSuccess);
  EXPECT_EQ(call("SaveItem", {text("event"), text("")}), kSuccess);
  EXPECT_EQ(store_.lastSpan, ek::Span::thisEvent);
  expectFailure(call("SaveItem", {text("event"), text("some")}), 9053);
  // The operation gives 0 here, and an error number.
  expectFailure(call("SaveItem", {text("calendar")}), 9999);
  expectFailure(call("SaveItem", {text("meeting")}), 9005);
  const std::string uid = store_.events().front()->identifier;
  expectFailure(call("RemoveItem", {text("event"), text(uid)}), 9037);
  EXPECT_EQ(call("RemoveItem", {text("event"), text(uid), text(""), text("this")}), kSuccess);
  EXPECT_EQ(call("RemoveItem", {text("task"), text(store_.reminders().front()->identifier)}), kSuccess);
}

TEST_F(Functions, Alarms) {
  const auto event = openEvent();
  EXPECT_EQ(call("AddAlarm", {text("event"), text(""), text("display"), text(""), number(-900), text("")}),
            kSuccess);
  EXPECT_EQ(call("AddAlarm", {text("event"), timestamp("5/1/2024 9:00:00 AM"), text("sound"), text(""),
                              number(0), text("Basso")}),
            kSuccess);
  EXPECT_EQ(call("OpenItemAt", {text("ALARM"), number(1)}), kSuccess);
  EXPECT_EQ(get("alarm", "relativetrigger"), textAnswer("-900.000000"));
  EXPECT_EQ(call("SetProperty", {text("alarm"), text("RelativeTrigger"), number(-60)}), kSuccess);
  EXPECT_EQ(event->alarmList.front()->relativeOffset(), -60);
  expectFailure(call("RemoveAlarm", {text("event"), number(3)}), 9002);
  EXPECT_EQ(call("RemoveAlarm", {text("event"), number(2)}), kSuccess);
  EXPECT_EQ(call("RemoveAllAlarmsFrom", {text("event")}), kSuccess);
  EXPECT_TRUE(event->alarmList.empty());
  expectFailure(call("AddAlarm", {text(""), text(""), text("display"), text(""), number(-1), text("")}),
                9045);
  expectFailure(call("AddAlarm", {text("event"), text(""), text("display"), text(""), number(0), text("")}),
                9031);
  expectFailure(call("RemoveAlarm", {text(""), number(1)}), 9045);
  expectFailure(call("RemoveAllAlarmsFrom", {text("")}), 9005);
}

TEST_F(Functions, Recurrences) {
  expectFailure(call("RemoveRecurrence"), 9048);
  const auto event = openEvent();
  EXPECT_EQ(call("AddRecurrence", {text("Weekly"), number(2), text("2\r4\r6"), text(""), text(""),
                                   timestamp("12/31/2024 0:00:00"), number(10)}),
            kSuccess);
  ASSERT_EQ(event->rules.size(), 1U);
  EXPECT_EQ(get("recurrencerule", "daysoftheweek"), textAnswer("2\r4\r6"));
  EXPECT_EQ(call("GetProperty", {text("RecurrenceRule"), text("RecurrenceEnd"), text("UsesEndDate")}),
            textAnswer("True"));
  EXPECT_EQ(call("AddRecurrence", {text("monthly"), number(1), text(""), text("1\rx\r-1\r 3\r+5\r2.5\r"),
                                   text("13\r12"), text(""), number(0)}),
            kSuccess);
  EXPECT_EQ(event->rules.back().daysOfTheMonth, (std::vector{1, -1, 5}));
  EXPECT_EQ(event->rules.back().monthsOfTheYear, (std::vector{13, 12}));
  expectFailure(
      call("AddRecurrence", {text(""), number(1), text(""), text(""), text(""), text(""), number(0)}), 9021);
  expectFailure(
      call("AddRecurrence", {text("daily"), text(""), text(""), text(""), text(""), text(""), number(0)}),
      9024);
  EXPECT_EQ(call("RemoveRecurrence"), kSuccess);
  EXPECT_TRUE(event->rules.empty());
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
  const std::string longText(700, 'x');
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

// The host's own failures are for the host: they pass, nothing leaks, and the next call works.
TEST_F(Functions, FailuresOfTheHostLeaveAsTheyAre) {
  openEvent();
  const std::pair<const char*, fmhost::Arguments> calls[] = {
      {"GetProperty", {text("event"), text("title")}},
      {"GetProperty", {text("event"), text("modifieddate")}},
      {"SetProperty", {text("event"), text("title"), text("x")}},
      {"GetItemCountForType", {text("calendar")}},
      {"OpenItemAt", {text("meeting"), number(1)}},
      {"Version", {text("short")}},
      {"GetLastError", {}}};
  store_.events().front()->modified = utc(2024, 1, 1);
  for (const auto& [name, arguments] : calls) {
    SCOPED_TRACE(name);
    const std::int64_t before = host_.liveObjects();
    int raised = 0;
    for (int at = 1; at < 100; ++at) {
      host_.failCall(at, at % 2 + 1);
      try {
        call(name, arguments);
      } catch (const std::bad_alloc&) {
        EXPECT_EQ(at % 2 + 1, 1);
        ++raised;
      } catch (const std::exception&) {
        EXPECT_EQ(at % 2 + 1, 2);
        ++raised;
      }
      EXPECT_EQ(host_.liveObjects(), before);
      if (host_.failureIsPending()) break;
    }
    host_.cancelFailure();
    EXPECT_GT(raised, 5);
  }
  EXPECT_EQ(get("event", "title"), textAnswer("x"));
}

}  // namespace
}  // namespace zuno::test
