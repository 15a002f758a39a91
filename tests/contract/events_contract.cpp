#include "tests/contract/store_contract.h"

namespace ek::contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST_P(StoreContract, ANewEventIsEmpty) {
  const auto event = store_->newEvent();
  EXPECT_EQ(event->calendar(), nullptr);
  EXPECT_EQ(event->eventIdentifier(), std::nullopt);
  EXPECT_NE(event->calendarItemIdentifier(), "");
  EXPECT_EQ(event->title().value_or(""), "");
  EXPECT_EQ(event->startDate(), std::nullopt);
  EXPECT_EQ(event->endDate(), std::nullopt);
  EXPECT_FALSE(event->isAllDay());
  EXPECT_FALSE(event->isDetached());
  EXPECT_EQ(event->occurrenceDate(), std::nullopt);
  EXPECT_EQ(event->creationDate(), std::nullopt);
  EXPECT_EQ(event->lastModifiedDate(), std::nullopt);
  EXPECT_THAT(event->alarms(), IsEmpty());
  EXPECT_THAT(event->attendees(), IsEmpty());
  EXPECT_THAT(event->recurrenceRules(), IsEmpty());
}

TEST_P(StoreContract, AnEventNeedsACalendarAStartAndAnEndInThatOrder) {
  const auto event = store_->newEvent();
  event->setTitle("Review");
  EXPECT_EQ(refusal(event), ErrorCode::noCalendar);
  event->setCalendar(list_);
  event->setStartDate(utc(2024, 5, 1, 9));
  event->setEndDate(utc(2024, 5, 1, 10));
  EXPECT_EQ(refusal(event), ErrorCode::calendarDoesNotAllowEvents);
  event->setCalendar(calendar_);
  event->setStartDate({});
  event->setEndDate({});
  EXPECT_EQ(refusal(event), ErrorCode::noStartDate);
  event->setStartDate(utc(2024, 5, 1, 9));
  EXPECT_EQ(refusal(event), ErrorCode::noEndDate);
  event->setEndDate(utc(2024, 5, 1, 8, 59, 59));
  EXPECT_EQ(refusal(event), ErrorCode::datesInverted);
  EXPECT_EQ(event->eventIdentifier(), std::nullopt) << "nothing was saved so far";
  event->setEndDate(event->startDate());
  EXPECT_EQ(refusal(event), std::nullopt);
  EXPECT_TRUE(event->eventIdentifier());
}

TEST_P(StoreContract, EveryFieldOfAnEventComesBack) {
  const auto event =
      newEvent("Besprechung \u00e4\u00f6\u00fc \U0001F4C5", utc(2024, 5, 1, 9), utc(2024, 5, 1, 10, 30));
  event->setLocation("Raum 3; \"Nord\", 2. Stock");
  event->setNotes("one\rtwo\nthree\r\nfour\\n,;");
  event->setUrl("https://example.org/a?b=c&d=%20e#f");
  const Date before = std::chrono::floor<seconds>(std::chrono::system_clock::now());
  save(event);
  const auto read = reread(event);
  ASSERT_TRUE(read);
  EXPECT_THAT(read->title(), Optional(std::string("Besprechung \u00e4\u00f6\u00fc \U0001F4C5")));
  EXPECT_THAT(read->location(), Optional(std::string("Raum 3; \"Nord\", 2. Stock")));
  EXPECT_THAT(read->notes(), Optional(std::string("one\rtwo\rthree\rfour\\n,;")));
  EXPECT_THAT(read->url(), Optional(std::string("https://example.org/a?b=c&d=%20e#f")));
  EXPECT_EQ(read->startDate(), utc(2024, 5, 1, 9));
  EXPECT_EQ(read->endDate(), utc(2024, 5, 1, 10, 30));
  EXPECT_FALSE(read->isAllDay());
  EXPECT_TRUE(read->timeZoneAbbreviation());
  EXPECT_EQ(read->calendar()->calendarIdentifier(), calendar_->calendarIdentifier());
  ASSERT_TRUE(read->creationDate() && read->lastModifiedDate());
  EXPECT_GE(*read->creationDate(), before);
  EXPECT_LE(*read->creationDate(), *read->lastModifiedDate());

  read->setTitle({});
  EXPECT_EQ(event->title(), "Besprechung \u00e4\u00f6\u00fc \U0001F4C5") << "an opened event is a snapshot";
}

TEST_P(StoreContract, AFieldCanBeEmptiedAgain) {
  const auto event = newEvent("Review", utc(2024, 5, 1, 9), utc(2024, 5, 1, 10));
  event->setLocation("Room 1");
  event->setNotes("Bring the slides");
  event->setUrl("https://example.org/");
  save(event);
  event->setLocation({});
  event->setNotes({});
  event->setUrl("not a valid url");
  save(event);
  const auto read = reread(event);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->location().value_or(""), "");
  EXPECT_EQ(read->notes().value_or(""), "");
  EXPECT_EQ(read->url(), std::nullopt);
}

TEST_P(StoreContract, NothingToDoIsNeitherDoneNorRefused) {
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  std::optional<Error> error;
  EXPECT_FALSE(store_->saveEvent(event, Span::thisEvent, error));
  EXPECT_EQ(error, std::nullopt);
  event->setTitle("Retrospective");
  EXPECT_TRUE(store_->saveEvent(event, Span::thisEvent, error));
  EXPECT_FALSE(store_->saveEvent(event, Span::futureEvents, error));
  EXPECT_EQ(error, std::nullopt);

  const auto neverSaved = newEvent("Idea", utc(2024, 5, 2), utc(2024, 5, 3));
  EXPECT_FALSE(store_->removeEvent(neverSaved, Span::thisEvent, error));
  EXPECT_EQ(error, std::nullopt);
}

TEST_P(StoreContract, AnEventAnswersToEachOfItsIdentifiers) {
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  const auto other = database_->open();
  const std::string identifiers[] = {event->eventIdentifier().value(), event->calendarItemIdentifier(),
                                     event->calendarItemExternalIdentifier().value()};
  for (const std::string& identifier : identifiers) {
    SCOPED_TRACE(identifier);
    const auto asEvent = other->eventWithIdentifier(identifier);
    ASSERT_TRUE(asEvent);
    EXPECT_EQ(asEvent->title(), "Review");
    EXPECT_EQ(asEvent->eventIdentifier(), event->eventIdentifier());
    const auto asItem = other->calendarItemWithIdentifier(identifier);
    ASSERT_TRUE(asItem);
    EXPECT_EQ(asItem->title(), "Review");
    EXPECT_THROW(asReminder(*asItem), Exception);
  }
  for (const char* unknown : {"", "no such event"}) {
    EXPECT_EQ(store_->eventWithIdentifier(unknown), nullptr);
    EXPECT_EQ(store_->calendarItemWithIdentifier(unknown), nullptr);
  }
}

TEST_P(StoreContract, EventsOfNobodyOrOfAnotherStoreAreMisuse) {
  std::optional<Error> error;
  EXPECT_THROW(store_->saveEvent(nullptr, Span::thisEvent, error), Exception);
  EXPECT_THROW(store_->removeEvent(nullptr, Span::thisEvent, error), Exception);
  const auto elsewhere = GetParam().make();
  const auto foreign = elsewhere->open()->newEvent();
  foreign->setTitle("Foreign");
  EXPECT_THROW(store_->saveEvent(foreign, Span::thisEvent, error), Exception);
}

TEST_P(StoreContract, ARemovedEventIsGoneUntilItIsSavedAgain) {
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  const auto openedElsewhere = reread(event);
  std::optional<Error> error;
  EXPECT_TRUE(store_->removeEvent(event, Span::thisEvent, error));
  EXPECT_EQ(reread(openedElsewhere), nullptr);
  EXPECT_THAT(titlesIn2024(), IsEmpty());
}

TEST_P(StoreContract, SavingWhatWasRemovedElsewhereMakesItAnew) {
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  const auto other = database_->open();
  std::optional<Error> error;
  ASSERT_TRUE(other->removeEvent(other->eventWithIdentifier(event->eventIdentifier().value()),
                                 Span::thisEvent, error));
  event->setTitle("Again");
  save(event);
  EXPECT_THAT(titlesIn2024(), ElementsAre("Again"));
}

TEST_P(StoreContract, ASaveKeepsWhatOthersChangedInOtherFields) {
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  const auto other = database_->open();
  const auto theirs = other->eventWithIdentifier(event->eventIdentifier().value());
  theirs->setLocation("Room 1");
  std::optional<Error> error;
  ASSERT_TRUE(other->saveEvent(theirs, Span::thisEvent, error));
  event->setTitle("Retrospective");
  save(event);
  const auto read = reread(event);
  EXPECT_EQ(read->title(), "Retrospective");
  EXPECT_EQ(read->location(), "Room 1");
}

TEST_P(StoreContract, AnEventMovesToAnotherCalendar) {
  const auto work = addCalendar("Work");
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  event->setCalendar(work);
  save(event);
  EXPECT_EQ(eventsIn2024()->size(), 0U);
  EXPECT_EQ(eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1), {work})->size(), 1U);
  EXPECT_EQ(reread(event)->calendar()->title(), "Work");
}

TEST_P(StoreContract, AnAllDayEventCoversWholeLocalDays) {
  // Berlin is two hours ahead in May.
  const struct {
    const char* why;
    Date start, end, readsStart, readsEnd;
  } cases[] = {
      {"times of day are dropped", utc(2024, 5, 1, 7), utc(2024, 5, 2, 9), utc(2024, 4, 30, 22),
       utc(2024, 5, 2, 21, 59, 59)},
      {"the next midnight ends the day before", utc(2024, 4, 30, 22), utc(2024, 5, 1, 22),
       utc(2024, 4, 30, 22), utc(2024, 5, 1, 21, 59, 59)},
      {"one midnight is one day", utc(2024, 4, 30, 22), utc(2024, 4, 30, 22), utc(2024, 4, 30, 22),
       utc(2024, 5, 1, 21, 59, 59)},
  };
  for (const auto& [why, start, end, readsStart, readsEnd] : cases) {
    SCOPED_TRACE(why);
    const auto event = newEvent(why, start, end);
    event->setAllDay(true);
    save(event);
    const auto read = reread(event);
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->isAllDay());
    EXPECT_EQ(read->startDate(), readsStart);
    EXPECT_EQ(read->endDate(), readsEnd);
    EXPECT_EQ(read->timeZoneAbbreviation(), std::nullopt);
  }
}

}  // namespace
}  // namespace ek::contract
