#include <fstream>

#include "tests/store/store_fixture.h"

namespace {

class UnusableStore : public zuno_test::StoreFixture {};

TEST_F(UnusableStore, IsEmptyAndRefusesSavesButMakesNewItems) {
  std::ofstream(path()) << "this is no database, and it is long enough to be taken for none at all";
  testing::internal::CaptureStderr();
  EXPECT_TRUE(store_->calendarsForEntityType(ek::EntityType::event).empty());
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(store_->defaultCalendarForNewEvents(), nullptr);
  EXPECT_EQ(store_->eventWithIdentifier("x"), nullptr);
  EXPECT_EQ(store_->calendarItemWithIdentifier("x"), nullptr);
  EXPECT_EQ(eventsBetween(foundation::distantPast(), foundation::distantFuture())->size(), 0U);
  EXPECT_THROW(store_->eventsMatchingPredicate(nullptr), ek::Exception);

  const auto event = store_->newEvent();
  event->setTitle("kept in hand");
  EXPECT_EQ(event->title(), "kept in hand");
  EXPECT_EQ(event->calendar(), nullptr);
  std::optional<ek::Error> error;
  EXPECT_FALSE(store_->saveEvent(event, ek::Span::thisEvent, error));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, ek::ErrorCode::eventStoreNotAuthorized);
  error.reset();
  EXPECT_FALSE(store_->saveReminder(store_->newReminder(), error));
  EXPECT_TRUE(error);
}

TEST_F(UnusableStore, AnotherFileInItsPlaceIsTheStoreFromThenOn) {
  const auto event = newEvent("first", utc(2024, 5, 1, 9));
  save(event);
  const auto given = eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1));
  for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(path() + suffix);
  const auto fresh = newEvent("second", utc(2024, 5, 2, 9));
  fresh->setCalendar(nullptr);
  std::optional<ek::Error> error;
  EXPECT_FALSE(store_->saveEvent(fresh, ek::Span::thisEvent, error)) << "looks where it writes";
  fresh->setCalendar(store_->defaultCalendarForNewEvents());
  save(fresh);
  EXPECT_EQ(given->at(0), nullptr);
  const auto found = eventsBetween(utc(2024, 1, 1), utc(2025, 1, 1));
  EXPECT_THAT(titlesOf(*found), testing::ElementsAre("second"));
}

}  // namespace
