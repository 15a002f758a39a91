#include "eventkit/embedded/ical/zones.h"

#include <gmock/gmock.h>

namespace ek::ical {
namespace {

using foundation::Date;
using foundation::TimeZone;
using std::chrono::seconds;

Date date(int year, unsigned month, unsigned day, int hour = 0) {
  return std::chrono::sys_days(std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day)) +
         std::chrono::hours(hour);
}

std::shared_ptr<const TimeZone> parsedZone(std::string_view parts) {
  const auto components =
      parseComponents("BEGIN:VTIMEZONE\nTZID:Test\n" + std::string(parts) + "END:VTIMEZONE\n");
  return zoneOf(components.at(0));
}

// Looks at every day and around every change of clock.
void expectSameClock(const TimeZone& zone, const TimeZone& expected, Date from, Date to) {
  for (Date at = from; at < to; at += std::chrono::hours(24))
    ASSERT_EQ(zone.offsetAt(at), expected.offsetAt(at))
        << expected.name() << " " << at.time_since_epoch().count();
  for (const auto& change : expected.transitionsBetween(from, to))
    for (const Date at : {change.at - seconds(1), change.at})
      ASSERT_EQ(zone.offsetAt(at), expected.offsetAt(at))
          << expected.name() << " " << at.time_since_epoch().count();
}

TEST(ZoneNames, AreUnderstoodAsProgramsWriteThem) {
  const struct {
    std::string_view tzid, name;
  } cases[] = {
      {"Europe/Berlin", "Europe/Berlin"},
      {" \"Europe/Berlin\" ", "Europe/Berlin"},
      {"/freeassociation.sourceforge.net/Tzfile/Europe/Berlin", "Europe/Berlin"},
      {"/mozilla.org/20070129_1/America/Argentina/Salta", "America/Argentina/Salta"},
      {"america/new york", "America/New_York"},
      {"EUROPE/PARIS", "Europe/Paris"},
      {"W. Europe Standard Time", "Europe/Berlin"},
      {"eastern standard time", "America/New_York"},
      {"UTC", "UTC"},
  };
  for (const auto& [tzid, name] : cases) {
    const auto zone = zoneNamed(tzid);
    ASSERT_TRUE(zone) << tzid;
    EXPECT_EQ(zone->name(), name);
  }
}

TEST(ZoneNames, MayBeFixedOffsets) {
  const struct {
    std::string_view tzid;
    int offset;
  } cases[] = {{"GMT -03:30", -12600}, {"Etc/GMT+5", -18000},
               {"GMT+05.30", 19800},   {"GMT+01:00", 3600},
               {"utc+0530", 19800},    {"UTC-5", -18000},
               {"-0800", -28800},      {"UTC+12", 43200},
               {"+02:00", 7200},       {"Z", 0}};
  for (const auto& [tzid, offset] : cases) {
    const auto zone = zoneNamed(tzid);
    ASSERT_TRUE(zone) << tzid;
    EXPECT_EQ(zone->offsetAt(date(2024, 7, 1)).count(), offset) << tzid;
  }
}

TEST(ZoneNames, MayMeanNothing) {
  for (const std::string_view tzid :
       {"", " ", "\"\"", "Nowhere/City", "/a/b/c", "GMT+", "GMT+10000", "UTC+19", "GMT+1:70",
        "Customized Time Zone", "(UTC+01:00) Amsterdam, Berlin", "../../etc/passwd", "/",
        "GMT +0100 (Standard) / GMT +0200 (Daylight)"})
    EXPECT_FALSE(zoneNamed(tzid)) << tzid;
}

TEST(TimeZoneComponents, FollowTheirOwnRules) {
  const auto berlin = parsedZone(
      "BEGIN:DAYLIGHT\nTZOFFSETFROM:+0100\nTZOFFSETTO:+0200\nTZNAME:CEST\nDTSTART:19700329T020000\n"
      "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\nEND:DAYLIGHT\n"
      "BEGIN:STANDARD\nTZOFFSETFROM:+0200\nTZOFFSETTO:+0100\nTZNAME:CET\nDTSTART:19701025T030000\n"
      "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\nEND:STANDARD\n");
  ASSERT_TRUE(berlin);
  expectSameClock(*berlin, *TimeZone::named("Europe/Berlin"), date(1996, 1, 1), date(2100, 1, 1));
  EXPECT_EQ(berlin->letters(date(2024, 7, 1)), "CEST");

  const auto exchange = parsedZone(
      "BEGIN:STANDARD\nDTSTART:16010101T020000\nTZOFFSETFROM:-0400\nTZOFFSETTO:-0500\n"
      "RRULE:FREQ=YEARLY;INTERVAL=1;BYDAY=1SU;BYMONTH=11\nEND:STANDARD\n"
      "BEGIN:DAYLIGHT\nDTSTART:16010101T020000\nTZOFFSETFROM:-0500\nTZOFFSETTO:-0400\n"
      "RRULE:FREQ=YEARLY;INTERVAL=1;BYDAY=2SU;BYMONTH=3\nEND:DAYLIGHT\n");
  ASSERT_TRUE(exchange);
  expectSameClock(*exchange, *TimeZone::named("America/New_York"), date(2007, 6, 1), date(2100, 1, 1));
}

TEST(TimeZoneComponents, FollowRulesThatEndAndListedDates) {
  const auto zone = parsedZone(
      "BEGIN:STANDARD\nDTSTART:20000101T000000\nTZOFFSETFROM:+0000\nTZOFFSETTO:+0100\nEND:STANDARD\n"
      "BEGIN:DAYLIGHT\nDTSTART:20010601T000000\nTZOFFSETFROM:+0100\nTZOFFSETTO:+0200\n"
      "RRULE:FREQ=YEARLY;UNTIL=20020531T230000Z\nRDATE:20050601T000000,20060601T000000\nEND:DAYLIGHT\n"
      "BEGIN:STANDARD\nDTSTART:20011001T000000\nTZOFFSETFROM:+0200\nTZOFFSETTO:+0100\n"
      "RRULE:FREQ=YEARLY;COUNT=6\nEND:STANDARD\n");
  ASSERT_TRUE(zone);
  constexpr struct {
    int year, summer;
  } cases[] = {{1999, 0}, {2000, 1}, {2001, 2}, {2002, 2}, {2003, 1}, {2005, 2}, {2006, 2}, {2007, 1}};
  for (const auto& [year, summer] : cases)
    EXPECT_EQ(zone->offsetAt(date(year, 7, 1)), std::chrono::hours(summer)) << year;
  EXPECT_EQ(zone->offsetAt(date(2006, 12, 1)), std::chrono::hours(1));
}

TEST(TimeZoneComponents, LeaveOutPartsThatAreBroken) {
  EXPECT_FALSE(parsedZone(""));
  EXPECT_FALSE(parsedZone("BEGIN:STANDARD\nTZOFFSETTO:+0100\nEND:STANDARD\n"));
  EXPECT_FALSE(parsedZone("BEGIN:STANDARD\nDTSTART:20000101T000000\nTZOFFSETTO:soon\nEND:STANDARD\n"));
  const auto zone = parsedZone(
      "BEGIN:STANDARD\nDTSTART:18930401T000000\nTZOFFSETFROM:+5328\nTZOFFSETTO:+0100\nEND:STANDARD\n"
      "BEGIN:DAYLIGHT\nDTSTART:20000101T000000\nTZOFFSETFROM:+0100\nTZOFFSETTO:+9900\nEND:DAYLIGHT\n"
      "BEGIN:DAYLIGHT\nDTSTART:20000101T000000\nTZOFFSETTO:+0200\nRRULE:FREQ=SECONDLY\nEND:DAYLIGHT\n");
  ASSERT_TRUE(zone);
  EXPECT_EQ(zone->offsetAt(date(1990, 1, 1)), std::chrono::hours(1));
  EXPECT_EQ(zone->offsetAt(date(2024, 1, 1)), std::chrono::hours(2));
}

TEST(WritingTimeZones, KeepsTheClock) {
  for (const std::string_view name :
       {"Europe/Berlin", "Europe/London", "Europe/Dublin", "America/New_York", "America/Sao_Paulo",
        "America/Nuuk", "Africa/Casablanca", "Africa/Cairo", "Asia/Kathmandu", "Asia/Jerusalem", "Asia/Gaza",
        "Asia/Pyongyang", "Australia/Lord_Howe", "Pacific/Apia", "Pacific/Kiritimati", "America/Caracas",
        "UTC"}) {
    const auto zone = TimeZone::named(name);
    ASSERT_TRUE(zone) << name;
    const Component written = vtimezoneFor(*zone, "unused");
    EXPECT_EQ(written.value("TZID"), name);
    const auto again = zoneOf(parseComponents(written.text()).at(0));
    ASSERT_TRUE(again) << written.text();
    expectSameClock(*again, *zone, date(1970, 1, 2), date(2100, 1, 1));
    EXPECT_EQ(again->letters(date(2024, 7, 1)), zone->letters(date(2024, 7, 1)));
  }
}

TEST(WritingTimeZones, TellsWhatComesBackEveryYearByARule) {
  const auto zone = TimeZone::fromPosixRule("AAA-3:30BBB,M3.4.4/26,M9.1.0");
  ASSERT_TRUE(zone);
  const Component written = vtimezoneFor(*zone, "Own");
  EXPECT_EQ(
      written.text(),
      "BEGIN:VTIMEZONE\r\nTZID:Own\r\n"
      "BEGIN:STANDARD\r\nDTSTART:19700101T033000\r\nTZOFFSETFROM:+0330\r\nTZOFFSETTO:+0330\r\nTZNAME:AAA\r\n"
      "END:STANDARD\r\n"
      "BEGIN:DAYLIGHT\r\nDTSTART:19700327T020000\r\nTZOFFSETFROM:+0330\r\nTZOFFSETTO:+0430\r\nTZNAME:BBB\r\n"
      "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=FR;BYMONTHDAY=23,24,25,26,27,28,29\r\nEND:DAYLIGHT\r\n"
      "BEGIN:STANDARD\r\nDTSTART:19700906T020000\r\nTZOFFSETFROM:+0430\r\nTZOFFSETTO:+0330\r\nTZNAME:AAA\r\n"
      "RRULE:FREQ=YEARLY;BYMONTH=9;BYDAY=1SU\r\nEND:STANDARD\r\n"
      "END:VTIMEZONE\r\n");
  expectSameClock(*zoneOf(written), *zone, date(1970, 1, 2), date(2100, 1, 1));
  EXPECT_LT(vtimezoneFor(*TimeZone::named("Europe/Berlin"), "").text().size(), 3000U);
}

}  // namespace
}  // namespace ek::ical
