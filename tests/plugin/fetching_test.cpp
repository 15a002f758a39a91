#include <functional>
#include <vector>

#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

using Kind = FakePredicate::Kind;

class Fetching : public BackendTest {
 protected:
  std::vector<std::string> titles() const {
    std::vector<std::string> titles;
    for (const auto& calendar : store_.lastPredicate->calendars) titles.push_back(*calendar->title());
    return titles;
  }
  void expectQuery(Kind kind, std::optional<Date> from, std::optional<Date> to) {
    ASSERT_TRUE(store_.lastPredicate);
    EXPECT_EQ(store_.lastPredicate->kind, kind);
    EXPECT_EQ(store_.lastPredicate->from, from);
    EXPECT_EQ(store_.lastPredicate->to, to);
  }

  const Date morning_ = utc(2024, 5, 1, 8);
  const Date evening_ = utc(2024, 5, 1, 20);
};

TEST_F(Fetching, EventsOfTheRangeInAllCalendarsOrTheNamedOnes) {
  store_.addCalendar("Home");
  expectOutcome(backend_.fetchEventsWithStartDate(morning_, evening_, "ignored", std::nullopt), 0);
  expectQuery(Kind::events, morning_, evening_);
  EXPECT_THAT(titles(), testing::ElementsAre("Work", "Home"));
  expectOutcome(backend_.fetchEventsWithModificationDate(evening_, morning_, evening_, {}, "Home\rWork"), 0);
  expectQuery(Kind::events, morning_, evening_);
  EXPECT_THAT(titles(), testing::ElementsAre("Home", "Work"));
}

// An open calendar would limit a fetch without names, were it not forgotten first.
TEST_F(Fetching, TheOpenCalendarIsForgottenBeforeTheCalendarsAreLookedUp) {
  store_.addCalendar("Home");
  ASSERT_EQ(backend_.openCalendarWithTitle("Home"), 0);
  fetchEvents();
  EXPECT_THAT(titles(), testing::ElementsAre("Work", "Home"));
}

TEST_F(Fetching, RemindersByTheShortFetches) {
  const auto expectFetch = [&](const std::function<int()>& fetch, Kind kind, std::optional<Date> from,
                               std::optional<Date> to) {
    openCalendar();
    expectOutcome(fetch(), 0);
    expectQuery(kind, from, to);
    EXPECT_EQ(calendar("title"), "(none)");
    EXPECT_EQ(takeError(), 9065) << "what was open is forgotten";
  };
  const std::optional<Date> none;
  expectFetch([&] { return backend_.fetchRemindersWithCalendars("Chores"); }, Kind::reminders, {}, {});
  expectFetch([&] { return backend_.fetchRemindersUncompleted("Chores"); }, Kind::incomplete, {}, {});
  expectFetch([&] { return backend_.fetchRemindersUncompleted(evening_, "Chores"); }, Kind::incomplete, {},
              evening_);
  expectFetch([&] { return backend_.fetchRemindersCompletedSince(morning_, "Chores"); }, Kind::completed,
              morning_, {});
  expectFetch([&] { return backend_.fetchRemindersCompletedSince(none, "Chores"); }, Kind::completed, {}, {});
}

TEST_F(Fetching, AnUnknownTitleStopsTheFetch) {
  expectOutcome(backend_.fetchEventsWithStartDate({}, {}, {}, "Work\rNowhere"), 9013);
  expectOutcome(backend_.getObjectCount("event"), 9054);
  expectOutcome(backend_.fetchReminders("Nowhere", "open", {}), 9013);
  // These go by what was found alone.
  expectOutcome(backend_.fetchRemindersWithCalendars("Nowhere"), 9004);
  expectOutcome(backend_.fetchRemindersUncompleted("Nowhere"), 9004);
  expectOutcome(backend_.fetchRemindersUncompleted(evening_, "Nowhere"), 9004);
  expectOutcome(backend_.fetchRemindersCompletedSince(evening_, "Nowhere"), 9004);
}

TEST_F(Fetching, AnErrorThatIsStillSetStopsItToo) {
  g_llasterror = 9034;
  EXPECT_EQ(backend_.fetchEventsWithStartDate({}, {}, {}, {}), -1);
  EXPECT_EQ(backend_.fetchReminders({}, {}, {}), -1);
  EXPECT_EQ(takeError(), 9034);
}

TEST_F(Fetching, WithoutCalendarsOrWithoutAQuery) {
  store_.givesNull = true;
  expectOutcome(backend_.fetchEventsWithStartDate({}, {}, {}, {}), 9003);
  expectOutcome(backend_.fetchReminders({}, {}, {}), 9007);
  expectOutcome(backend_.fetchRemindersUncompleted(TextArgument()), 9007);
  expectOutcome(backend_.getObjectCount("reminder"), 9055);
  store_.reset();
  expectOutcome(backend_.fetchEventsWithStartDate({}, {}, {}, {}), 9004);
  expectOutcome(backend_.fetchReminders({}, "open", {}), 9004);
}

TEST_F(Fetching, AStoreThatRaisesIsUnclassifiedWithTheReasonKept) {
  for (const int use : {1, 2}) {
    SCOPED_TRACE(use);
    store_.raiseAt(use);
    expectOutcome(backend_.fetchEventsWithStartDate({}, {}, {}, {}), 9999);
    EXPECT_EQ(backend_.getLastErrorString(), "the store broke");
    EXPECT_EQ(backend_.resetLastErrorString(), 0);
    EXPECT_EQ(backend_.getLastErrorString(), std::nullopt);
    expectOutcome(backend_.getObjectCount("event"), 9054);
  }
}

class Lookups : public BackendTest {
 protected:
  // The titles found; "(nil)" for no array.
  std::vector<std::string> found(TextArgument names, TextArgument type) {
    const std::optional<ek::Calendars> calendars = backend_.calendarArrayFromString(names, type);
    if (!calendars) return {"(nil)"};
    std::vector<std::string> titles;
    for (const auto& calendar : *calendars) titles.push_back(*calendar->title());
    return titles;
  }
};

using testing::ElementsAre;

TEST_F(Lookups, WithoutNamesAllOfTheKindOrTheOpenCalendar) {
  EXPECT_THAT(found({}, "Calendar"), ElementsAre("Work"));
  EXPECT_THAT(found({}, "REMINDERLIST"), ElementsAre("Chores"));
  EXPECT_THAT(found({}, "event"), ElementsAre("(nil)"));
  EXPECT_THAT(found({}, {}), ElementsAre("(nil)"));
  EXPECT_EQ(takeError(), 0);
  ASSERT_EQ(backend_.openReminderListAt(1), 0);
  EXPECT_THAT(found({}, "calendar"), ElementsAre("Chores"));
  EXPECT_THAT(found({}, "event"), ElementsAre("Chores"));
}

TEST_F(Lookups, NamesAreWholeLinesWhateverTheKind) {
  store_.addCalendar("Größe");
  EXPECT_THAT(found("Chores\rGröße\nWork", "calendar"), ElementsAre("Chores", "Größe", "Work"));
  EXPECT_THAT(found("Work\u2028Work", "nothing"), ElementsAre("Work", "Work"));
  EXPECT_EQ(takeError(), 0);
  for (const char* names : {"work", "Work ", "Work\r\nChores", "Work\r", "Gr\u00f6sse", ""}) {
    SCOPED_TRACE(names);
    EXPECT_THAT(found(names, "calendar"), ElementsAre("(nil)"));
    EXPECT_EQ(takeError(), 9013);
  }
  store_.addCalendar("");
  EXPECT_THAT(found("Work\r\nChores", "calendar"), ElementsAre("Work", "", "Chores"));
}

TEST_F(Lookups, AnEventCalendarIsFoundBeforeAListOfTheSameTitle) {
  store_.addCalendar("Both", ek::EntityType::reminder);
  const auto calendar = store_.addCalendar("Both");
  store_.addCalendar("Both");
  EXPECT_EQ(backend_.getCalendarWithTitle("Both"), calendar);
  expectOutcome(backend_.openCalendarWithTitle("Both"), 0);
  EXPECT_EQ(this->calendar("uid"), calendar->identifier);
  EXPECT_EQ(backend_.getCalendarWithTitle("both"), nullptr);
  EXPECT_EQ(takeError(), 9001);
  EXPECT_EQ(this->calendar("uid"), calendar->identifier);
  EXPECT_EQ(backend_.getCalendars(), std::nullopt);
}

TEST_F(Lookups, ColorsByName) {
  EXPECT_EQ(iCalEKFunctions::colorFromString("BROWN"), (ek::Color{0.6, 0.4, 0.2}));
  EXPECT_EQ(iCalEKFunctions::colorFromString("DarkGray"), (ek::Color{1.0 / 3, 1.0 / 3, 1.0 / 3}));
  EXPECT_EQ(iCalEKFunctions::colorFromString("clear"), (ek::Color{0, 0, 0, 0}));
  for (const TextArgument name : {TextArgument("dark gray"), TextArgument("grey"), TextArgument()})
    EXPECT_EQ(iCalEKFunctions::colorFromString(name), std::nullopt);
}

}  // namespace
}  // namespace zuno::test
