#include "foundation/time_zone.h"
#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

using Attributes = BackendTest;

TEST_F(Attributes, OfACalendar) {
  work_->paint = ek::Color{1, 0.5, 127.5 / 255};
  work_->kind = ek::CalendarType::subscription;
  work_->immutable = work_->subscribed = true;
  work_->modifiable = false;
  openCalendar();
  const std::pair<const char*, std::string> readings[] = {
      {"TITLE", "Work"},        {"notes", "(none)"},
      {"type", "Subscription"}, {"uid", work_->identifier},
      {"isEditable", "False"},  {"issubscribed", "True"},
      {"color", "255 128 128"}, {"allowsmodification", "False"}};
  for (const auto& [keyword, value] : readings) EXPECT_EQ(calendar(keyword), value) << keyword;
  EXPECT_EQ(takeError(), 0);

  work_->paint.reset();
  EXPECT_EQ(calendar("color"), "(none)");
  const char* const types[] = {"Local", "CalDav", "Exchange", "Subscription", "Birthday", "(none)"};
  for (int type = 0; type < 6; ++type) {
    work_->kind = static_cast<ek::CalendarType>(type);
    EXPECT_EQ(calendar("type"), types[type]);
  }
}

TEST_F(Attributes, ACalendarThatCannotBeReadGivesTheErrorMark) {
  openCalendar();
  work_->broken = true;
  EXPECT_EQ(calendar("title"), "!!ERROR!!");
  EXPECT_EQ(takeError(), 9999);
  EXPECT_EQ(backend_.getLastErrorString(), "the calendar cannot be read");
}

TEST_F(Attributes, ADueDateIsReadInItsOwnZoneAndMovesOutOfASkippedHour) {
  ek::DateComponents due;
  due.wall = foundation::wallTimeFrom({.year = 2024, .month = 11, .day = 2, .hour = 18});
  due.zone = foundation::TimeZone::named("Asia/Tokyo");
  openReminder()->due = due;
  EXPECT_EQ(reminder("duedate"), "2024-11-02 10:00:00 +0100");
  due.wall = foundation::wallTimeFrom({.year = 2024, .month = 3, .day = 31, .hour = 2, .minute = 30});
  due.zone.reset();
  openReminder()->due = due;
  EXPECT_EQ(reminder("duedate"), "2024-03-31 03:30:00 +0200");
}

TEST_F(Attributes, PrioritiesAreWords) {
  const auto reminder = openReminder();
  const char* const words[] = {"(none)", "None", "High", "High", "High", "High",
                               "Medium", "Low",  "Low",  "Low",  "Low",  "(none)"};
  for (int priority = -1; priority <= 10; ++priority) {
    reminder->rank = priority;
    EXPECT_EQ(this->reminder("priority"), words[priority + 1]) << priority;
  }
}

TEST_F(Attributes, OfAnAttendee) {
  const auto event = openEvent();
  event->people.resize(1);
  ek::Participant& person = event->people.front();
  person.name = "Ann";
  person.url = "mailto:ann@example.org";
  person.role = ek::ParticipantRole::chair;
  person.type = ek::ParticipantType::room;
  const char* const words[] = {"Unknown",   "Pendind",   "Accepted",   "Declined", "Tenative",
                               "Delegated", "Completed", "In Process", "Unknown"};
  for (int status = 0; status <= 8; ++status) {
    person.status = static_cast<ek::ParticipantStatus>(status);
    ASSERT_EQ(backend_.openParticipantAt(1), 0);
    EXPECT_EQ(attendee("Status"), words[status]);
    EXPECT_EQ(shown(backend_.getEventParticipantAttribute("status", 1)), std::to_string(status));
  }
  EXPECT_EQ(attendee("commonname"), "Ann");
  EXPECT_EQ(attendee("address"), "Home of mailto:ann@example.org");
  EXPECT_EQ(shown(backend_.getEventParticipantAttribute("role", 1)), "3");
  EXPECT_EQ(shown(backend_.getEventParticipantAttribute("type", 1)), "2");
  EXPECT_EQ(shown(backend_.getEventParticipantAttribute("commonname", 1)), "Ann");
  EXPECT_EQ(takeError(), 0);
  EXPECT_EQ(attendee("role"), "(none)");
  EXPECT_EQ(takeError(), 9063);
  backend_.getEventParticipantAttribute("nothing", 1);
  EXPECT_EQ(takeError(), 9063);
  backend_.releaseItems();
  backend_.getEventParticipantAttribute("role", 1);
  EXPECT_EQ(takeError(), 9062);
}

TEST_F(Attributes, AreAskedForByAKeyword) {
  const auto expectMissing = [](const std::string& value) {
    EXPECT_EQ(value, "(none)");
    EXPECT_EQ(takeError(), 9050);
  };
  openReminder();
  expectMissing(reminder({}));
  openCalendar();
  expectMissing(calendar({}));
  const auto event = openEvent();
  event->people.resize(1);
  event->alarmList = {std::make_shared<FakeAlarm>()};
  backend_.openAlarmAt(1);
  backend_.openParticipantAt(1);
  expectMissing(this->event({}));
  expectMissing(alarm({}));
  expectMissing(attendee({}));
  expectMissing(rule({}));
  expectMissing(shown(backend_.getEventParticipantAttribute({}, 1)));
}

class Rules : public BackendTest {
 protected:
  Rules() : event_(openEvent()) { event_->rules.resize(1); }
  ek::RecurrenceRule& held() { return event_->rules.front(); }
  // Of the rule as it is now.
  std::string reread(TextArgument keyword, TextArgument end = std::nullopt) {
    backend_.openEventAt(1);
    return rule(keyword, end);
  }
  std::shared_ptr<FakeEvent> event_;
};

TEST_F(Rules, AreReadByKeyword) {
  held().interval = 2;
  held().firstDayOfTheWeek = 2;
  held().daysOfTheWeek = {{2, 0}, {4, 0}};
  held().daysOfTheMonth = {1, -1, 15};
  held().monthsOfTheYear = {3, 12};
  EXPECT_EQ(rule("RecurrenceInterval"), "2");
  EXPECT_EQ(rule("firstdayoftheweek"), "2");
  EXPECT_EQ(rule("daysoftheweek"), "2\r4");
  EXPECT_EQ(rule("daysofthemonth"), "1\r-1\r15");
  EXPECT_EQ(rule("monthsoftheyear"), "3\r12");
  EXPECT_EQ(takeError(), 0);
  EXPECT_EQ(rule("WeeksOfTheYear"), "(none)");
  EXPECT_EQ(takeError(), 9073);
  const char* const types[] = {"daily", "weekly", "monthly", "yearly", "", "", ""};
  for (int frequency = 0; frequency < 7; ++frequency) {
    held().frequency = static_cast<ek::RecurrenceFrequency>(frequency);
    EXPECT_EQ(reread("recurrencetype"), types[frequency]);
  }
}

// The separator goes by the days of the month, unsigned and less one.
TEST_F(Rules, WeekdaysWithTheirWeeks) {
  held().daysOfTheWeek = {{3, 2}};
  EXPECT_EQ(rule("nthweekdaysofthemonth"), "2,3\r");
  held().daysOfTheWeek = {{3, 2}, {6, -1}};
  EXPECT_EQ(reread("nthweekdaysofthemonth"), "2,3\r-1,6\r");
  held().daysOfTheMonth = {9};
  EXPECT_EQ(reread("nthweekdaysofthemonth"), "2,3-1,6");
  held().daysOfTheMonth = {9, 10};
  EXPECT_EQ(reread("nthweekdaysofthemonth"), "2,3\r-1,6");
  held().daysOfTheWeek.clear();
  EXPECT_EQ(reread("nthweekdaysofthemonth"), "(none)");
}

}  // namespace
}  // namespace zuno::test
