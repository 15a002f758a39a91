#include "tests/contract/store_contract.h"

namespace ek::contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The series here begin on 1 May 2024 at 9:00 UTC.
Date dayOfMay(unsigned day) { return utc(2024, 5, day, 9); }

TEST_P(StoreContract, EveryOccurrenceIsAnEventOfTheSeries) {
  const auto series = addSeries("Standup", dayOfMay(1), daily(3));
  const auto found = eventsIn2024();
  EXPECT_THAT(startsOf(*found), ElementsAre(dayOfMay(1), dayOfMay(2), dayOfMay(3)));
  for (std::size_t i = 0; i < found->size(); ++i) {
    const auto event = found->at(i);
    EXPECT_EQ(event->eventIdentifier(), series->eventIdentifier());
    EXPECT_EQ(event->calendarItemExternalIdentifier(), series->calendarItemExternalIdentifier());
    EXPECT_EQ(event->occurrenceDate(), event->startDate());
    EXPECT_EQ(*event->endDate() - *event->startDate(), hours(1));
    EXPECT_FALSE(event->isDetached());
    EXPECT_EQ(event->recurrenceRules().size(), 1U);
  }
  EXPECT_EQ(reread(series)->startDate(), dayOfMay(1)) << "a look-up gives the first occurrence";
}

TEST_P(StoreContract, ASeriesKeepsItsLocalTimeAcrossAChangeOfClock) {
  // 8:30 in Berlin; summer time begins on 31 March 2024.
  addSeries("Standup", utc(2024, 3, 30, 7, 30), daily(3));
  EXPECT_THAT(startsIn2024(),
              ElementsAre(utc(2024, 3, 30, 7, 30), utc(2024, 3, 31, 6, 30), utc(2024, 4, 1, 6, 30)));
}

TEST_P(StoreContract, ThisChangesOneOccurrence) {
  const auto series = addSeries("Standup", dayOfMay(1), daily(3));
  const auto second = occurrenceAt(dayOfMay(2));
  ASSERT_TRUE(second);
  second->setTitle("Moved");
  second->setStartDate(dayOfMay(2) + hours(3));
  second->setEndDate(dayOfMay(2) + hours(4));
  save(second, Span::thisEvent);
  EXPECT_THAT(titlesIn2024(), ElementsAre("Standup", "Moved", "Standup"));
  EXPECT_THAT(startsIn2024(), ElementsAre(dayOfMay(1), dayOfMay(2) + hours(3), dayOfMay(3)));

  EXPECT_NE(second->eventIdentifier(), series->eventIdentifier());
  const auto detached = reread(second);
  ASSERT_TRUE(detached);
  EXPECT_EQ(detached->title(), "Moved");
  EXPECT_TRUE(detached->isDetached());
  EXPECT_EQ(detached->occurrenceDate(), dayOfMay(2));
  EXPECT_THAT(detached->recurrenceRules(), IsEmpty());
  EXPECT_EQ(reread(series)->title(), "Standup");
}

TEST_P(StoreContract, FutureFromTheFirstOccurrenceChangesTheWholeSeries) {
  const auto series = addSeries("Standup", dayOfMay(1), daily(3));
  const auto opened = store_->eventWithIdentifier(*series->eventIdentifier());
  opened->setTitle("Daily");
  save(opened, Span::futureEvents);
  EXPECT_THAT(titlesIn2024(), ElementsAre("Daily", "Daily", "Daily"));
  EXPECT_EQ(opened->eventIdentifier(), series->eventIdentifier());
}

TEST_P(StoreContract, FutureFromALaterOccurrenceSplitsTheSeries) {
  const auto series = addSeries("Standup", dayOfMay(1), daily(5));
  const auto third = occurrenceAt(dayOfMay(3));
  ASSERT_TRUE(third);
  third->setTitle("Later");
  third->setStartDate(dayOfMay(3) + hours(1));
  third->setEndDate(dayOfMay(3) + hours(2));
  save(third, Span::futureEvents);
  EXPECT_THAT(titlesIn2024(), ElementsAre("Standup", "Standup", "Later", "Later", "Later"));
  EXPECT_THAT(startsIn2024(), ElementsAre(dayOfMay(1), dayOfMay(2), dayOfMay(3) + hours(1),
                                          dayOfMay(4) + hours(1), dayOfMay(5) + hours(1)));
  EXPECT_NE(third->eventIdentifier(), series->eventIdentifier());
  EXPECT_EQ(reread(third)->title(), "Later");
  EXPECT_EQ(reread(series)->title(), "Standup");
}

TEST_P(StoreContract, ARuleMakesAPlainEventASeriesAndWithoutRulesItIsPlainAgain) {
  const auto event = addEvent("Standup", dayOfMay(1));
  event->addRecurrenceRule(daily(3));
  save(event, Span::thisEvent);
  EXPECT_THAT(startsIn2024(), ElementsAre(dayOfMay(1), dayOfMay(2), dayOfMay(3)));
  const auto first = store_->eventWithIdentifier(*event->eventIdentifier());
  first->setRecurrenceRules({});
  EXPECT_THAT(first->recurrenceRules(), IsEmpty());
  save(first, Span::futureEvents);
  EXPECT_THAT(startsIn2024(), ElementsAre(dayOfMay(1)));
  EXPECT_EQ(reread(first)->occurrenceDate(), std::nullopt);
}

TEST_P(StoreContract, WithoutRulesFromALaterOccurrenceOnTheEarlierOnesStay) {
  addSeries("Standup", dayOfMay(1), daily(4));
  const auto third = occurrenceAt(dayOfMay(3));
  ASSERT_TRUE(third);
  third->setRecurrenceRules({});
  save(third, Span::futureEvents);
  if (differs(Topic::clearingRulesFromALaterOccurrence)) {
    EXPECT_THAT(startsIn2024(), ElementsAre(dayOfMay(1)));
  } else {
    EXPECT_THAT(startsIn2024(), ElementsAre(dayOfMay(1), dayOfMay(2), dayOfMay(3)));
  }
}

TEST_P(StoreContract, RemovingTakesOneOccurrenceOrAllFromThereOn) {
  const auto series = addSeries("Standup", dayOfMay(1), daily(5));
  EXPECT_TRUE(remove(occurrenceAt(dayOfMay(2)), Span::thisEvent));
  EXPECT_THAT(startsIn2024(), ElementsAre(dayOfMay(1), dayOfMay(3), dayOfMay(4), dayOfMay(5)));
  EXPECT_TRUE(remove(occurrenceAt(dayOfMay(4)), Span::futureEvents));
  EXPECT_THAT(startsIn2024(), ElementsAre(dayOfMay(1), dayOfMay(3)));
  EXPECT_TRUE(remove(store_->eventWithIdentifier(*series->eventIdentifier()), Span::thisEvent));
  EXPECT_THAT(startsIn2024(), ElementsAre(dayOfMay(3)));
  EXPECT_EQ(reread(series)->startDate(), dayOfMay(3)) << "the first that is left";
  EXPECT_TRUE(remove(occurrenceAt(dayOfMay(3)), Span::thisEvent));
  EXPECT_THAT(startsIn2024(), IsEmpty());
  EXPECT_EQ(reread(series), nullptr) << "a series goes with its last occurrence";
}

TEST_P(StoreContract, RemovingFromTheFirstOccurrenceOnTakesTheSeries) {
  const auto series = addSeries("Standup", dayOfMay(1), daily(5));
  EXPECT_TRUE(remove(store_->eventWithIdentifier(*series->eventIdentifier()), Span::futureEvents));
  EXPECT_THAT(startsIn2024(), IsEmpty());
  EXPECT_EQ(reread(series), nullptr);
}

TEST_P(StoreContract, OccurrencesOfASeriesDoNotCollide) {
  addSeries("Standup", dayOfMay(1), daily(5));
  const auto second = occurrenceAt(dayOfMay(2));
  ASSERT_TRUE(second);
  second->setStartDate(dayOfMay(3));
  second->setEndDate(dayOfMay(3) + hours(1));
  EXPECT_EQ(refusal(second), ErrorCode::startDateCollidesWithOtherOccurrence);
  EXPECT_EQ(startsIn2024().size(), 5U);
}

TEST_P(StoreContract, AnEventIsNoLongerThanItsRepeatInterval) {
  const auto event = newEvent("Retreat", dayOfMay(1), dayOfMay(2) + hours(1));
  event->addRecurrenceRule(daily(5));
  EXPECT_EQ(refusal(event), ErrorCode::durationGreaterThanRecurrence);
  event->setRecurrenceRules({});
  auto everyThirdDay = daily(5);
  everyThirdDay.interval = 3;
  event->addRecurrenceRule(everyThirdDay);
  EXPECT_EQ(refusal(event), std::nullopt);
}

TEST_P(StoreContract, ARuleComesBackFromTheStore) {
  const RecurrenceRule wanted[] = {
      {.frequency = RecurrenceFrequency::weekly,
       .interval = 2,
       .daysOfTheWeek = {DayOfWeek::dayOfWeek(2), DayOfWeek::dayOfWeek(4)},
       .end = RecurrenceEnd::withEndDate(utc(2024, 12, 31, 22, 59, 59))},
      {.frequency = RecurrenceFrequency::monthly, .daysOfTheMonth = {1, 15, -1}},
      {.frequency = RecurrenceFrequency::yearly,
       .monthsOfTheYear = {5, 11},
       .end = RecurrenceEnd::withOccurrenceCount(4)},
  };
  for (const RecurrenceRule& asked : wanted) {
    SCOPED_TRACE(static_cast<int>(asked.frequency));
    const auto rule = store_->recurrenceRule(asked);
    ASSERT_TRUE(rule);
    const auto series = addSeries("Series", dayOfMay(1), *rule);
    const auto rules = reread(series)->recurrenceRules();
    ASSERT_EQ(rules.size(), 1U);
    EXPECT_EQ(rules.front(), *rule);
  }
}

TEST_P(StoreContract, AnotherRuleJoinsTheOneThatIsThere) {
  const auto event = addEvent("Standup", dayOfMay(1));
  const RecurrenceRule yearly = {.frequency = RecurrenceFrequency::yearly};
  event->addRecurrenceRule(daily(5));
  event->addRecurrenceRule(yearly);
  if (differs(Topic::severalRules)) {
    ASSERT_EQ(event->recurrenceRules().size(), 1U);
    EXPECT_EQ(event->recurrenceRules().front().frequency, RecurrenceFrequency::yearly);
  } else {
    ASSERT_EQ(event->recurrenceRules().size(), 2U);
    EXPECT_EQ(event->recurrenceRules().front().frequency, RecurrenceFrequency::daily);
  }
  save(event);
  const auto opened = store_->eventWithIdentifier(*event->eventIdentifier());
  const auto rules = opened->recurrenceRules();
  EXPECT_EQ(rules.size(), event->recurrenceRules().size());
  for (const RecurrenceRule& rule : rules) opened->removeRecurrenceRule(rule);
  EXPECT_THAT(opened->recurrenceRules(), IsEmpty());
}

TEST_P(StoreContract, ARuleIsCompletedOrRefusedWhenItIsMade) {
  const DayOfWeek monday = DayOfWeek::dayOfWeek(2);
  const auto made = [this](const RecurrenceRule& wanted) { return store_->recurrenceRule(wanted); };
  const auto dailyRule = made({.frequency = RecurrenceFrequency::daily,
                               .interval = 2,
                               .daysOfTheWeek = {monday},
                               .daysOfTheMonth = {40}});
  ASSERT_TRUE(dailyRule);
  EXPECT_THAT(dailyRule->daysOfTheWeek, IsEmpty());
  EXPECT_THAT(dailyRule->daysOfTheMonth, IsEmpty());
  EXPECT_EQ(dailyRule->firstDayOfTheWeek, 0);
  const auto yearlyRule =
      made({.frequency = RecurrenceFrequency::yearly, .daysOfTheMonth = {1}, .monthsOfTheYear = {12}});
  ASSERT_TRUE(yearlyRule);
  EXPECT_THAT(yearlyRule->daysOfTheMonth, IsEmpty());
  EXPECT_THAT(yearlyRule->monthsOfTheYear, ElementsAre(12));
  EXPECT_EQ(made({.frequency = RecurrenceFrequency::weekly})->firstDayOfTheWeek, 0);
  EXPECT_EQ(made({.frequency = RecurrenceFrequency::weekly, .interval = 2})->firstDayOfTheWeek, 2);

  EXPECT_EQ(made({.frequency = RecurrenceFrequency::monthly, .daysOfTheMonth = {32}}), std::nullopt);
  EXPECT_EQ(made({.frequency = RecurrenceFrequency::monthly, .daysOfTheMonth = {0}}), std::nullopt);
  EXPECT_EQ(made({.frequency = RecurrenceFrequency::yearly, .monthsOfTheYear = {13}}), std::nullopt);
  EXPECT_THROW(made({.frequency = RecurrenceFrequency::daily, .interval = 0}), Exception);
  EXPECT_THROW(made({.frequency = RecurrenceFrequency::weekly,
                     .daysOfTheWeek = {{.dayOfTheWeek = 2, .weekNumber = 1}}}),
               Exception);
}

}  // namespace
}  // namespace ek::contract
