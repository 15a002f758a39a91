// What crosses the bridge: texts, colours, dates, attendees and their addresses.
#include "tests/macos/bridge_fixture.h"

namespace ek::macos {
namespace {

using stand_in::Attendee;

class Values : public BridgeTest {};

TEST_F(Values, OnlyWhatRfc3986AllowsIsAUrl) {
  const auto event = store_->newEvent();
  const struct {
    const char* text;
    bool isUrl;
  } cases[] = {
      {"https://example.org/a?b=c#d", true},
      {"mailto:ann@example.org", true},
      {"a/b?c", true},
      {"https://example.org/%C3%A4", true},
      {"", false},
      {"two words", false},
      {"https://example.org/\u00e4", false},
      {"<https://example.org>", false},
  };
  for (const auto& [text, isUrl] : cases) {
    SCOPED_TRACE(text);
    event->setUrl("https://before.example/");
    event->setUrl(text);
    EXPECT_EQ(event->url(), isUrl ? std::optional<std::string>(text) : std::nullopt);
  }
}

TEST_F(Values, TextsKeepEveryCharacter) {
  const auto event = store_->newEvent();
  for (const std::string text :
       {"\u00e4\u00f6\u00fc \u20ac \U0001F4C5", "e\u0301 and \u00e9", "\tquoted \"text\""}) {
    event->setTitle(text);
    event->setNotes(text);
    EXPECT_EQ(event->title(), text);
    EXPECT_EQ(event->notes(), text);
  }
  event->setNotes("one\n\ntwo\r\n\r\nthree\r");
  EXPECT_EQ(event->notes(), "one\r\rtwo\r\rthree\r");
  event->setNotes({});
  EXPECT_EQ(event->notes(), std::nullopt);
}

TEST_F(Values, EveryShadeOfAColourComesBack) {
  const auto calendar = store_->newCalendar(EntityType::event);
  for (int shade = 0; shade <= 255; shade += 15) {
    calendar->setColor(calibratedColor(shade / 255.0, 0.5, 1, 1));
    ASSERT_TRUE(calendar->color());
    EXPECT_NEAR(calendar->color()->red * 255, shade, 0.01);
  }
}

TEST_F(Values, ADueDateIsGregorianAndKeepsItsZone) {
  const auto reminder = store_->newReminder();
  const foundation::WallTime wall(utc(2024, 12, 31, 23, 59, 58).time_since_epoch());
  for (const char* zone : {"", "America/New_York"}) {
    SCOPED_TRACE(zone);
    reminder->setDueDateComponents(
        DateComponents{.wall = wall, .isDateOnly = false, .zone = foundation::TimeZone::named(zone)});
    const auto due = reminder->dueDateComponents();
    ASSERT_TRUE(due);
    EXPECT_EQ(due->wall, wall);
    EXPECT_EQ(due->zone ? due->zone->name() : "", zone);
  }
  reminder->setDueDateComponents(
      DateComponents{.wall = std::chrono::floor<std::chrono::days>(wall), .isDateOnly = true, .zone = {}});
  EXPECT_TRUE(reminder->dueDateComponents()->isDateOnly);
  reminder->setDueDateComponents({});
  EXPECT_FALSE(reminder->dueDateComponents());
}

TEST_F(Values, AttendeesAndTheirAddressesAreRead) {
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  stand_in::addAttendee(database_, "Review",
                        {.url = "mailto:ann@example.org",
                         .name = "Ann",
                         .status = 4,
                         .role = 3,
                         .type = 1,
                         .street = "Main St 1\nBack door",
                         .city = "Springfield",
                         .region = "IL",
                         .code = "62701",
                         .country = "USA"});
  stand_in::addAttendee(database_, "Review", {.url = "mailto:bob@example.org", .city = "Bern"});
  stand_in::addAttendee(database_, "Review", {.url = "mailto:cid@example.org"});

  const auto attendees = store_->eventWithIdentifier(event->eventIdentifier().value())->attendees();
  ASSERT_EQ(attendees.size(), 3U);
  EXPECT_EQ(attendees[0].url, "mailto:ann@example.org");
  EXPECT_EQ(attendees[0].name, "Ann");
  EXPECT_EQ(attendees[0].status, ParticipantStatus::tentative);
  EXPECT_EQ(attendees[0].role, ParticipantRole::chair);
  EXPECT_EQ(attendees[0].type, ParticipantType::person);
  EXPECT_EQ(attendees[1].name, std::nullopt);

  const auto book = makeAddressBook();
  EXPECT_EQ(book->addressOf(attendees[0]), "Main St 1, Back door, Springfield, IL, 62701, USA");
  EXPECT_EQ(book->addressOf(attendees[1]), "Bern");
  EXPECT_EQ(book->addressOf(attendees[2]), std::nullopt);
  EXPECT_EQ(book->addressOf(Participant{}), std::nullopt);
  stand_in::raiseNext("The book cannot be read.");
  EXPECT_EQ(book->addressOf(attendees[1]), std::nullopt) << "no address, rather than no attendee";
}

TEST_F(Values, ARuleThatEventKitCannotMakeIsNone) {
  EXPECT_EQ(store_->recurrenceRule({.frequency = RecurrenceFrequency::hourly}), std::nullopt);
  const auto event = store_->newEvent();
  EXPECT_THROW(event->addRecurrenceRule({.frequency = RecurrenceFrequency::hourly}), Exception);
  const auto nth = store_->recurrenceRule({.frequency = RecurrenceFrequency::monthly,
                                           .daysOfTheWeek = {{.dayOfTheWeek = 3, .weekNumber = -2}},
                                           .setPositions = {-1}});
  ASSERT_TRUE(nth);
  EXPECT_EQ(nth->daysOfTheWeek.front(), (DayOfWeek{.dayOfTheWeek = 3, .weekNumber = -2}));
  EXPECT_THAT(nth->setPositions, testing::ElementsAre(-1));
}

}  // namespace
}  // namespace ek::macos
