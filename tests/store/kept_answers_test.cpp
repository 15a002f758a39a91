#include <SQLiteCpp/Database.h>
#include <random>
#include <tuple>

#include "eventkit/embedded/storage/calendar_table.h"
#include "eventkit/embedded/store/calendar_directory.h"
#include "foundation/time_zone.h"
#include "tests/store/store_fixture.h"

namespace {

using ek::RecurrenceRule;
using ek::Span;
using testing::ElementsAre;
using testing::IsEmpty;
using zuno_test::Date;
using zuno_test::days;
using zuno_test::hours;
using zuno_test::seconds;

RecurrenceRule daily(std::int64_t count) {
  return {.frequency = ek::RecurrenceFrequency::daily, .end = ek::RecurrenceEnd::withOccurrenceCount(count)};
}

class KeptAnswers : public zuno_test::StoreFixture {
 protected:
  std::shared_ptr<const ek::Predicate> may_ =
      store_->predicateForEvents(utc(2024, 5, 1), utc(2024, 6, 1), {});

  std::shared_ptr<const ek::EventList> ask() { return store_->eventsMatchingPredicate(may_); }
  std::vector<std::string> titles() { return titlesOf(*ask()); }
  // The same question, asked where nothing is kept.
  std::vector<std::string> titlesElsewhere() {
    const auto store = elsewhere();
    return titlesOf(
        *store->eventsMatchingPredicate(store->predicateForEvents(utc(2024, 5, 1), utc(2024, 6, 1), {})));
  }
};

TEST_F(KeptAnswers, NothingChangedGivesTheSameAnswer) {
  save(newEvent("a", utc(2024, 5, 1, 9)));
  const auto first = ask();
  EXPECT_EQ(ask(), first);
  EXPECT_EQ(store_->eventsMatchingPredicate(store_->predicateForEvents(utc(2024, 5, 1), utc(2024, 6, 1), {})),
            first)
      << "another predicate of the same conditions";
}

// The answer is put in order by the first position that is asked for, and stays so from then on, whoever
// changes what: events come and go, begin and cease to repeat, leave the range and come back into it.
TEST_F(KeptAnswers, StayInOrderWhateverChanges) {
  std::mt19937 random(7);
  const auto dice = [&](unsigned sides) { return static_cast<int>(random() % sides); };
  const auto anyTitle = [&] { return std::string(1, static_cast<char>('a' + dice(4))); };
  const auto anyStart = [&] { return utc(2024, 5, 1) + days(dice(35) - 2); };
  for (int i = 0; i < 12; ++i) {
    const auto event = newEvent(anyTitle(), anyStart());
    if (i % 2 == 0) event->addRecurrenceRule(daily(1 + dice(12)));
    save(event);
  }
  const auto other = elsewhere();
  const auto occurrences = [&](ek::EventStore& store) {
    const auto all =
        store.eventsMatchingPredicate(store.predicateForEvents(utc(2024, 5, 1), utc(2024, 6, 1), {}));
    std::vector<std::tuple<std::optional<Date>, std::string, std::string>> found;
    for (std::size_t i = 0; i < all->size(); ++i)
      found.emplace_back(all->at(i)->startDate(), *all->at(i)->title(), *all->at(i)->eventIdentifier());
    return found;
  };
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE(round);
    ASSERT_GT(ask()->size(), 0U);
    ek::EventStore& editor = dice(2) == 0 ? *store_ : *other;
    const auto all =
        editor.eventsMatchingPredicate(editor.predicateForEvents(utc(2024, 4, 25), utc(2024, 6, 7), {}));
    const int edit = dice(10);
    const auto event = edit == 9 ? editor.newEvent() : all->at(random() % all->size());
    const Span span = dice(4) == 0 ? Span::futureEvents : Span::thisEvent;
    std::optional<ek::Error> refused;  // where two occurrences would meet
    if (edit == 0 && all->size() > 20) {
      editor.removeEvent(event, span, refused);
    } else {
      if (edit == 9) event->setCalendar(editor.defaultCalendarForNewEvents());
      if (edit == 9) event->setStartDate(anyStart());
      if (edit < 4 || edit == 9) event->setTitle(anyTitle() + (edit == 1 ? "x" : ""));
      if (edit == 8) event->setRecurrenceRules({});
      if (edit == 8 && dice(2) == 0) event->addRecurrenceRule(daily(1 + dice(12)));
      if (edit > 3 && edit < 8)
        event->setStartDate(*event->startDate() + hours(dice(5) - 2) * (dice(2) == 0 ? 24 : 1));
      event->setEndDate(*event->startDate() + hours(1));
      event->setLocation(std::to_string(round));
      editor.saveEvent(event, span, refused);
    }
    ASSERT_EQ(occurrences(*store_), occurrences(*elsewhere()));
  }
}

TEST_F(KeptAnswers, MoreChangesThanAreWorthFollowing) {
  save(newEvent("before", utc(2024, 5, 1, 9)));
  EXPECT_EQ(titles().size(), 1U);
  for (int i = 0; i < 300; ++i)
    import("BEGIN:VEVENT\r\nUID:" + std::to_string(i) + "\r\nDTSTART:20240502T090000Z\r\nSUMMARY:x\r\n" +
           (i % 2 == 0 ? "RRULE:FREQ=DAILY;COUNT=2\r\n" : "") + "END:VEVENT\r\n");
  EXPECT_EQ(ask()->size(), 1U + 150 + 150 * 2);
}

TEST_F(KeptAnswers, ThatAreOlderThanTheMarksOfRemovedItemsAreReadAnew) {
  for (const char* title : {"a", "b", "c"}) save(newEvent(title, utc(2024, 5, 1, 9)));
  EXPECT_THAT(titles(), ElementsAre("a", "b", "c"));
  const auto day = eventsBetween(utc(2024, 5, 1), utc(2024, 5, 2));
  remove(day->at(0), Span::thisEvent);
  ek::embedded::Database::shared(path())->connection().exec("UPDATE counter SET change = change + 10000");
  remove(day->at(1), Span::thisEvent);
  ASSERT_EQ(ask()->size(), 1U);
  EXPECT_THAT(titles(), ElementsAre("c"));
}

TEST_F(KeptAnswers, AnAnswerThatWasGivenStays) {
  const auto event = newEvent("a", utc(2024, 5, 1, 9));
  save(event);
  const auto series = newEvent("s", utc(2024, 5, 2, 9));
  series->addRecurrenceRule(daily(3));
  save(series);
  const auto given = ask();
  ASSERT_EQ(given->size(), 4U);

  event->setTitle("z");
  save(event);
  remove(given->at(2), Span::thisEvent);
  EXPECT_EQ(given->size(), 4U);
  ASSERT_TRUE(given->at(0));
  EXPECT_EQ(given->at(0)->title(), "z") << "the event as it is now";
  EXPECT_EQ(given->at(2), nullptr) << "no occurrence any more";
  ASSERT_TRUE(given->at(3));
  EXPECT_EQ(given->at(3)->startDate(), utc(2024, 5, 4, 9));
  EXPECT_EQ(given->at(4), nullptr);
  EXPECT_THAT(titles(), ElementsAre("z", "s", "s"));
}

TEST_F(KeptAnswers, AllDayEventsFollowTheDefaultZone) {
  const auto event = newEvent("holiday", utc(2024, 5, 31, 10));
  event->setAllDay(true);
  save(event);
  const auto predicate = store_->predicateForEvents(utc(2024, 5, 30, 12), utc(2024, 5, 30, 20), {});
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 0U);
  zone_.set("Pacific/Auckland");
  const auto found = store_->eventsMatchingPredicate(predicate);
  ASSERT_EQ(found->size(), 1U) << "31 May begins at noon of the 30th there";
  EXPECT_EQ(found->at(0)->startDate(), utc(2024, 5, 30, 12));
  zone_.set("Europe/Berlin");
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 0U);
}

TEST_F(KeptAnswers, ACalendarMoreIsOneMoreToAsk) {
  save(newEvent("first", utc(2024, 5, 1, 9)));
  EXPECT_EQ(ask()->size(), 1U);
  const auto work = store_->newCalendar(ek::EntityType::event);
  work->setSource(store_->defaultCalendarForNewEvents()->source());
  std::optional<ek::Error> error;
  ASSERT_TRUE(store_->saveCalendar(work, error));
  const auto event = newEvent("second", utc(2024, 5, 2, 9));
  event->setCalendar(work);
  save(event);
  EXPECT_THAT(titles(), ElementsAre("first", "second"));
  ASSERT_TRUE(store_->removeCalendar(work, error));
  EXPECT_THAT(titles(), ElementsAre("first"));
}

TEST_F(KeptAnswers, EndlessSeriesAreFollowedForTenYears) {
  const auto series = newEvent("yearly", utc(1990, 1, 1, 12));
  series->addRecurrenceRule({.frequency = ek::RecurrenceFrequency::yearly});
  save(series);
  const auto berlin = foundation::TimeZone::named("Europe/Berlin");
  const int thisYear = foundation::fieldsOf(berlin->wallTimeOf(foundation::now())).year;
  const auto all = eventsBetween(foundation::distantPast(), foundation::distantFuture());
  EXPECT_EQ(all->size(), static_cast<std::size_t>(thisYear + 10 - 1990 + 1));
  const auto later = eventsBetween(utc(2100, 1, 1), utc(2200, 1, 1));
  EXPECT_EQ(later->size(), 10U) << "counted from the start of a range that lies further ahead";
  EXPECT_EQ(eventsBetween(utc(2100, 1, 1), utc(2103, 1, 1))->size(), 3U);
}

TEST_F(KeptAnswers, RemindersAreKeptUpToDateAsWell) {
  const auto list = store_->defaultCalendarForNewReminders();
  const auto open = store_->predicateForIncompleteReminders(std::nullopt, std::nullopt, {list});
  const auto found = [&] {
    std::vector<std::string> titles;
    store_->fetchRemindersMatchingPredicate(open, [&](const auto& reminders) {
      for (std::size_t i = 0; i < reminders->size(); ++i) titles.push_back(*reminders->at(i)->title());
    });
    return titles;
  };
  // The older of two by its CREATED comes first, although it was imported later.
  import("BEGIN:VTODO\r\nUID:1\r\nSUMMARY:young\r\nCREATED:20240502T000000Z\r\nEND:VTODO\r\n");
  EXPECT_THAT(found(), ElementsAre("young"));
  import("BEGIN:VTODO\r\nUID:2\r\nSUMMARY:old\r\nCREATED:20240501T000000Z\r\nEND:VTODO\r\n");
  EXPECT_THAT(found(), ElementsAre("old", "young"));
  const auto other = elsewhere();
  const auto done = std::dynamic_pointer_cast<ek::Reminder>(other->calendarItemWithIdentifier("1"));
  ASSERT_TRUE(done);
  done->setCompleted(true);
  std::optional<ek::Error> error;
  ASSERT_TRUE(other->saveReminder(done, error));
  EXPECT_THAT(found(), ElementsAre("old"));
  ASSERT_TRUE(other->removeReminder(other->calendarItemWithIdentifier("2"), error));
  EXPECT_THAT(found(), IsEmpty());
}

TEST_F(KeptAnswers, ACalendarsRowOutlivesAChangeByOthersWhileItsSourceIsLookedUp) {
  const auto database = ek::embedded::Database::shared(path());
  ek::embedded::CalendarDirectory directory(*database);
  const ek::embedded::CalendarRow& row = directory.all().front();
  const auto others = elsewhere();
  const auto added = others->newCalendar(ek::EntityType::event);
  added->setSource(others->defaultCalendarForNewEvents()->source());
  std::optional<ek::Error> error;
  ASSERT_TRUE(others->saveCalendar(added, error));
  EXPECT_EQ(directory.sourceOf(row)->title, "Local");
  EXPECT_EQ(row.title, "Calendar");
  EXPECT_EQ(directory.all().size(), 3U);
}

TEST_F(KeptAnswers, AnotherFileInItsPlaceIsTheStoreFromThenOn) {
  const auto event = newEvent("first", utc(2024, 5, 1, 9));
  save(event);
  const auto given = eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1));
  for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(path() + suffix);
  const auto fresh = newEvent("second", utc(2024, 5, 2, 9));
  fresh->setCalendar(nullptr);
  std::optional<ek::Error> error;
  EXPECT_FALSE(store_->saveEvent(fresh, Span::thisEvent, error)) << "looks where it writes";
  fresh->setCalendar(store_->defaultCalendarForNewEvents());
  save(fresh);
  EXPECT_EQ(given->at(0), nullptr);
  const auto found = eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1));
  EXPECT_THAT(titlesOf(*found), ElementsAre("second"));
}

}  // namespace
