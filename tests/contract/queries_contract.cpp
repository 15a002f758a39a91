#include <algorithm>

#include "tests/contract/store_contract.h"

namespace ek::contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_P(StoreContract, AQueryFindsWhatOverlapsItsRange) {
  const Date from = utc(2024, 5, 1, 8);
  const Date to = utc(2024, 5, 1, 12);
  const struct {
    const char* title;
    Date start, end;
    bool found;
  } cases[] = {
      {"long before", from - days(3), from - days(2), false},
      {"ends as it begins", from - hours(1), from, false},
      {"ends a second later", from - hours(1), from + seconds(1), true},
      {"no length, as it begins", from, from, true},
      {"no length, before", from - seconds(1), from - seconds(1), false},
      {"within", from + hours(1), from + hours(2), true},
      {"all around", from - days(400), to + days(400), true},
      {"starts a second before the end", to - seconds(1), to + hours(1), true},
      {"no length, as it ends", to, to, false},
      {"starts as it ends", to, to + hours(1), false},
  };
  std::vector<std::string> expected;
  for (const auto& [title, start, end, found] : cases) {
    addEvent(title, start, end);
    if (found) expected.push_back(title);
  }
  EXPECT_THAT(titlesBetween(from, to), testing::UnorderedElementsAreArray(expected));
}

TEST_P(StoreContract, ARangeOfNoLengthIsAnInstantAndAReversedOneIsEmpty) {
  const Date noon = utc(2024, 5, 1, 12);
  addEvent("around", noon - hours(1), noon + hours(1));
  addEvent("at", noon, noon);
  EXPECT_THAT(titlesBetween(noon, noon), ElementsAre("around", "at"));
  EXPECT_THAT(titlesBetween(noon + hours(1), noon - hours(1)), IsEmpty());
}

TEST_P(StoreContract, EventsComeByStartThenTitleThenInsertion) {
  const Date nine = utc(2024, 5, 1, 9);
  addEvent("b", nine + hours(1));
  const auto first = addEvent("c", nine);
  addEvent("a", nine);
  addEvent("c", nine, nine + hours(5));
  addEvent("B", nine);
  addEvent("z", nine - hours(1));
  for (int run = 0; run < 2; ++run) {
    const auto found = eventsBetween(nine - days(1), nine + days(1));
    EXPECT_THAT(titlesOf(*found), ElementsAre("z", "B", "a", "c", "c", "b"));
    EXPECT_EQ(found->at(3)->eventIdentifier(), first->eventIdentifier());
  }
}

TEST_P(StoreContract, AllTimeReachesFromTheFarPastToTheFarFuture) {
  addEvent("past", utc(1901, 2, 3, 4));
  addEvent("epoch", utc(1970, 1, 1), utc(1970, 1, 1));
  addEvent("over New Year", utc(1999, 12, 31, 12), utc(2000, 1, 1, 12));
  addEvent("a decade", utc(2010, 1, 1), utc(2020, 1, 1));
  addEvent("future", utc(2099, 12, 31));
  EXPECT_THAT(titlesBetween(foundation::distantPast(), foundation::distantFuture()),
              ElementsAre("past", "epoch", "over New Year", "a decade", "future"));
}

TEST_P(StoreContract, ALongRangeHasEachOccurrenceOnce) {
  addSeries("daily", utc(2015, 12, 30, 9), daily(4000));
  const auto starts = startsBetween(utc(2015, 1, 1), utc(2035, 1, 1));
  ASSERT_EQ(starts.size(), 4000U);
  EXPECT_TRUE(std::ranges::is_sorted(starts));
  EXPECT_EQ(std::ranges::adjacent_find(starts), starts.end());
}

TEST_P(StoreContract, AQueryCoversItsCalendarsOnly) {
  const auto work = addCalendar("Work");
  const auto home = addCalendar("Home");
  for (const auto& calendar : {calendar_, work, home}) {
    const auto event = newEvent(*calendar->title(), utc(2024, 5, 1, 9), utc(2024, 5, 1, 10));
    event->setCalendar(calendar);
    save(event);
  }
  EXPECT_THAT(titlesOf(*eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1), {work, calendar_})),
              ElementsAre("Calendar", "Work"));
}

TEST_P(StoreContract, AQuerySeesSavedChangesOfAnyoneWhenItIsRun) {
  const auto predicate = store_->predicateForEvents(utc(2024, 1, 1), utc(2025, 1, 1), {calendar_});
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 0U);
  const auto event = newEvent("Review", utc(2024, 5, 1, 9), utc(2024, 5, 1, 10));
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 0U);
  save(event);
  event->setTitle("not saved yet");
  const auto before = store_->eventsMatchingPredicate(predicate);
  EXPECT_THAT(titlesOf(*before), ElementsAre("Review"));

  const auto other = database_->open();
  const auto theirs = other->eventWithIdentifier(event->eventIdentifier().value());
  theirs->setTitle("Theirs");
  std::optional<Error> error;
  ASSERT_TRUE(other->saveEvent(theirs, Span::thisEvent, error));
  EXPECT_THAT(titlesOf(*store_->eventsMatchingPredicate(predicate)), ElementsAre("Theirs"));

  const auto last = store_->eventsMatchingPredicate(predicate);
  ASSERT_TRUE(other->removeEvent(theirs, Span::thisEvent, error));
  EXPECT_EQ(store_->eventsMatchingPredicate(predicate)->size(), 0U);
  EXPECT_EQ(last->size(), 1U) << "an answer stays as it was given";
  EXPECT_EQ(last->at(0), nullptr) << "but the item has gone";
}

TEST_P(StoreContract, EachPositionGivesAnEventOfItsOwn) {
  addEvent("Review", utc(2024, 5, 1, 9));
  const auto found = eventsIn2024();
  ASSERT_EQ(found->size(), 1U);
  const auto opened = found->at(0);
  opened->setTitle("changed");
  save(opened);
  EXPECT_THAT(titlesIn2024(), ElementsAre("changed"));
}

TEST_P(StoreContract, QueriesOfNobodyOrOfTheOtherKindAreMisuse) {
  const auto reminders = store_->predicateForReminders({list_});
  const auto events = store_->predicateForEvents(utc(2024, 1, 1), utc(2025, 1, 1), {calendar_});
  EXPECT_THROW(store_->eventsMatchingPredicate(nullptr), Exception);
  EXPECT_THROW(store_->eventsMatchingPredicate(reminders), Exception);
  const auto never = [](const auto&) { ADD_FAILURE() << "nothing was asked"; };
  EXPECT_THROW(store_->fetchRemindersMatchingPredicate(nullptr, never), Exception);
  EXPECT_THROW(store_->fetchRemindersMatchingPredicate(events, never), Exception);
}

}  // namespace
}  // namespace ek::contract
