#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "eventkit/embedded/storage/import_text.h"
#include "tests/storage/store_fixture.h"

namespace ek::embedded {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using Import = StoreFixture;

std::vector<std::string> reasonsOf(const ImportReport& report) {
  std::vector<std::string> reasons;
  for (const Skipped& part : report.skipped)
    reasons.push_back(std::to_string(part.line) + ": " + part.reason);
  return reasons;
}

TEST(ImportText, KnowsWhetherAllLinesEndAlike) {
  for (const char* text : {"", "a", "a\nb\n", "\n\n", "a\r\nb\r\n", "\r\n\r\n", "a\r\nb"})
    EXPECT_TRUE(hasUniformLineBreaks(text)) << testing::PrintToString(text);
  for (const char* text : {"a\r", "a\r\nb\n", "a\n\r\n", "a\r\r\n", "a\rb\r\n", "a\r\nb\r", "\n\r"})
    EXPECT_FALSE(hasUniformLineBreaks(text)) << testing::PrintToString(text);
}

TEST_F(Import, NamesCalendarsByOptionThenFileThenStem) {
  const std::vector<std::string> plain = {"VERSION:2.0", "PRODID:-//t//t//EN"};
  import(calendarText(event("a"), plain), "holidays.ics");
  EXPECT_TRUE(calendar("holidays"));
  import(calendarText(event("b"), {"VERSION:2.0", "X-WR-CALNAME;VALUE=TEXT:Böse\\, lange\\nTage"}), "x.ics");
  EXPECT_TRUE(calendar("Böse, lange Tage"));
  import(calendarText(task("c")), "y.ics", {.title = "Mine"});
  EXPECT_TRUE(calendar("Mine", EntityType::reminder));
  EXPECT_FALSE(calendar("Mine", EntityType::event));
  EXPECT_FALSE(calendar("Work", EntityType::reminder));
}

TEST_F(Import, MakesCalendarsAsAskedForAndLeavesThoseThatExist) {
  import(calendarText(event("a"), {"X-WR-CALNAME:R", "X-APPLE-CALENDAR-COLOR:#FF0080FF"}), "r.ics",
         {.isReadOnly = true});
  import(calendarText(event("a"), {"X-WR-CALNAME:S", "COLOR:turquoise"}), "s.ics", {.isSubscribed = true});
  import(calendarText(event("b"), {"X-WR-CALNAME:Calendar", "COLOR:red"}), "c.ics", {.isReadOnly = true});
  const auto readOnly = calendar("R");
  EXPECT_FALSE(readOnly->allowsModification);
  EXPECT_FALSE(readOnly->isSubscribed);
  EXPECT_EQ(readOnly->color, (Color{1, 0, 128.0 / 255, 1}));
  const auto subscribed = calendar("S");
  EXPECT_TRUE(subscribed->isSubscribed);
  EXPECT_FALSE(subscribed->allowsModification);
  EXPECT_EQ(subscribed->type, CalendarType::subscription);
  EXPECT_EQ(subscribed->color, (Color{64.0 / 255, 224.0 / 255, 208.0 / 255, 1}));
  EXPECT_TRUE(calendar("Calendar")->allowsModification);
}

TEST_F(Import, ReplacesTheWholeItemAndKeepsItsIdentifier) {
  const std::string change = event("s", "DTSTART:20240503T100000Z", {"RECURRENCE-ID:20240502T090000Z"});
  const std::string master = event("s", "DTSTART:20240501T090000Z", {"RRULE:FREQ=DAILY;COUNT=5"});
  import(calendarText(master + change + event("kept")));
  const ItemRow before = *item("s");
  const auto change1 = database_->change();
  const std::string second = calendarText(event("s", "DTSTART:20250101T090000Z"));
  EXPECT_EQ(import(second, "again.ics").events, 1u);
  const ItemRow after = *item("s");
  EXPECT_EQ(after.id, before.id);
  EXPECT_EQ(after.identifier, before.identifier);
  EXPECT_GT(after.change, change1);
  EXPECT_EQ(after.text, event("s", "DTSTART:20250101T090000Z"));
  EXPECT_EQ(number("SELECT count(*) FROM series_event"), 0);
  EXPECT_EQ(number("SELECT count(*) FROM single_event"), 2);
  EXPECT_EQ(number("SELECT count(*) FROM item"), 2);
  EXPECT_EQ(import(second, "other.ics", {.title = "Elsewhere"}).events, 1u);
  EXPECT_EQ(number("SELECT count(*) FROM item"), 3);
}

TEST_F(Import, GivesAUidToWhatHasNone) {
  const std::string nameless = lines({"BEGIN:VEVENT", "DTSTART:20240501", "DTSTAMP:20240101T000000Z",
                                      "BEGIN:VALARM", "UID:of-the-alarm", "END:VALARM", "END:VEVENT"});
  EXPECT_EQ(import(calendarText(nameless + nameless)).events, 2u);
  EXPECT_EQ(number("SELECT count(DISTINCT uid) FROM item WHERE length(uid) = 36"), 2);
  EXPECT_EQ(number("SELECT count(*) FROM item WHERE instr(text, 'UID:' || uid) > 0"), 2);
  std::string later = nameless;
  later.replace(later.find("20240101"), 8, "20240202");  // another DTSTAMP, the same event
  import(calendarText(later));
  EXPECT_EQ(number("SELECT count(*) FROM item"), 2);
}

TEST_F(Import, TakesTheNewerOfTwoWithOneUid) {
  const std::string older = event("u", "DTSTART:20240501T090000Z", {"SEQUENCE:1", "SUMMARY:Old"});
  const std::string newer = event("u", "DTSTART:20240501T090000Z", {"SEQUENCE:12", "SUMMARY:New"});
  const ImportReport report = import(calendarText(newer + older));
  EXPECT_EQ(report.events, 1u);
  EXPECT_THAT(reasonsOf(report), ElementsAre("11: line 5 has a newer one of the same UID"));
  EXPECT_EQ(item("u")->text, newer);
}

TEST_F(Import, SkipsWhatCannotBeReadAndTakesTheRest) {
  const ImportReport report =
      import(calendarText(event("bad", "DTSTART:yesterday") + event("good") +
                          event("rule", "DTSTART:20240501", {"RRULE:FREQ=NEVER"}) +
                          event("all", "DTSTART:20240502", {"RECURRENCE-ID;RANGE=thisandfuture:20240502"})));
  EXPECT_EQ(report.events, 3u);
  EXPECT_EQ(report.unreadableFiles, 0u);
  ASSERT_EQ(report.skipped.size(), 3u);
  EXPECT_EQ(report.skipped[0].line, 5u);
  EXPECT_EQ(report.skipped[0].reason, "DTSTART is no date");
  EXPECT_EQ(report.skipped[1].line, 13u);
  EXPECT_THAT(report.skipped[1].reason, HasSubstr("RRULE"));
  EXPECT_EQ(report.skipped[2].reason,
            "RECURRENCE-ID: what is to change the following occurrences too changes this one alone");
  EXPECT_FALSE(item("bad"));
}

TEST_F(Import, LeavesNothingBehindOfAFileThatHasNothing) {
  const auto change = database_->change();
  const struct {
    std::string text;
    std::size_t unreadable;
  } cases[] = {{"", 1},
               {"Dear all,\nthe meeting is off.\n", 1},
               {calendarText(event("bad", "DTSTART:yesterday")), 1},
               {calendarText(lines({"BEGIN:VJOURNAL", "UID:j", "END:VJOURNAL"})), 1},
               {calendarText(zoneText("Europe/Berlin", "+0100")), 1},
               {calendarText(""), 0}};
  for (const auto& [text, unreadable] : cases) {
    SCOPED_TRACE(text);
    const ImportReport report = import(text);
    EXPECT_EQ(report.events + report.reminders, 0u);
    EXPECT_EQ(report.unreadableFiles, unreadable);
    EXPECT_EQ(report.skipped.empty(), unreadable == 0);
  }
  EXPECT_EQ(database_->change(), change);
  EXPECT_EQ(number("SELECT count(*) FROM calendar"), 2);
  EXPECT_EQ(number("SELECT count(*) FROM envelope") + number("SELECT count(*) FROM zone"), 0);
}

TEST_F(Import, TakesAFoldersFilesByName) {
  std::filesystem::create_directory(folder_.file("in"));
  write("in/b.ics", calendarText(event("u", "DTSTART:20240501T090000Z", {"SUMMARY:second"})));
  write("in/a.ICS", calendarText(event("u", "DTSTART:20240501T090000Z", {"SUMMARY:first"})));
  write("in/c.txt", calendarText(event("v")));
  Importer importer(*database_, {});
  importer.importPath(folder_.file("in"));
  EXPECT_THAT(item("u")->text, HasSubstr("second"));
  EXPECT_FALSE(item("v"));
  importer.importPath(folder_.file("missing.ics"));
  EXPECT_EQ(importer.report().unreadableFiles, 1u);
  EXPECT_EQ(importer.report().skipped.back().reason, "No such file or directory");
}

TEST_F(Import, FindsAVtimezoneOfAnUnknownName) {
  const std::string own = "DTSTART;TZID=Office:20240501T090000";
  import(calendarText(zoneText("Office", "+0300") + event("a", own)), "first.ics");
  EXPECT_EQ(number("SELECT lo FROM single_event"), 1714543200);  // 06:00 UTC
  // Another file of the calendar means something else by the name; what is there keeps its meaning.
  import(calendarText(zoneText("Office", "-0500") + event("b", own)), "second.ics");
  EXPECT_EQ(number("SELECT lo FROM single_event WHERE item = (SELECT id FROM item WHERE uid = 'b')"),
            1714572000);
  EXPECT_EQ(number("SELECT lo FROM single_event WHERE item = (SELECT id FROM item WHERE uid = 'a')"),
            1714543200);
  import(calendarText(zoneText("Offices\\, all", "+0300") +
                      event("d", "DTSTART;TZID=\"Offices, all\":20240501T090000") +
                      event("e", "DTSTART;TZID=\"Offices\\, all\":20240501T090000")),
         "names.ics");
  EXPECT_EQ(number("SELECT count(*) FROM single_event JOIN item ON id = item WHERE uid IN ('d', 'e') AND "
                   "lo = 1714543200"),
            2);
  import(calendarText(event("c", "DTSTART;TZID=Nowhere:20240501T090000")), "third.ics");
  EXPECT_EQ(number("SELECT flags FROM single_event WHERE item = (SELECT id FROM item WHERE uid = 'c')"), 3);
}

TEST_F(Import, KeepsContactsOnce) {
  const std::string card = lines({"BEGIN:VCARD", "VERSION:3.0", "UID:c1", "FN:Ada Park",
                                  "EMAIL:ada@example.com", "ADR:;;1 Long Road;Leeds;;LS1;UK", "END:VCARD"});
  std::string moved = card;
  moved.replace(moved.find("1 Long Road"), 11, "2 High Road");
  EXPECT_EQ(import(card, "a.vcf").contacts, 1u);
  EXPECT_EQ(import(card, "b.vcf").contacts, 1u);
  EXPECT_EQ(number("SELECT count(*) FROM contact_email"), 1);
  import(moved, "no-extension");
  EXPECT_EQ(number("SELECT count(*) FROM contact"), 1);
  EXPECT_THAT(
      text("SELECT address FROM contact JOIN contact_email ON contact = id WHERE email = 'ada@example.com'"),
      HasSubstr("2 High Road"));
}

}  // namespace
}  // namespace ek::embedded
