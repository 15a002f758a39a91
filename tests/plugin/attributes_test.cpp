#include "foundation/time_zone.h"
#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

class Attributes : public BackendTest {
 protected:
  struct Reading {
    const char* keyword;
    std::string value;
  };
};

TEST_F(Attributes, OfACalendar) {
  work_->paint = ek::Color{1, 0.5, 127.5 / 255};
  work_->kind = ek::CalendarType::subscription;
  work_->immutable = work_->subscribed = true;
  work_->modifiable = false;
  openCalendar();
  const Reading readings[] = {{"TITLE", "Work"},        {"notes", "(none)"},
                              {"type", "Subscription"}, {"uid", work_->identifier},
                              {"isEditable", "False"},  {"issubscribed", "True"},
                              {"color", "255 128 128"}, {"allowsmodification", "False"}};
  for (const auto& [keyword, value] : readings) EXPECT_EQ(calendar(keyword), value) << keyword;
  EXPECT_EQ(takeError(), 0);

  work_->paint.reset();
  work_->immutable = work_->subscribed = false;
  work_->modifiable = true;
  EXPECT_EQ(calendar("color"), "(none)");
  EXPECT_EQ(calendar("iseditable") + calendar("issubscribed") + calendar("allowsmodification"),
            "TrueFalseTrue");
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

TEST_F(Attributes, OfAnEvent) {
  const auto event = openEvent();
  event->start = utc(2024, 5, 1, 7);
  event->end = utc(2024, 12, 24, 23, 59, 59);
  event->modified = utc(2024, 1, 2, 3, 4, 5);
  event->occurrence = utc(2024, 5, 2);
  event->zone = "GMT+2";
  event->externalIdentifier = "standup@example.org";
  event->place = "Room 7";
  event->remarks = "Bring\rtea";
  event->link = "https://example.org/a";
  event->people.resize(2);
  const Reading readings[] = {{"StartDate", "2024-05-01 09:00:00 +0200"},
                              {"enddate", "2024-12-25 00:59:59 +0100"},
                              {"occurrence", "(none)"},
                              {"modifieddate", "2024-01-02 04:04:05 +0100"},
                              {"timezone", "GMT+2"},
                              {"uid", event->identifier},
                              {"externaluid", "standup@example.org"},
                              {"attendeecount", "2"},
                              {"isallday", "False"},
                              {"isdetached", "False"},
                              {"isrecurring", "False"},
                              {"location", "Room 7"},
                              {"hasattendees", "True"},
                              {"hasalarms", "False"},
                              {"notes", "Bring\rtea"},
                              {"title", "Standup"},
                              {"url", "https://example.org/a"},
                              {"calendartitle", "Work"},
                              {"calendaruid", work_->identifier},
                              {"datestamp", "2024-01-02 04:04:05 +0100"},
                              {"colour", "2024-01-02 04:04:05 +0100"},
                              {"duedate", "2024-01-02 04:04:05 +0100"}};
  for (const auto& [keyword, value] : readings) EXPECT_EQ(this->event(keyword), value) << keyword;

  event->rules.resize(1);
  event->allDay = event->detached = true;
  event->alarmList.resize(1);
  event->people.clear();
  const Reading others[] = {{"occurrence", "2024-05-02 02:00:00 +0200"},
                            {"isrecurring", "True"},
                            {"isallday", "True"},
                            {"isdetached", "True"},
                            {"hasalarms", "True"},
                            {"hasattendees", "False"},
                            {"attendeecount", "0"}};
  for (const auto& [keyword, value] : others) EXPECT_EQ(this->event(keyword), value) << keyword;
  EXPECT_EQ(takeError(), 0);
}

TEST_F(Attributes, WhatIsNotSetHasNoValueAndIsNoError) {
  ASSERT_EQ(backend_.newItem("event"), 0);
  for (const char* keyword : {"startdate", "modifieddate", "timezone", "uid", "title", "url", "calendartitle",
                              "calendaruid", "any"})
    EXPECT_EQ(event(keyword), "(none)") << keyword;
  ASSERT_EQ(backend_.newItem("reminder"), 0);
  for (const char* keyword : {"duedate", "completeddate", "notes", "externaluid", "calendaruid", "datestamp"})
    EXPECT_EQ(reminder(keyword), "(none)") << keyword;
  EXPECT_EQ(takeError(), 0);
}

TEST_F(Attributes, OfAReminder) {
  const auto reminder = openReminder();
  reminder->modified = utc(2024, 1, 2, 3, 4, 5);
  reminder->completion = utc(2024, 7, 1, 10);
  reminder->completed = true;
  reminder->externalIdentifier = "bulbs@example.org";
  reminder->remarks = "E27";
  ek::DateComponents due;
  due.wall = foundation::wallTimeFrom({.year = 2024, .month = 11, .day = 2, .hour = 18});
  reminder->due = due;
  const Reading readings[] = {{"duedate", "2024-11-02 18:00:00 +0100"},
                              {"CompletedDate", "2024-07-01 12:00:00 +0200"},
                              {"iscompleted", "True"},
                              {"priority", "None"},
                              {"hasalarms", "False"},
                              {"notes", "E27"},
                              {"title", "Bulbs"},
                              {"externaluid", "bulbs@example.org"},
                              {"calendartitle", "Chores"},
                              {"calendaruid", chores_->identifier},
                              {"startdate", "2024-01-02 04:04:05 +0100"},
                              {"uid", "2024-01-02 04:04:05 +0100"}};
  for (const auto& [keyword, value] : readings) EXPECT_EQ(this->reminder(keyword), value) << keyword;
  EXPECT_EQ(takeError(), 0);
  EXPECT_EQ(this->reminder("ModifiedDate"), "(none)");
  EXPECT_EQ(takeError(), 9063);

  // A due date in a zone of its own, and one in an hour that the clock skips.
  reminder->due->zone = foundation::TimeZone::named("Asia/Tokyo");
  EXPECT_EQ(this->reminder("duedate"), "2024-11-02 10:00:00 +0100");
  reminder->due->zone.reset();
  reminder->due->wall =
      foundation::wallTimeFrom({.year = 2024, .month = 3, .day = 31, .hour = 2, .minute = 30});
  EXPECT_EQ(this->reminder("duedate"), "2024-03-31 03:30:00 +0200");
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

TEST_F(Attributes, OfAnAlarm) {
  const auto event = openEvent();
  const auto alarm = std::make_shared<FakeAlarm>();
  event->alarmList = {std::make_shared<FakeAlarm>(), alarm};
  event->alarmList.front()->setEmailAddress("first@example.org");
  ASSERT_EQ(backend_.openAlarmAt(2), 0);
  EXPECT_EQ(this->alarm("relativetrigger"), "(none)");
  EXPECT_EQ(this->alarm("action"), "display");
  alarm->offset = -900;
  alarm->setEmailAddress("second@example.org");
  EXPECT_EQ(this->alarm("RelativeTrigger"), "-900.000000");
  EXPECT_EQ(this->alarm("absolutetrigger"), "(none)");
  EXPECT_EQ(this->alarm("action") + this->alarm("emailaddress"), "emailsecond@example.org");
  EXPECT_EQ(this->alarm("Email"), "first@example.org");
  alarm->setAbsoluteDate(utc(2024, 5, 1));
  alarm->setSoundName("Basso");
  EXPECT_EQ(this->alarm("absolutetrigger"), "2024-05-01 02:00:00 +0200");
  EXPECT_EQ(this->alarm("relativetrigger"), "");
  EXPECT_EQ(this->alarm("action") + this->alarm("sound"), "soundBasso");
  alarm->setUrl("file:///bin/true");
  EXPECT_EQ(this->alarm("action") + this->alarm("url"), "procedurefile:///bin/true");
  EXPECT_EQ(takeError(), 0);
}

TEST_F(Attributes, TheFirstAddressNeedsNoOpenAlarm) {
  EXPECT_EQ(alarm("email"), "(none)");
  openEvent();
  EXPECT_EQ(alarm("email"), "(none)");
  EXPECT_EQ(takeError(), 0);
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
}

TEST_F(Attributes, NeedAnOpenItemThenAKeywordThenAKnownOne) {
  const auto event = [&](TextArgument keyword) { return this->event(keyword); };
  const auto reminder = [&](TextArgument keyword) { return this->reminder(keyword); };
  const auto calendar = [&](TextArgument keyword) { return this->calendar(keyword); };
  const auto alarm = [&](TextArgument keyword) { return this->alarm(keyword); };
  const auto attendee = [&](TextArgument keyword) { return this->attendee(keyword); };
  const auto bare = [&](TextArgument keyword) {
    return shown(backend_.getEventParticipantAttribute(keyword, 1));
  };
  const auto rule = [&](TextArgument keyword) { return this->rule(keyword); };
  const auto openInside = [&] {
    const auto& first = store_.events().front();
    first->people.resize(1);
    first->alarmList = {std::make_shared<FakeAlarm>()};
    openEvent();
    backend_.openAlarmAt(1);
    backend_.openParticipantAt(1);
  };
  const struct {
    std::function<std::string(TextArgument)> read;
    std::function<void()> open;
    int whenClosed;
    int whenUnknown;
  } cases[] = {{calendar, [&] { openCalendar(); }, 9065, 9063},
               {event, openInside, 9066, 0},
               {reminder, [&] { openReminder(); }, 9067, 0},
               {alarm, openInside, 9064, 9063},
               {attendee, openInside, 9062, 9063},
               {bare, openInside, 9062, 9063},
               {rule, openInside, 9068, 9063}};
  int number = 0;
  for (const auto& [read, open, whenClosed, whenUnknown] : cases) {
    SCOPED_TRACE(number++);
    backend_.releaseItems();
    EXPECT_EQ(read(std::nullopt), "(none)");
    EXPECT_EQ(takeError(), whenClosed);
    open();
    EXPECT_EQ(read(std::nullopt), "(none)");
    EXPECT_EQ(takeError(), 9050);
    EXPECT_EQ(read("title "), "(none)");
    EXPECT_EQ(takeError(), whenUnknown);
  }
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

TEST_F(Rules, Ends) {
  EXPECT_EQ(rule("hasend"), "False");
  EXPECT_EQ(rule("recurrenceend"), "never");
  EXPECT_EQ(rule("recurrenceend", "whenever"), "never");
  held().end = ek::RecurrenceEnd::withOccurrenceCount(10);
  EXPECT_EQ(reread("hasend"), "True");
  EXPECT_EQ(rule("recurrenceend", "UsesEndDate"), "False");
  EXPECT_EQ(rule("recurrenceend", "OccurrenceCount"), "10");
  EXPECT_EQ(rule("recurrenceend", "EndDate"), "(none)");
  held().end = ek::RecurrenceEnd::withEndDate(utc(2024, 12, 31));
  EXPECT_EQ(reread("recurrenceend", "usesenddate"), "True");
  EXPECT_EQ(rule("recurrenceend", "occurrencecount"), "0");
  EXPECT_EQ(rule("recurrenceend", "enddate"), "2024-12-31 01:00:00 +0100");
  EXPECT_EQ(takeError(), 0);
  EXPECT_EQ(rule("recurrenceend"), "(none)");
  EXPECT_EQ(takeError(), 9005);
  EXPECT_EQ(rule("recurrenceend", "end"), "(none)");
  EXPECT_EQ(takeError(), 9006);
}

TEST_F(Rules, ThatAreNotThereReadAsZerosAndNothing) {
  event_->rules.clear();
  const std::pair<const char*, const char*> readings[] = {
      {"recurrencetype", "daily"},  {"recurrenceinterval", "0"}, {"firstdayoftheweek", "0"},
      {"hasend", "False"},          {"recurrenceend", "never"},  {"daysoftheweek", "(none)"},
      {"daysofthemonth", "(none)"}, {"monthsoftheyear", ""},     {"nthweekdaysofthemonth", "(none)"}};
  for (const auto& [keyword, value] : readings) EXPECT_EQ(rule(keyword), value) << keyword;
  EXPECT_EQ(takeError(), 0);
}

}  // namespace
}  // namespace zuno::test
