#include "tests/contract/store_contract.h"

namespace ek::contract {
namespace {

using testing::ElementsAre;
using testing::Optional;

std::vector<std::string> titlesOf(const Calendars& calendars) {
  std::vector<std::string> titles;
  for (const auto& calendar : calendars) titles.push_back(calendar->title().value_or("(none)"));
  return titles;
}

TEST_P(StoreContract, BeginsWithOneCalendarOfEachKindAsTheDefault) {
  constexpr struct {
    EntityType type;
    const char* title;
  } kinds[] = {{EntityType::event, "Calendar"}, {EntityType::reminder, "Reminders"}};
  for (const auto& [type, title] : kinds) {
    SCOPED_TRACE(title);
    const Calendars calendars = store_->calendarsForEntityType(type);
    ASSERT_EQ(calendars.size(), 1U);
    const Calendar& only = *calendars.front();
    EXPECT_THAT(only.title(), Optional(std::string(title)));
    EXPECT_EQ(only.type(), CalendarType::local);
    EXPECT_TRUE(only.allowsContentModifications());
    EXPECT_FALSE(only.isImmutable());
    EXPECT_FALSE(only.isSubscribed());
    EXPECT_TRUE(only.source().has_value());
    const auto found = store_->calendarWithIdentifier(only.calendarIdentifier());
    ASSERT_TRUE(found);
    EXPECT_EQ(found->title(), only.title());
    const auto standard = type == EntityType::event ? calendar_ : list_;
    ASSERT_TRUE(standard);
    EXPECT_EQ(standard->calendarIdentifier(), only.calendarIdentifier());
  }
}

TEST_P(StoreContract, ACalendarIsListedOnceItIsSaved) {
  const auto fresh = store_->newCalendar(EntityType::event);
  EXPECT_NE(fresh->calendarIdentifier(), "");
  EXPECT_EQ(fresh->title().value_or(""), "");
  EXPECT_EQ(fresh->color(), std::nullopt);
  EXPECT_EQ(fresh->source(), std::nullopt);
  EXPECT_EQ(fresh->type(), CalendarType::local);
  fresh->setTitle("Dienst");
  EXPECT_EQ(refusal(fresh), ErrorCode::calendarHasNoSource);
  EXPECT_THAT(titlesOf(store_->calendarsForEntityType(EntityType::event)), ElementsAre("Calendar"));

  fresh->setSource(calendar_->source());
  fresh->setColor(calibratedColor(1, 0.5, 0, 1));
  EXPECT_EQ(refusal(fresh), std::nullopt);
  addCalendar("Dienst");
  addCalendar("Anderes");
  const Calendars seen = database_->open()->calendarsForEntityType(EntityType::event);
  EXPECT_THAT(titlesOf(seen), ElementsAre("Calendar", "Dienst", "Dienst", "Anderes"));
  EXPECT_EQ(seen[1]->calendarIdentifier(), fresh->calendarIdentifier());
  ASSERT_TRUE(seen[1]->color());
  EXPECT_NEAR(seen[1]->color()->red, 1, 0.002);
  EXPECT_NEAR(seen[1]->color()->green, 0.5, 0.002);
  EXPECT_NEAR(seen[1]->color()->blue, 0, 0.002);
  EXPECT_TRUE(seen[2]->color()) << "a calendar saved without a colour gets one";
  EXPECT_THAT(titlesOf(store_->calendarsForEntityType(EntityType::reminder)), ElementsAre("Reminders"));
}

TEST_P(StoreContract, ACalendarChangesForOthersWhenItIsSaved) {
  const auto other = database_->open();
  calendar_->setTitle("Renamed");
  EXPECT_THAT(titlesOf(other->calendarsForEntityType(EntityType::event)), ElementsAre("Calendar"));
  EXPECT_EQ(refusal(calendar_), std::nullopt);
  EXPECT_THAT(titlesOf(other->calendarsForEntityType(EntityType::event)), ElementsAre("Renamed"));

  std::optional<Error> error;
  EXPECT_TRUE(store_->saveCalendar(calendar_, error)) << "nothing to do is no failure for calendars";
}

TEST_P(StoreContract, TheAccountOfACalendarStays) {
  const auto calendar = addCalendar("Work");
  calendar->setSource(calendar_->source());
  EXPECT_EQ(refusal(calendar), std::nullopt) << "the same one again is no change";
  calendar->setSource(Source{.identifier = "elsewhere", .type = SourceType::calDAV, .title = "Elsewhere"});
  EXPECT_EQ(refusal(calendar), ErrorCode::calendarSourceCannotBeModified);
}

TEST_P(StoreContract, RemovingACalendarTakesItsItemsAlong) {
  const auto work = addCalendar("Work");
  const auto event = newEvent("Review", utc(2024, 5, 1, 9), utc(2024, 5, 1, 10));
  event->setCalendar(work);
  save(event);
  std::optional<Error> error;
  EXPECT_TRUE(store_->removeCalendar(work, error));
  EXPECT_EQ(reread(event), nullptr);
  EXPECT_EQ(store_->calendarWithIdentifier(work->calendarIdentifier()), nullptr);
}

TEST_P(StoreContract, TheLastCalendarOfItsKindStays) {
  addCalendar("A second list", EntityType::reminder);
  std::optional<Error> error;
  EXPECT_FALSE(store_->removeCalendar(calendar_, error)) << "a list is no event calendar";
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, ErrorCode::calendarIsImmutable);

  const auto next = addCalendar("Next");
  error.reset();
  EXPECT_TRUE(store_->removeCalendar(calendar_, error));
  const auto standard = store_->defaultCalendarForNewEvents();
  ASSERT_TRUE(standard);
  EXPECT_EQ(standard->calendarIdentifier(), next->calendarIdentifier());
}

TEST_P(StoreContract, CalendarsOfNobodyOrOfAnotherStoreAreMisuse) {
  std::optional<Error> error;
  EXPECT_THROW(store_->saveCalendar(nullptr, error), Exception);
  EXPECT_THROW(store_->removeCalendar(nullptr, error), Exception);
  const auto elsewhere = GetParam().make();
  const auto foreign = elsewhere->open()->defaultCalendarForNewEvents();
  EXPECT_THROW(store_->saveCalendar(foreign, error), Exception);
  EXPECT_EQ(store_->calendarWithIdentifier("no such calendar"), nullptr);
  EXPECT_EQ(store_->calendarWithIdentifier(""), nullptr);
}

}  // namespace
}  // namespace ek::contract
