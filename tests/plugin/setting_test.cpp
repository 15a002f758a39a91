#include "foundation/date.h"
#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

using Creating = BackendTest;

TEST_F(Creating, FailsByType) {
  store_.givesNull = true;
  const struct {
    TextArgument type;
    int error;
  } cases[] = {{"calendar", 9038}, {"reminderlist", 9039}, {"event", 9040},  {"task", 9041},
               {"reminder", 9041}, {"alarm", 9042},        {"events", 9042}, {std::nullopt, 9042}};
  for (const auto& [type, error] : cases) {
    SCOPED_TRACE(type.value_or("(none)"));
    expectOutcome(backend_.newItem(type), error);
  }
}

using Setting = BackendTest;

TEST_F(Setting, MovesAnItemToAnotherCalendar) {
  const auto home = store_.addCalendar("Home");
  store_.addCalendar("Chores");
  const auto event = openEvent();
  expectOutcome(backend_.setEventProp("calendartitle", Value("Home")), 0);
  EXPECT_EQ(event->home, home);
  expectOutcome(backend_.setEventProp("CalendarUID", Value(chores_->identifier)), 0);
  EXPECT_EQ(event->home, chores_);
  // A list is found after an event calendar of the same title.
  const auto reminder = openReminder();
  expectOutcome(backend_.setReminderProp("calendartitle", Value("Chores")), 0);
  EXPECT_NE(reminder->home, chores_);
  for (const Value& value : {Value("Nowhere"), Value()}) {
    for (const char* keyword : {"calendartitle", "calendaruid"}) {
      EXPECT_EQ(backend_.setReminderProp(keyword, value), 0);
      EXPECT_EQ(takeError(), 9013);
      EXPECT_EQ(backend_.setCalendarItemProp(keyword, value, *event), -1);
      EXPECT_EQ(takeError(), 9013);
    }
  }
}

TEST_F(Setting, AnUnknownPropertyShowsInTheErrorNumberAlone) {
  const auto event = openEvent();
  EXPECT_EQ(backend_.setEventProp("colour", Value("red")), 0);
  EXPECT_EQ(takeError(), 9006);
  EXPECT_EQ(backend_.setCalendarItemProp("colour", Value("red"), *event), -1);
  EXPECT_EQ(backend_.setCalendarItemProp("zone", Value("UTC"), *event), 1);
  EXPECT_EQ(takeError(), 9006);
  EXPECT_EQ(backend_.setCalendarItemProp("URL", Value("lower-cased by the caller"), *event), -1);
  EXPECT_EQ(takeError(), 9006);
  openReminder();
  EXPECT_EQ(backend_.setReminderProp("location", Value("Room 7")), 0);
  EXPECT_EQ(takeError(), 9006);
}

TEST_F(Setting, WhatTheItemRaisesIsUnclassified) {
  const auto event = openEvent();
  event->broken = true;
  EXPECT_EQ(backend_.setCalendarItemProp("title", Value("x"), *event), -1);
  EXPECT_EQ(takeError(), 9999);
  EXPECT_EQ(backend_.getLastErrorString(), "the item cannot be changed");
  EXPECT_EQ(backend_.setEventProp("title", Value("x")), 0);
  EXPECT_EQ(takeError(), 9999);
}

TEST_F(Setting, PropertiesOfAReminder) {
  const auto reminder = openReminder();
  const Date noon = utc(2024, 7, 1, 10);
  expectOutcome(backend_.setReminderProp("CompletedDate", Value(noon)), 0);
  EXPECT_EQ(reminder->completion, noon);
  expectOutcome(backend_.setReminderProp("duedate", Value(noon)), 0);
  EXPECT_EQ(foundation::fieldsOf(reminder->due->wall),
            (foundation::WallFields{.year = 2024, .month = 7, .day = 1, .hour = 12}));
  EXPECT_FALSE(reminder->due->isDateOnly);
  EXPECT_EQ(reminder->due->zone, nullptr);
  expectOutcome(backend_.setReminderProp("title", Value("Bulb")), 0);
  EXPECT_EQ(reminder->name, "Bulb");
}

TEST_F(Setting, ColorsInThreeNumbers) {
  openCalendar();
  const std::pair<const char*, const char*> taken[] = {
      {"255 0 0", "255 0 0"},         {"27\t173\u00a0248", "27 173 248"},
      {"0.4 127.5 1e2", "0 128 100"}, {"300 65025 0", "255 255 0"},
      {"+5 0 .4", "5 0 0"},           {"abc 7x 12,5", "0 7 12"},
      {"2550e-1 1 1", "255 1 1"},     {"-0 1 1", "0 1 1"}};
  for (const auto& [text, color] : taken) {
    SCOPED_TRACE(text);
    expectOutcome(backend_.setCalendarProp("color", Value(text)), 0);
    EXPECT_EQ(calendar("color"), color);
  }
  EXPECT_EQ(work_->paint->alpha, 1);
  const ek::Color before = *work_->paint;
  for (const char* text : {"255 0", "255 0 0 0", "255  0 0", " 255 0 0", "255 0 0 ", "-1 0 0", "0 65026 0",
                           "255,0,0", "1e99 0 0"}) {
    SCOPED_TRACE(text);
    expectOutcome(backend_.setCalendarProp("color", Value(text)), -4);
  }
  expectOutcome(backend_.setCalendarProp("color", Value()), -4);
  EXPECT_EQ(work_->paint, before);
}

TEST_F(Setting, EveryColorComponentReadsBackAsSet) {
  openCalendar();
  for (int component = 0; component <= 255; ++component) {
    const std::string text = std::to_string(component) + " 0 255";
    ASSERT_EQ(backend_.setCalendarProp("color", Value(text)), 0);
    ASSERT_EQ(calendar("color"), text);
  }
}

TEST_F(Setting, NeedsAnOpenItemThenAKeyword) {
  expectOutcome(backend_.setEventProp(std::nullopt, Value("x")), 9049);
  expectOutcome(backend_.setReminderProp(std::nullopt, Value("x")), 9052);
  expectOutcome(backend_.setCalendarProp(std::nullopt, Value("x")), 9051);
  openEvent();
  expectOutcome(backend_.setEventProp(std::nullopt, Value("x")), 9050);
  openReminder();
  expectOutcome(backend_.setReminderProp(std::nullopt, Value("x")), 9050);
  openCalendar();
  expectOutcome(backend_.setCalendarProp(std::nullopt, Value("x")), 9050);
}

}  // namespace
}  // namespace zuno::test
