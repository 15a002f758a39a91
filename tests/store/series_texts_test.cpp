// What saves with their spans do to the iCalendar text of a series, and to what it shows.
#include "eventkit/embedded/storage/check.h"
#include "tests/store/texts_fixture.h"

namespace {

using ek::Span;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using zuno_test::Date;
using zuno_test::hours;
using zuno_test::minutes;

class SeriesTexts : public zuno_test::Texts {};

TEST_F(SeriesTexts, AMovedSeriesTakesItsExceptionsAlong) {
  const auto event = imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART;TZID=Europe/Berlin:20240501T090000\r\n"
      "DTEND;TZID=Europe/Berlin:20240501T100000\r\nSUMMARY:a\r\n"
      "RRULE:FREQ=DAILY;UNTIL=20240505T070000Z\r\n"
      "EXDATE;TZID=Europe/Berlin:20240502T090000,20240503T090000\r\nEND:VEVENT\r\n"
      "BEGIN:VEVENT\r\nUID:1\r\nRECURRENCE-ID:20240504T070000Z\r\n"
      "DTSTART;TZID=Europe/Berlin:20240504T090000\r\nDTEND;TZID=Europe/Berlin:20240504T100000\r\n"
      "SUMMARY:b\r\nEND:VEVENT\r\n",
      "1");
  event->setStartDate(utc(2024, 5, 1, 8));
  event->setEndDate(utc(2024, 5, 1, 9));
  const std::string text = textAfterSave(event, Span::futureEvents);
  EXPECT_THAT(text, HasSubstr("UNTIL=20240505T080000Z"));
  const auto found = eventsBetween(utc(2024, 5, 1), utc(2024, 6, 1));
  EXPECT_THAT(startsOf(*found), ElementsAre(utc(2024, 5, 1, 8), utc(2024, 5, 4, 8), utc(2024, 5, 5, 8)));
  EXPECT_THAT(titlesOf(*found), ElementsAre("a", "b", "a"));
}

TEST_F(SeriesTexts, AMoveTakesAlongWhatWasSaidOfExtraDates) {
  // The first excluded date is that of no occurrence.
  const auto event = imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART:20240501T090000Z\r\nSUMMARY:a\r\n"
      "RRULE:FREQ=DAILY;INTERVAL=2;COUNT=3\r\nRDATE:20240510T090000Z,20240512T090000Z\r\n"
      "EXDATE:20240502T090000Z,20240512T090000Z\r\nEND:VEVENT\r\n"
      "BEGIN:VEVENT\r\nUID:1\r\nRECURRENCE-ID:20240510T090000Z\r\nDTSTART:20240510T090000Z\r\n"
      "SUMMARY:b\r\nEND:VEVENT\r\n",
      "1");
  event->setStartDate(*event->startDate() + hours(24));
  event->setEndDate(*event->endDate() + hours(24));
  save(event, Span::futureEvents);
  const auto found = eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1));
  EXPECT_THAT(startsOf(*found),
              ElementsAre(utc(2024, 5, 2, 9), utc(2024, 5, 4, 9), utc(2024, 5, 6, 9), utc(2024, 5, 11, 9)));
  EXPECT_THAT(titlesOf(*found), ElementsAre("a", "a", "a", "b"));
}

TEST_F(SeriesTexts, ASeriesEndsWithTheSameOccurrenceAfterItMoved) {
  const struct {
    const char* start;
    const char* until;
    Date lastInstant;
  } cases[] = {
      {";TZID=Europe/Berlin:20240701T090000", "20240704", utc(2024, 7, 3, 22)},
      {":20240701T090000Z", "20240704", utc(2024, 7, 4)},
      {":20240701T090000", "20240704", utc(2024, 7, 3, 22)},
      {":20240701T090000", "20240704T085959Z", utc(2024, 7, 4, 6, 59) + std::chrono::seconds(59)},
      {";VALUE=DATE:20240701", "20240703T235959Z", utc(2024, 7, 2, 22)},
      {";VALUE=DATE:20240701", "20240704T035959Z", utc(2024, 7, 2, 22)},
      {";VALUE=DATE:20240701", "20240703T220000Z", utc(2024, 7, 2, 22)},
  };
  for (const auto& [start, until, lastInstant] : cases) {
    SCOPED_TRACE(std::string(start) + " until " + until);
    const std::string uid = std::string(start) + until;
    const auto event = imported("BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTART" + start +
                                    "\r\nRRULE:FREQ=DAILY;UNTIL=" + until + "\r\nEND:VEVENT\r\n",
                                uid);
    const auto days = [&] { return eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1))->size(); };
    EXPECT_EQ(days(), 3U);
    EXPECT_EQ(event->recurrenceRules().at(0).end->endDate, lastInstant);
    const auto shift = event->isAllDay() ? hours(24) : hours(1);
    event->setStartDate(*event->startDate() + shift);
    event->setEndDate(*event->endDate() + shift);
    save(event, Span::futureEvents);
    EXPECT_EQ(days(), 3U);
    std::optional<ek::Error> error;
    EXPECT_TRUE(store_->removeEvent(event, Span::futureEvents, error));
  }
}

TEST_F(SeriesTexts, OccurrencesOfTheirOwnAreNamedInTheFormOfTheirSeries) {
  constexpr struct {
    const char* start;
    const char* recurrenceId;
    const char* moved;
  } cases[] = {
      {":20240501T090000Z", ":20240503T090000Z", "RECURRENCE-ID:20240503T100000Z\r\n"},
      {";TZID=America/New_York:20240501T090000", ";TZID=America/New_York:20240503T090000",
       "RECURRENCE-ID;TZID=America/New_York:20240503T100000\r\n"},
      {":20240501T090000", ":20240503T090000", "RECURRENCE-ID:20240503T100000\r\n"},
      {";VALUE=DATE:20240501", ";VALUE=DATE:20240503", "RECURRENCE-ID;VALUE=DATE:20240504\r\n"},
  };
  for (const auto& [start, recurrenceId, moved] : cases) {
    SCOPED_TRACE(start);
    const std::string uid = std::string("series") + start;
    const auto event = imported(
        "BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTART" + start +
            "\r\nRRULE:FREQ=DAILY;COUNT=4\r\nEND:VEVENT\r\nBEGIN:VEVENT\r\nUID:" + uid + "\r\nRECURRENCE-ID" +
            recurrenceId + "\r\nDTSTART" + start + "\r\nSUMMARY:own\r\nEND:VEVENT\r\n",
        uid);
    const auto shift = event->isAllDay() ? hours(24) : hours(1);
    event->setStartDate(*event->startDate() + shift);
    event->setEndDate(*event->endDate() + shift);
    EXPECT_THAT(textAfterSave(event, Span::futureEvents), HasSubstr(moved));
  }
}

TEST_F(SeriesTexts, OtherRulesCountFromTheFirstOccurrenceThatIsLeft) {
  int month = 1;
  for (const Span span : {Span::thisEvent, Span::futureEvents}) {
    for (const int times : {0, 2}) {
      SCOPED_TRACE(month);
      const std::string uid = std::to_string(month);
      const std::string start = "20240" + uid + "01T090000Z";
      const auto event =
          imported("BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTART:" + start +
                       "\r\nRRULE:FREQ=DAILY;COUNT=5\r\nEXDATE:" + start + "\r\nEND:VEVENT\r\n",
                   uid);
      const Date opened = utc(2024, static_cast<unsigned>(month), 2, 9);
      ASSERT_EQ(event->startDate(), opened);
      event->setRecurrenceRules({});
      if (times > 0)
        event->addRecurrenceRule({.frequency = ek::RecurrenceFrequency::weekly,
                                  .end = ek::RecurrenceEnd::withOccurrenceCount(times)});
      save(event, span);
      EXPECT_EQ(event->startDate(), opened);
      const auto found = startsOf(*eventsBetween(opened - hours(48), opened + hours(24 * 20)));
      EXPECT_EQ(found.size(), times == 0 ? 1U : 2U);
      EXPECT_EQ(found.front(), opened);
      ++month;
    }
  }
}

TEST_F(SeriesTexts, ASplitSharesOutRulesExceptionsAndAlarms) {
  const std::string text =
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART;VALUE=DATE:20240501\r\nSUMMARY:a\r\nX-KEEP:me\r\n"
      "RRULE:FREQ=DAILY;COUNT=10\r\nEXDATE;VALUE=DATE:20240502,20240507\r\n"
      "RDATE;VALUE=DATE:20240601\r\n"
      "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT1H\r\nDESCRIPTION:d\r\nEND:VALARM\r\nEND:VEVENT\r\n";
  const std::string old = imported(text, "1")->calendarItemIdentifier();
  const auto fifth = eventAt(utc(2024, 5, 4, 22));
  ASSERT_TRUE(fifth);
  fifth->setTitle("later");
  const std::string future = textAfterSave(fifth, Span::futureEvents);
  EXPECT_NE(fifth->calendarItemIdentifier(), old);
  EXPECT_THAT(future,
              AllOf(HasSubstr("DTSTART;VALUE=DATE:20240505\r\n"), HasSubstr("COUNT=6"),
                    HasSubstr("EXDATE;VALUE=DATE:20240507\r\n"), HasSubstr("RDATE;VALUE=DATE:20240601"),
                    HasSubstr("X-KEEP:me"), HasSubstr("TRIGGER:-PT1H"), Not(HasSubstr("UID:1\r\n"))));
  EXPECT_THAT(textOf(old), AllOf(HasSubstr("COUNT=4"), HasSubstr("EXDATE;VALUE=DATE:20240502\r\n"),
                                 Not(HasSubstr("RDATE")), HasSubstr("SUMMARY:a\r\n")));
}

TEST_F(SeriesTexts, WhatGoesToAnotherCalendarTakesItsTimeZoneAlong) {
  using ek::embedded::Database;
  const std::string zone = "A house rule, five hours west of Greenwich, with a name too long for a line";
  const auto work = store_->newCalendar(ek::EntityType::event);
  work->setSource(store_->defaultCalendarForNewEvents()->source());
  std::optional<ek::Error> error;
  ASSERT_TRUE(store_->saveCalendar(work, error));
  {
    const auto database = Database::shared(path());
    Database::Transaction writing(*database, Database::Transaction::Kind::writing);
    ek::embedded::ItemTable(*database).ensureTimeZone(
        1, zone,
        "BEGIN:VTIMEZONE\r\nTZID:" + zone +
            "\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\nTZOFFSETFROM:-0500\r\n"
            "TZOFFSETTO:-0500\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n");
    writing.commit();
  }
  struct {
    Span span;
    int place;
    int gone;
  } const cases[] = {{Span::thisEvent, 2, 1}, {Span::futureEvents, 2, 3}, {Span::futureEvents, 0, 5}};
  int month = 1;
  for (const auto& [span, place, gone] : cases) {
    SCOPED_TRACE(month);
    const auto first =
        imported("BEGIN:VEVENT\r\nUID:" + std::to_string(month) + "\r\nDTSTART;TZID=\"" + zone.substr(0, 40) +
                     "\r\n " + zone.substr(40) + "\":20240" + std::to_string(month) +
                     "01T090000\r\nRRULE:FREQ=DAILY;COUNT=5\r\nEND:VEVENT\r\n",
                 std::to_string(month));
    const auto home = first->calendar();
    const auto event = eventAt(utc(2024, static_cast<unsigned>(month), 1 + static_cast<unsigned>(place), 14));
    ASSERT_TRUE(event);
    event->setCalendar(work);
    save(event, span);
    const auto there = elsewhere();
    const auto in = [&](const std::shared_ptr<ek::Calendar>& calendar) {
      const Date from = utc(2024, static_cast<unsigned>(month), 1);
      return startsOf(
          *there->eventsMatchingPredicate(there->predicateForEvents(from, from + hours(200), {calendar})));
    };
    const auto moved = in(work);
    ASSERT_EQ(moved.size(), static_cast<std::size_t>(gone));
    EXPECT_EQ(moved.front(), utc(2024, static_cast<unsigned>(month), 1 + static_cast<unsigned>(place), 14));
    EXPECT_EQ(in(home).size(), static_cast<std::size_t>(5 - gone)) << "the others stay where they were";
    EXPECT_EQ(there->eventWithIdentifier(*event->eventIdentifier())->startDate(), moved.front());
    ++month;
  }
  EXPECT_THAT(ek::embedded::findFaults(*Database::shared(path())), IsEmpty());
}

TEST_F(SeriesTexts, FromAnExtraDateOnTheRuleKeepsItsWeeks) {
  imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART:20240506T090000Z\r\nDURATION:PT1H\r\nSUMMARY:a\r\n"
      "RRULE:FREQ=WEEKLY;INTERVAL=2;COUNT=4\r\nRDATE:20240515T120000Z\r\nEND:VEVENT\r\n",
      "1");
  const auto extra = eventAt(utc(2024, 5, 15, 12));
  ASSERT_TRUE(extra);
  extra->setTitle("b");
  save(extra, Span::futureEvents);
  // The later half starts after its extra date, and is split there.
  const auto start = eventAt(utc(2024, 5, 20, 9));
  ASSERT_TRUE(start);
  start->setTitle("c");
  save(start, Span::futureEvents);
  const auto found = eventsBetween(utc(2024, 5, 1), utc(2025, 1, 1));
  EXPECT_THAT(startsOf(*found), ElementsAre(utc(2024, 5, 6, 9), utc(2024, 5, 15, 12), utc(2024, 5, 20, 9),
                                            utc(2024, 6, 3, 9), utc(2024, 6, 17, 9)));
  EXPECT_THAT(titlesOf(*found), ElementsAre("a", "b", "c", "c", "c"));
}

TEST_F(SeriesTexts, ASplitKeepsWhatEachOfSeveralRulesNames) {
  constexpr struct {
    const char* rules[2];
    unsigned place;
    const char* kept;
  } cases[] = {
      {{"FREQ=WEEKLY;COUNT=6", "FREQ=MONTHLY;COUNT=4"}, 2, "RRULE:FREQ=MONTHLY;BYMONTHDAY=6;COUNT=4\r\n"},
      {{"FREQ=DAILY;COUNT=9", "FREQ=WEEKLY;UNTIL=20240701T090000Z"},
       2,
       "RRULE:FREQ=WEEKLY;BYDAY=MO;UNTIL=20240701T090000Z\r\n"},
      {{"FREQ=WEEKLY;COUNT=3", "FREQ=YEARLY"}, 2, "RRULE:FREQ=YEARLY;BYMONTH=5;BYMONTHDAY=6\r\n"},
      {{"FREQ=WEEKLY;COUNT=3", "FREQ=DAILY;INTERVAL=5;COUNT=5"}, 4, "RDATE:20240526T090000Z\r\n"},
      {{"FREQ=WEEKLY;COUNT=6", "FREQ=DAILY;COUNT=3"}, 4, "RRULE:FREQ=WEEKLY;COUNT=4\r\nSEQUENCE"},
      {{"FREQ=DAILY;UNTIL=20240508T090000Z\r\nRDATE:20240510T090000Z", "FREQ=WEEKLY;COUNT=3"},
       3,
       "RRULE:FREQ=WEEKLY;COUNT=2\r\n"},
  };
  const auto starts = [this] { return startsOf(*eventsBetween(utc(2024, 1, 1), utc(2034, 1, 1))); };
  for (const auto& [rules, place, kept] : cases) {
    SCOPED_TRACE(kept);
    const std::string uid = std::string(rules[1]).substr(5, 6) + std::to_string(place);
    imported("BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTART:20240506T090000Z\r\nRRULE:" + std::string(rules[0]) +
                 "\r\nRRULE:" + rules[1] + "\r\nEND:VEVENT\r\n",
             uid);
    const auto before = starts();
    const auto event = eventAt(before.at(place));
    ASSERT_TRUE(event);
    event->setTitle("b");
    EXPECT_THAT(textAfterSave(event, Span::futureEvents), HasSubstr(kept));
    EXPECT_EQ(starts(), before);
    for (const Date half : {before.at(place), before.front()}) {
      std::optional<ek::Error> error;
      EXPECT_TRUE(store_->removeEvent(eventAt(half), Span::futureEvents, error));
    }
  }
}

TEST_F(SeriesTexts, ASplitSeriesLeavesOutWhatItsExclusionRulesDid) {
  // Every third day is out, counted from the first.
  imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART:20240506T090000Z\r\nSUMMARY:a\r\nRRULE:FREQ=DAILY;COUNT=9\r\n"
      "EXRULE:FREQ=DAILY;INTERVAL=3\r\nEND:VEVENT\r\n",
      "1");
  const auto days = [this] { return startsOf(*eventsBetween(utc(2024, 5, 1), utc(2024, 6, 1))); };
  const auto before = days();
  ASSERT_EQ(before.size(), 6U);
  const auto fourth = eventAt(before[3]);
  fourth->setTitle("b");
  save(fourth, Span::futureEvents);
  EXPECT_EQ(days(), before);
  EXPECT_EQ(eventAt(before[3])->title(), "b");

  imported(
      "BEGIN:VEVENT\r\nUID:2\r\nDTSTART:20250101T090000Z\r\nSUMMARY:a\r\nRRULE:FREQ=DAILY\r\n"
      "EXRULE:FREQ=WEEKLY;BYDAY=SA\r\nEND:VEVENT\r\n",
      "2");
  const auto later = eventAt(utc(2025, 1, 10, 9));
  later->setTitle("b");
  EXPECT_THAT(textAfterSave(later, Span::futureEvents),
              AllOf(HasSubstr("EXRULE:FREQ=WEEKLY;BYDAY=SA\r\n"), Not(HasSubstr("EXDATE"))));
}

TEST_F(SeriesTexts, AMoveGoesToTheTimeThatWasAskedFor) {
  // On 31 March 2024 clocks in Berlin go from 2:00 to 3:00.
  imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART;TZID=Europe/Berlin:20240330T023000\r\nDURATION:PT1H\r\n"
      "RRULE:FREQ=DAILY;COUNT=3\r\nEND:VEVENT\r\n",
      "1");
  const auto skipped = eventAt(utc(2024, 3, 31, 1, 30));
  ASSERT_TRUE(skipped);
  skipped->setEndDate(utc(2024, 3, 31, 3));
  save(skipped, Span::futureEvents);
  EXPECT_EQ(skipped->startDate(), utc(2024, 3, 31, 1, 30));
  ASSERT_TRUE(eventAt(utc(2024, 4, 1, 0, 30)));
  EXPECT_EQ(eventAt(utc(2024, 4, 1, 0, 30))->endDate(), utc(2024, 4, 1, 2));
  skipped->setStartDate(utc(2024, 3, 31, 4));
  skipped->setEndDate(utc(2024, 3, 31, 5));
  save(skipped, Span::futureEvents);
  EXPECT_EQ(skipped->startDate(), utc(2024, 3, 31, 4));
  EXPECT_TRUE(eventAt(utc(2024, 4, 1, 4)));

  const auto mine = newEvent("a", utc(2024, 5, 1, 9));
  save(mine);
  const auto other = elsewhere();
  const auto theirs = other->eventWithIdentifier(*mine->eventIdentifier());
  std::optional<ek::Error> error;
  theirs->setStartDate(utc(2024, 5, 1, 14));
  theirs->setEndDate(utc(2024, 5, 1, 15));
  ASSERT_TRUE(other->saveEvent(theirs, Span::thisEvent, error));
  mine->setStartDate(utc(2024, 5, 1, 10));
  mine->setEndDate(utc(2024, 5, 1, 11));
  save(mine);
  EXPECT_EQ(mine->startDate(), utc(2024, 5, 1, 10)) << "who saves last decides";
  EXPECT_EQ(mine->endDate(), utc(2024, 5, 1, 11));
}

TEST_F(SeriesTexts, AnExtraDateKeepsItsOwnLength) {
  imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART:20240506T090000Z\r\nDURATION:PT1H\r\nSUMMARY:a\r\n"
      "RDATE;VALUE=PERIOD:20240508T090000Z/PT2H,20240510T090000Z/PT3H\r\nEND:VEVENT\r\n",
      "1");
  const auto second = eventAt(utc(2024, 5, 8, 9));
  ASSERT_TRUE(second);
  second->setTitle("b");
  save(second, Span::futureEvents);
  EXPECT_EQ(second->endDate(), utc(2024, 5, 8, 11));
  EXPECT_EQ(eventAt(utc(2024, 5, 10, 9))->endDate(), utc(2024, 5, 10, 12));
  EXPECT_THAT(titlesOf(*eventsBetween(utc(2024, 5, 1), utc(2024, 6, 1))), ElementsAre("a", "b", "b"));

  imported(
      "BEGIN:VEVENT\r\nUID:2\r\nDTSTART:20250506T090000Z\r\nDURATION:PT1H\r\nRRULE:FREQ=WEEKLY;COUNT=2\r\n"
      "RDATE;VALUE=PERIOD:20250508T090000Z/PT2H\r\nEND:VEVENT\r\n",
      "2");
  const auto extra = eventAt(utc(2025, 5, 8, 9));
  extra->setRecurrenceRules({});
  EXPECT_THAT(textAfterSave(extra, Span::futureEvents), Not(HasSubstr("RECURRENCE-ID")));
  EXPECT_EQ(extra->endDate(), utc(2025, 5, 8, 11));
}

TEST_F(SeriesTexts, AnOccurrenceThatOthersDetachedIsPartOfTheFuture) {
  const auto mine = imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART:20240506T090000Z\r\nSUMMARY:a\r\nRRULE:FREQ=DAILY;COUNT=4\r\nEND:"
      "VEVENT\r\n",
      "1");
  const auto second = eventAt(utc(2024, 5, 7, 9));
  const auto other = elsewhere();
  const auto theirs =
      other->eventsMatchingPredicate(other->predicateForEvents(utc(2024, 5, 7), utc(2024, 5, 8), {}))->at(0);
  theirs->setLocation("there");
  std::optional<ek::Error> error;
  ASSERT_TRUE(other->saveEvent(theirs, Span::thisEvent, error));
  second->setTitle("b");
  save(second, Span::futureEvents);
  EXPECT_THAT(titlesOf(*eventsBetween(utc(2024, 5, 1), utc(2024, 6, 1))), ElementsAre("a", "b", "b", "b"));
  EXPECT_EQ(eventAt(utc(2024, 5, 7, 9))->location(), "there");
}

TEST_F(SeriesTexts, NothingIsLeftOfASeriesWithoutRulesAfterItsOccurrencesWereRemoved) {
  imported(
      "BEGIN:VEVENT\r\nUID:1\r\nDTSTART:20240501T090000Z\r\nSUMMARY:a\r\nEND:VEVENT\r\n"
      "BEGIN:VEVENT\r\nUID:1\r\nRECURRENCE-ID:20240501T090000Z\r\nDTSTART:20240501T100000Z\r\nEND:VEVENT\r\n"
      "BEGIN:VEVENT\r\nUID:1\r\nRECURRENCE-ID:20240503T090000Z\r\nDTSTART:20240503T100000Z\r\nEND:VEVENT\r\n",
      "1");
  const auto starts = [this] { return startsOf(*eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1))); };
  ASSERT_THAT(starts(), ElementsAre(utc(2024, 5, 1, 10), utc(2024, 5, 3, 10)));
  for (const std::size_t left : {1U, 0U}) {
    std::optional<ek::Error> error;
    EXPECT_TRUE(store_->removeEvent(eventAt(starts().front()), Span::thisEvent, error));
    EXPECT_EQ(starts().size(), left);
  }
  EXPECT_FALSE(store_->eventWithIdentifier("1"));
}

TEST_F(SeriesTexts, WhatIsOpenIsThereAfterTheSaveThatChangesTheFuture) {
  const std::string text =
      "DTSTART:20240506T090000Z\r\nSUMMARY:a\r\nRRULE:FREQ=WEEKLY;COUNT=4\r\nRDATE:20240515T120000Z\r\nEND:"
      "VEVENT\r\n";
  imported("BEGIN:VEVENT\r\nUID:1\r\n" + text, "1");
  const auto extra = eventAt(utc(2024, 5, 15, 12));
  extra->setRecurrenceRules(
      {{.frequency = ek::RecurrenceFrequency::daily, .end = ek::RecurrenceEnd::withOccurrenceCount(2)}});
  save(extra, Span::futureEvents);
  EXPECT_THAT(
      startsOf(*eventsBetween(utc(2024, 5, 1), utc(2025, 1, 1))),
      ElementsAre(utc(2024, 5, 6, 9), utc(2024, 5, 13, 9), utc(2024, 5, 15, 12), utc(2024, 5, 16, 12)));

  const auto third = eventAt(utc(2024, 5, 16, 12));
  const auto other = elsewhere();
  std::optional<ek::Error> error;
  const auto theirs =
      other->eventsMatchingPredicate(other->predicateForEvents(utc(2024, 5, 16), utc(2024, 5, 17), {}))
          ->at(0);
  ASSERT_TRUE(other->removeEvent(theirs, Span::thisEvent, error));
  third->setTitle("b");
  save(third, Span::futureEvents);
  ASSERT_TRUE(eventAt(utc(2024, 5, 16, 12))) << "saving what was removed elsewhere makes it anew";
  EXPECT_EQ(eventAt(utc(2024, 5, 16, 12))->title(), "b");
}

TEST_F(SeriesTexts, AllDayAndTimedAreExchanged) {
  const auto event = newEvent("a", utc(2024, 5, 1, 7), hours(1));
  event->addRecurrenceRule({.frequency = ek::RecurrenceFrequency::daily,
                            .end = ek::RecurrenceEnd::withEndDate(utc(2024, 5, 3, 7))});
  save(event);
  event->setAllDay(true);
  EXPECT_EQ(event->startDate(), utc(2024, 4, 30, 22));
  EXPECT_THAT(textAfterSave(event, Span::futureEvents),
              AllOf(HasSubstr("DTSTART;VALUE=DATE:20240501\r\n"), HasSubstr("DTEND;VALUE=DATE:20240502\r\n"),
                    HasSubstr("UNTIL=20240503\r\n")));
  EXPECT_EQ(eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1))->size(), 3U);
  event->setAllDay(false);
  EXPECT_EQ(event->endDate(), utc(2024, 5, 1, 21) + minutes(59) + std::chrono::seconds(59));
  save(event, Span::futureEvents);
  EXPECT_THAT(startsOf(*eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1))),
              ElementsAre(utc(2024, 4, 30, 22), utc(2024, 5, 1, 22), utc(2024, 5, 2, 22)));
}

TEST_F(SeriesTexts, OnlyWhatRepeatsHasToFitItsInterval) {
  const auto series = newEvent("a", utc(2024, 5, 1, 9));
  series->addRecurrenceRule({.frequency = ek::RecurrenceFrequency::daily});
  save(series);
  const auto longOne = eventAt(utc(2024, 5, 2, 9));
  ASSERT_TRUE(longOne);
  longOne->setEndDate(utc(2024, 5, 4, 9));
  std::optional<ek::Error> error;
  EXPECT_FALSE(store_->saveEvent(longOne, Span::futureEvents, error));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, ek::ErrorCode::durationGreaterThanRecurrence);
  save(longOne, Span::thisEvent);
}

}  // namespace
