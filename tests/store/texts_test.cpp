// What edits do to the iCalendar text of an item, and what its getters read from a text of others.
#include "tests/store/texts_fixture.h"

namespace {

using ek::Span;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using zuno_test::Date;
using zuno_test::hours;
using zuno_test::minutes;

constexpr const char* kMeeting =
    "BEGIN:VEVENT\r\n"
    "UID:meeting@example.org\r\n"
    "DTSTAMP:20240101T000000Z\r\n"
    "SUMMARY;LANGUAGE=de;ALTREP=\"cid:1\":Besprechung\r\n"
    "X-COLOR:blau\r\n"
    "SEQUENCE:4\r\n"
    "DTSTART;TZID=Europe/Berlin:20240501T090000\r\n"
    "DURATION:PT1H\r\n"
    "RRULE:FREQ=WEEKLY;COUNT=4;BYDAY=WE;X-HINT=1\r\n"
    "CREATED:20230101T000000Z\r\n"
    "LAST-MODIFIED:20230102T000000Z\r\n"
    "ATTENDEE;CN=\"Ann, B.\";PARTSTAT=TENTATIVE;ROLE=CHAIR;CUTYPE=ROOM:mailto:Ann@example.org\r\n"
    "ATTENDEE:mailto:bob@example.org\r\n"
    "ATTENDEE;PARTSTAT=X-LATE:urn:uuid:1\r\n"
    "BEGIN:VALARM\r\nACTION:AUDIO\r\nTRIGGER;RELATED=END:-PT10M\r\nATTACH;VALUE=URI:Basso\r\n"
    "X-WR-ALARMUID:77\r\nEND:VALARM\r\n"
    "BEGIN:VALARM\r\nACTION:EMAIL\r\nTRIGGER;VALUE=DATE-TIME:20240430T120000Z\r\n"
    "ATTENDEE:MAILTO:ann@example.org\r\nSUMMARY:s\r\nDESCRIPTION:d\r\nEND:VALARM\r\n"
    "BEGIN:X-THING\r\nX-A:1\r\nEND:X-THING\r\n"
    "END:VEVENT\r\n";

using zuno_test::Texts;

TEST_F(Texts, GettersReadWhatOthersWrote) {
  const auto event = imported(kMeeting, "meeting@example.org");
  EXPECT_EQ(event->title(), "Besprechung");
  EXPECT_EQ(event->endDate(), utc(2024, 5, 1, 8));
  EXPECT_EQ(event->creationDate(), utc(2023, 1, 1));
  EXPECT_EQ(event->lastModifiedDate(), utc(2023, 1, 2));
  EXPECT_NE(event->eventIdentifier(), "meeting@example.org");
  EXPECT_EQ(event->calendarItemExternalIdentifier(), "meeting@example.org");

  const auto attendees = event->attendees();
  ASSERT_EQ(attendees.size(), 3U);
  EXPECT_EQ(attendees[0].name, "Ann, B.");
  EXPECT_EQ(attendees[0].url, "mailto:Ann@example.org");
  EXPECT_EQ(attendees[0].status, ek::ParticipantStatus::tentative);
  EXPECT_EQ(attendees[0].role, ek::ParticipantRole::chair);
  EXPECT_EQ(attendees[0].type, ek::ParticipantType::room);
  EXPECT_EQ(attendees[1].name, std::nullopt);
  EXPECT_EQ(attendees[1].status, ek::ParticipantStatus::pending);
  EXPECT_EQ(attendees[1].role, ek::ParticipantRole::required);
  EXPECT_EQ(attendees[2].status, ek::ParticipantStatus::unknown);

  const auto alarms = event->alarms();
  ASSERT_EQ(alarms.size(), 2U);
  EXPECT_EQ(alarms[0]->type(), ek::AlarmType::audio);
  EXPECT_EQ(alarms[0]->soundName(), "Basso");
  EXPECT_EQ(alarms[0]->relativeOffset(), 3600 - 600);
  EXPECT_EQ(alarms[1]->type(), ek::AlarmType::email);
  EXPECT_EQ(alarms[1]->emailAddress(), "ann@example.org");
  EXPECT_EQ(alarms[1]->absoluteDate(), utc(2024, 4, 30, 12));

  const auto rules = event->recurrenceRules();
  ASSERT_EQ(rules.size(), 1U);
  EXPECT_EQ(rules[0].end->occurrenceCount, 4);
  EXPECT_EQ(rules[0].daysOfTheWeek, std::vector{ek::DayOfWeek::dayOfWeek(4)});
}

TEST_F(Texts, GettersReadWhatOthersWroteLoosely) {
  const auto event = imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART:20240501T090000Z\r\n"
      "CREATED:20240101T120000\r\nLAST-MODIFIED;TZID=Europe/Berlin:20240102T120000\r\n"
      "ATTENDEE;CN=\"Ann^n^'B\xFC^'\":mailto:ann\r\n"
      "BEGIN:VALARM\r\nACTION:EMAIL\r\nTRIGGER:PT0S\r\n"
      "ATTENDEE:mailto:o%27brien%2541%zz@example.org?subject=x\r\nEND:VALARM\r\nEND:VEVENT\r\n",
      "1");
  EXPECT_EQ(event->creationDate(), utc(2024, 1, 1, 12)) << "in UTC, though it does not say so";
  EXPECT_EQ(event->lastModifiedDate(), utc(2024, 1, 2, 11));
  EXPECT_EQ(event->attendees().at(0).name, "Ann\r\"B\xC3\xBC\"");
  const auto alarm = event->alarms().at(0);
  EXPECT_EQ(alarm->emailAddress(), "o'brien%41%zz@example.org");
  alarm->setEmailAddress("100%41?@example.org");
  EXPECT_THAT(textAfterSave(event), HasSubstr("ATTENDEE:mailto:100%2541%3F@example.org\r\n"));
  EXPECT_EQ(store_->eventWithIdentifier("1")->alarms().at(0)->emailAddress(), "100%41?@example.org");

  import("BEGIN:VTODO\r\nUID:2\r\nSTATUS: completed \r\nPRIORITY: +5\r\nEND:VTODO\r\n");
  import("BEGIN:VTODO\r\nUID:3\r\nCOMPLETED:20240501T090000\r\nEND:VTODO\r\n");
  const auto reminder = [&](const char* uid) {
    return std::dynamic_pointer_cast<ek::Reminder>(store_->calendarItemWithIdentifier(uid));
  };
  EXPECT_TRUE(reminder("2")->isCompleted());
  EXPECT_EQ(reminder("2")->priority(), 5);
  EXPECT_EQ(reminder("3")->completionDate(), utc(2024, 5, 1, 9));
}

TEST_F(Texts, AnEditTouchesWhatItChangesAndNothingElse) {
  const auto event = imported(kMeeting, "meeting@example.org");
  event->setTitle("Treffen; kurz");
  event->alarms()[0]->setRelativeOffset(-60);
  const std::string text = textAfterSave(event, Span::futureEvents);
  EXPECT_THAT(text, HasSubstr("SUMMARY;LANGUAGE=de:Treffen\\; kurz\r\nX-COLOR:blau\r\n"));
  EXPECT_THAT(text, HasSubstr("DURATION:PT1H\r\nRRULE:FREQ=WEEKLY;COUNT=4;BYDAY=WE;X-HINT=1\r\n"));
  EXPECT_THAT(text,
              HasSubstr("ACTION:AUDIO\r\nTRIGGER:-PT1M\r\nATTACH;VALUE=URI:Basso\r\nX-WR-ALARMUID:77\r\n"));
  EXPECT_THAT(text, HasSubstr("BEGIN:X-THING\r\nX-A:1\r\nEND:X-THING\r\n"));
  EXPECT_THAT(text, HasSubstr("CREATED:20230101T000000Z\r\n"));
  EXPECT_THAT(text, HasSubstr("SEQUENCE:4\r\n")) << "its time is the same";
  EXPECT_THAT(text, AllOf(Not(HasSubstr("20230102T000000Z")), Not(HasSubstr("DTSTAMP:20240101"))));
}

TEST_F(Texts, NothingContradictsWhatWasEdited) {
  const auto event = imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART:20240501T090000Z\r\nDTEND:20240501T100000Z\r\n"
      "DESCRIPTION:old\r\nX-ALT-DESC;FMTTYPE=text/html:<b>old</b>\r\nLOCATION:Hall\r\n"
      "X-APPLE-STRUCTURED-LOCATION;VALUE=URI;X-TITLE=Hall:geo:1,2\r\n"
      "X-MICROSOFT-CDO-ALLDAYEVENT:FALSE\r\nEND:VEVENT\r\n",
      "1");
  event->setTitle("a");
  EXPECT_THAT(textAfterSave(event),
              AllOf(HasSubstr("<b>old</b>"), HasSubstr("geo:1,2"), HasSubstr("EVENT:FALSE")));
  event->setNotes("new");
  event->setLocation(std::nullopt);
  event->setAllDay(true);
  EXPECT_THAT(textAfterSave(event), AllOf(HasSubstr("DESCRIPTION:new\r\n"), HasSubstr("ALLDAYEVENT:TRUE\r\n"),
                                          Not(HasSubstr("X-ALT-DESC")), Not(HasSubstr("LOCATION"))));
}

TEST_F(Texts, ADetachedOccurrenceIsFoundByItsOwnIdentifier) {
  const auto event = imported(kMeeting, "meeting@example.org");
  const auto second = eventAt(utc(2024, 5, 8, 7));
  ASSERT_TRUE(second);
  second->setStartDate(utc(2024, 5, 9, 7));
  second->setEndDate(utc(2024, 5, 9, 8));
  save(second);
  // Seconds from the start of 2001 to 8 May 2024, 7:00 UTC.
  EXPECT_EQ(second->eventIdentifier(), *event->eventIdentifier() + "/RID=736844400");
  for (const std::string& identifier :
       {*second->eventIdentifier(), std::string("meeting@example.org/RID=736844400")}) {
    const auto found = store_->eventWithIdentifier(identifier);
    ASSERT_TRUE(found) << identifier;
    EXPECT_EQ(found->startDate(), utc(2024, 5, 9, 7));
    EXPECT_EQ(found->occurrenceDate(), utc(2024, 5, 8, 7));
    EXPECT_EQ(found->alarms().size(), 2U);
    EXPECT_THAT(found->recurrenceRules(), IsEmpty());
  }
  EXPECT_EQ(store_->eventWithIdentifier(*event->eventIdentifier() + "/RID=736844401"), nullptr);
  EXPECT_EQ(store_->eventWithIdentifier("/RID=736844400"), nullptr);

  // On 31 March 2024 clocks in Berlin go from 2:00 to 3:00.
  imported(
      "BEGIN:VEVENT\r\nUID:2\r\nDTSTART;TZID=Europe/"
      "Berlin:20240330T023000\r\nRRULE:FREQ=DAILY;COUNT=3\r\nEND:VEVENT\r\n",
      "2");
  const auto skipped = eventAt(utc(2024, 3, 31, 1, 30));
  ASSERT_TRUE(skipped);
  skipped->setTitle("a");
  save(skipped);
  ASSERT_TRUE(store_->eventWithIdentifier(*skipped->eventIdentifier()));
  EXPECT_EQ(store_->eventWithIdentifier(*skipped->eventIdentifier())->title(), "a");
}

TEST_F(Texts, SomebodyElsesEventStaysAsItIs) {
  const auto event = imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART:20240501T090000Z\r\nORGANIZER:mailto:boss@example.org\r\nEND:"
      "VEVENT\r\n",
      "1");
  event->setTitle("mine");
  std::optional<ek::Error> error;
  EXPECT_FALSE(store_->saveEvent(event, Span::thisEvent, error));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, ek::ErrorCode::eventNotMutable);
  const Date now = foundation::now();
  ASSERT_TRUE(event->creationDate() && event->lastModifiedDate()) << "the time of the import";
  EXPECT_LE(now - *event->lastModifiedDate(), minutes(1));
  remove(event, Span::thisEvent);
  EXPECT_EQ(event->title(), std::nullopt);
}

TEST_F(Texts, BothSidesChangedAlarmsOfOneEvent) {
  const auto mine = imported(kMeeting, "meeting@example.org");
  const auto other = elsewhere();
  const auto theirs = other->eventWithIdentifier("meeting@example.org");
  std::optional<ek::Error> error;
  theirs->addAlarm(other->alarmWithRelativeOffset(-7200));
  ASSERT_TRUE(other->saveEvent(theirs, Span::futureEvents, error));
  mine->removeAlarm(mine->alarms()[0]);
  save(mine, Span::futureEvents);
  ASSERT_EQ(mine->alarms().size(), 2U);
  EXPECT_EQ(mine->alarms()[0]->type(), ek::AlarmType::email);
  EXPECT_EQ(mine->alarms()[1]->relativeOffset(), -7200);
}

TEST_F(Texts, ARepeatingReminderGivesWayToItsNext) {
  import(
      "BEGIN:VTODO\r\nUID:1\r\nSUMMARY:rent\r\nDTSTART;VALUE=DATE:20240501\r\nDUE;VALUE=DATE:20240503\r\n"
      "RRULE:FREQ=MONTHLY;COUNT=2\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\n"
      "TRIGGER;VALUE=DATE-TIME:20240503T060000Z\r\nDESCRIPTION:d\r\nEND:VALARM\r\nEND:VTODO\r\n");
  const auto reminder = std::dynamic_pointer_cast<ek::Reminder>(store_->calendarItemWithIdentifier("1"));
  ASSERT_TRUE(reminder);
  std::optional<ek::Error> error;
  reminder->setCompleted(true);
  ASSERT_TRUE(store_->saveReminder(reminder, error));
  EXPECT_FALSE(reminder->isCompleted());
  const auto june = std::chrono::local_days(std::chrono::year(2024) / 6 / 3);
  EXPECT_EQ(reminder->dueDateComponents()->wall, june);
  EXPECT_EQ(reminder->alarms()[0]->absoluteDate(), utc(2024, 6, 3, 6));
  reminder->setCompleted(true);
  ASSERT_TRUE(store_->saveReminder(reminder, error));
  EXPECT_TRUE(reminder->isCompleted()) << "it was the last one";
  EXPECT_EQ(reminder->dueDateComponents()->wall, june);
}

TEST_F(Texts, AlarmsOfRemindersCountFromTheDueDate) {
  import(
      "BEGIN:VTODO\r\nUID:1\r\nDTSTART:20240501T090000Z\r\nDUE:20240501T120000Z\r\n"
      "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT1H\r\nDESCRIPTION:d\r\nEND:VALARM\r\n"
      "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER;RELATED=END:-PT1H\r\nDESCRIPTION:d\r\nEND:VALARM\r\n"
      "END:VTODO\r\n");
  const auto item = store_->calendarItemWithIdentifier("1");
  ASSERT_EQ(item->alarms().size(), 2U);
  EXPECT_EQ(item->alarms()[0]->relativeOffset(), -4 * 3600);
  EXPECT_EQ(item->alarms()[1]->relativeOffset(), -3600);
  item->addAlarm(store_->alarmWithRelativeOffset(-60));
  std::optional<ek::Error> error;
  ASSERT_TRUE(store_->saveReminder(item, error));
  EXPECT_THAT(textOf(item->calendarItemIdentifier()), HasSubstr("TRIGGER;RELATED=END:-PT1M\r\n"));
}

TEST_F(Texts, AlarmsStayWithTheirReminderWhenItsDueDateMoves) {
  constexpr struct {
    const char* times;
    const char* written;
  } cases[] = {
      {"DTSTART:20240501T090000Z\r\nDUE:20240501T090000Z\r\n",
       "DTSTART:20240508T100000\r\nDUE:20240508T100000"},
      {"DTSTART:20240509T090000Z\r\nDUE:20240509T090000Z\r\n",
       "DTSTART:20240508T100000\r\nDUE:20240508T100000"},
      {"DTSTART:20240509T090000Z\r\nDUE:20240509T120000Z\r\n", "TRIGGER;RELATED=END:-PT4H\r\n"},
      {"", "TRIGGER;RELATED=END:-PT1H\r\n"},
  };
  int number = 0;
  for (const auto& [times, written] : cases) {
    SCOPED_TRACE(++number);
    import("BEGIN:VTODO\r\nUID:" + std::to_string(number) + "\r\n" + times +
           "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT1H\r\nDESCRIPTION:d\r\nEND:VALARM\r\nEND:VTODO\r\n");
    const auto item = store_->calendarItemWithIdentifier(std::to_string(number));
    const double offset = item->alarms()[0]->relativeOffset();
    ek::asReminder(*item).setDueDateComponents(
        ek::DateComponents{.wall = std::chrono::local_days(std::chrono::year(2024) / 5 / 8) + hours(10)});
    std::optional<ek::Error> error;
    ASSERT_TRUE(store_->saveReminder(item, error));
    EXPECT_EQ(store_->calendarItemWithIdentifier(std::to_string(number))->alarms()[0]->relativeOffset(),
              offset);
    EXPECT_THAT(textOf(item->calendarItemIdentifier()), HasSubstr(written));
  }
}

TEST_F(Texts, AStartKeepsToTheFormOfTheDueDate) {
  import("BEGIN:VTODO\r\nUID:1\r\nDTSTART;VALUE=DATE:20240506\r\nEND:VTODO\r\n");
  const auto item = store_->calendarItemWithIdentifier("1");
  const auto may8 = std::chrono::local_days(std::chrono::year(2024) / 5 / 8);
  const auto textAfterDue = [&](const ek::DateComponents& due) {
    ek::asReminder(*item).setDueDateComponents(due);
    std::optional<ek::Error> error;
    EXPECT_TRUE(store_->saveReminder(item, error));
    return textOf(item->calendarItemIdentifier());
  };
  EXPECT_THAT(textAfterDue({.wall = may8 + hours(10)}), HasSubstr("DTSTART:20240506T000000\r\n"));
  EXPECT_THAT(textAfterDue({.wall = may8, .isDateOnly = true}), HasSubstr("DTSTART;VALUE=DATE:20240506\r\n"));
  EXPECT_THAT(textAfterDue({.wall = may8 - hours(100)}), Not(HasSubstr("DTSTART"))) << "it would start late";
}

TEST_F(Texts, AnEndInTheRepeatedHourIsTheOneThatWasMeant) {
  // Clocks in Berlin go from 3:00 back to 2:00 on 27 October 2024, at 1:00 UTC.
  const auto event = newEvent("a", utc(2024, 10, 27, 0, 45), minutes(30));
  EXPECT_THAT(textAfterSave(event),
              HasSubstr("DTSTART;TZID=Europe/Berlin:20241027T024500\r\nDURATION:PT30M\r\n"));
  EXPECT_EQ(elsewhere()->eventWithIdentifier(*event->eventIdentifier())->endDate(), utc(2024, 10, 27, 1, 15));
  event->setEndDate(utc(2024, 10, 27, 2));
  EXPECT_THAT(textAfterSave(event),
              AllOf(HasSubstr("DTEND;TZID=Europe/Berlin:20241027T030000\r\n"), Not(HasSubstr("DURATION"))));
}

TEST_F(Texts, ItemsMadeInAZoneWithoutANameBringTheirRule) {
  zone_.set("CET-1CEST,M3.5.0,M10.5.0/3");
  const auto event = newEvent("a", utc(2024, 7, 1, 7));
  save(event);
  zone_.set("America/New_York");
  const auto read = elsewhere()->eventWithIdentifier(*event->eventIdentifier());
  ASSERT_TRUE(read);
  EXPECT_EQ(read->startDate(), utc(2024, 7, 1, 7));
  zone_.set("UTC");
  const auto plain = newEvent("b", utc(2024, 7, 1, 7));
  EXPECT_THAT(textAfterSave(plain), HasSubstr("DTSTART:20240701T070000Z\r\n"));
}

}  // namespace
