#include <cstdlib>

#include "foundation/time_zone.h"
#include "tests/plugin/host_test.h"

namespace zuno::test {
namespace {

class DateArguments : public HostTest {
 protected:
  // The instant that a timestamp typed into a script becomes.
  std::optional<Date> read(const fmhost::Value& value) {
    call("EventsFetch", {value, text(""), text(""), text("")});
    const std::optional<Date> from = store_.lastPredicate->from;
    return from == foundation::distantPast() ? std::nullopt : from;
  }
  Date inTodaysOffset(Date wall) {
    return wall - foundation::TimeZone::defaultZone()->offsetAt(foundation::now());
  }
};

TEST_F(DateArguments, AreWallClockTimeWithTheOffsetOfToday) {
  for (const char* zone : {"GMT", "Europe/Berlin", "Asia/Kolkata", "America/St_Johns", "America/New_York",
                           "Asia/Kathmandu", "Pacific/Marquesas"}) {
    SCOPED_TRACE(zone);
    zone_.set(zone);
    EXPECT_EQ(read(timestamp("1/15/2024 9:30:15 AM")), inTodaysOffset(utc(2024, 1, 15, 9, 30, 15)));
    EXPECT_EQ(read(timestamp("7/15/2024 9:30:15 PM")), inTodaysOffset(utc(2024, 7, 15, 21, 30, 15)));
  }
}

// The rest of the offset is written in seconds, two digits at least: what is neither two digits nor four
// cannot be read back, and two digits are read as minutes.
TEST_F(DateArguments, OffsetsThatTheTemplateCannotTell) {
  const fmhost::Value noon = timestamp("1/15/2024 12:00:00 PM");
  zone_.set("XXX-5:15");
  EXPECT_EQ(read(noon), std::nullopt);
  zone_.set("XXX-5:00:30");
  EXPECT_EQ(read(noon), utc(2024, 1, 15, 6, 30));
  zone_.set("XXX5:30");
  EXPECT_EQ(read(noon), utc(2024, 1, 15, 17, 30));
  zone_.set("XXX0:30");
  EXPECT_EQ(read(noon), utc(2024, 1, 15, 12, 30));
}

TEST_F(DateArguments, WhatIsNoTimestampIsNone) {
  for (const char* written : {"", "soon", "25/25/2024", "1/15/999 12:00:00"}) {
    SCOPED_TRACE(written);
    EXPECT_EQ(read(text(written)), std::nullopt);
  }
  EXPECT_EQ(read(text("1/15/2024 9:00:00")), inTodaysOffset(utc(2024, 1, 15, 9)));
  EXPECT_EQ(read(timestamp("1/15/1000 9:00:00")), inTodaysOffset(utc(1000, 1, 15, 9)));
}

TEST_F(DateArguments, AHostThatFailsToConvertGivesNone) {
  // Sizes and texts of the first argument are read; the timestamp is the fourth call of the host's.
  for (int at = 1; at < 20; ++at) {
    host_.failCall(at, 2);
    try {
      const Answer answer =
          call("EventsFetch", {timestamp("1/15/2024 9:00:00"), text(""), text(""), text("")});
      EXPECT_EQ(answer, kSuccess);
      host_.cancelFailure();
      EXPECT_EQ(store_.lastPredicate->from, foundation::distantPast());
      return;
    } catch (const std::exception&) {
      host_.cancelFailure();
    }
  }
  FAIL() << "no failure was taken for a date that is not there";
}

class Properties : public HostTest {};

TEST_F(Properties, TheSubPropertyEndDateMakesATimestampOfAnyValue) {
  const auto event = openEvent();
  event->rules.resize(1);
  event->rules.front().end = ek::RecurrenceEnd::withEndDate(utc(2024, 12, 31, 11));
  const auto sub = [&](const char* type, const char* property, const char* subProperty) {
    return call("GetProperty", {text(type), text(property), text(subProperty)});
  };
  EXPECT_EQ(sub("recurrencerule", "recurrenceend", "EndDate"), timestampAnswer("12/31/2024 12:00:00 PM"));
  EXPECT_EQ(sub("event", "title", "enddate"), kUntouched);
  event->name = "2024-05-01 09:00:00 +0100";
  EXPECT_EQ(sub("event", "title", "enddate"), timestampAnswer("5/1/2024 10:00:00 AM"));
  EXPECT_EQ(sub("event", "title", "end date"), textAnswer("2024-05-01 09:00:00 +0100"));
  event->rules.clear();
  openEvent();
  EXPECT_EQ(sub("recurrencerule", "recurrenceend", "enddate"), kUntouched);
  EXPECT_EQ(lastError().first, 0);
}

// Local mean time, off the whole minute: the date is what counts, not its text.
TEST_F(Properties, DatesLongAgo) {
  const auto event = openEvent();
  event->start = utc(1890, 1, 1, 11, 6, 32);
  EXPECT_EQ(get("event", "startdate"), timestampAnswer("1/1/1890 12:00:00 PM"));
  event->start = utc(1, 1, 1) - std::chrono::days(1);
  EXPECT_EQ(get("event", "startdate"), kUntouched);
}

}  // namespace
}  // namespace zuno::test
