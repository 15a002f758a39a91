#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "eventkit/embedded/storage/import_text.h"
#include "tests/storage/store_fixture.h"

namespace ek::embedded {
namespace {

using testing::HasSubstr;
using testing::Not;

using Export = StoreFixture;

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

const std::string kOffice = "DTSTART;TZID=Office:20240501T090000";

TEST_F(Export, GivesAnImportedFileBack) {
  const std::string change = event("s", "DTSTART:20240503T100000Z", {"RECURRENCE-ID:20240502T090000Z"});
  const std::string master = event("s", "DTSTART:20240501T090000Z", {"RRULE:FREQ=DAILY;COUNT=5"});
  const std::string journal = lines({"BEGIN:VJOURNAL", "UID:j", "SUMMARY:Kept", "END:VJOURNAL"});
  const std::string odd =
      lines({"begin:vevent", "uid:low", "dtstart;x-p=\"a;b\":20240501T090000Z",
             "SUMMARY:long enough to be folded somewhe", "\tre in the middle", "X-A:", "end:vevent"});
  const std::string cases[] = {
      calendarText(event("a") + task("t") + event("b")),
      calendarText(change + event("a") + journal + zoneText("Office", "+0100") + task("t") + master),
      calendarText(event("bad", "DTSTART:never") + odd + event("a") + event("a", "DTSTART:20200101")),
      calendarText(event("a") + lines({"X-AFTER:1"}) + event("b"),
                   {"X-B:2", "x-a:1", "PRODID:x", "VERSION:2.0"}),
      calendarText(event("a")) + calendarText(event("b") + zoneText("Office", "+0200")),
      calendarText(zoneText("Office", "+0300") + event("a", kOffice) + zoneText("Office", "+0100")),
  };
  int number = 0;
  for (const std::string& text : cases) {
    SCOPED_TRACE(text);
    for (const std::string& variant : {text, withLineBreaks(text, "\n")}) {
      const std::string title = "Title" + std::to_string(number++);
      ASSERT_EQ(import(variant, "f.ics", {.title = title}).unreadableFiles, 0u);
      EXPECT_EQ(exported({title}), variant);
    }
  }
}

TEST_F(Export, NormalisesLineBreaksOnlyWhereAFileMixesThem) {
  const std::string text = calendarText(event("a"));
  import(withLineBreaks(event("b"), "\n").insert(0, "BEGIN:VCALENDAR\r\nX-WR-CALNAME:Mixed\r") +
         "END:VCALENDAR\r\r\n");
  EXPECT_EQ(exported({"Mixed"}), calendarText(event("b"), {"X-WR-CALNAME:Mixed"}));
}

TEST_F(Export, OfAnUpdatedFileIsTheNewFile) {
  const std::string journal = lines({"BEGIN:VJOURNAL", "UID:j", "END:VJOURNAL"});
  import(calendarText(zoneText("Office", "+0100") + event("a", kOffice) + journal + event("b")));
  const std::string second =
      calendarText(event("b") + zoneText("Office", "+0200") + journal + event("c") + event("a", kOffice),
                   {"VERSION:2.0", "X-WR-CALNAME:Work", "X-NEW:1"});
  import(second);
  EXPECT_EQ(exported({"Work"}), second);
}

TEST_F(Export, JoinsSeveralFilesOfOneTitle) {
  import(calendarText(zoneText("Office", "+0100") + event("a", kOffice)), "1.ics");
  import(calendarText(zoneText("Office", "+0100") + event("b", kOffice),
                      {"METHOD:PUBLISH", "PRODID:other", "X-WR-CALNAME:Work", "X-EXTRA:1"}),
         "2.ics");
  EXPECT_EQ(exported({"Work"}),
            calendarText(zoneText("Office", "+0100") + event("a", kOffice) + event("b", kOffice),
                         {"VERSION:2.0", "PRODID:-//t//t//EN", "X-WR-CALNAME:Work", "X-EXTRA:1"}));
  import(withLineBreaks(calendarText(event("lf"), {"X-WR-CALNAME:Work", "X-LF:1"}), "\n"), "lf.ics");
  EXPECT_THAT(exported({"Work"}), HasSubstr("X-LF:1\r\n"));
  EXPECT_THAT(exported({"Work"}), HasSubstr(event("lf")));
  // Another meaning of the same TZID does not fit in.
  const std::string clash = calendarText(zoneText("Office", "+0900") + event("c", kOffice));
  import(clash, "3.ics");
  EXPECT_TRUE(exported({"Work"}).ends_with("END:VCALENDAR\r\n" + clash));
}

TEST_F(Export, OfWhatWasMadeHereHasAHeaderAndItsZones) {
  const RowId home = calendar("Calendar")->id;
  const std::string cairo = event("a", "DTSTART;TZID=Africa/Cairo:20240501T090000");
  make(home, cairo);
  make(home, event("b"));
  make(calendar("Reminders", EntityType::reminder)->id, task("t"));
  EXPECT_THAT(exported({"Calendar"}), testing::StartsWith("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:"));
  EXPECT_THAT(exported({"Calendar"}),
              HasSubstr("\r\nX-WR-CALNAME:Calendar\r\nBEGIN:VTIMEZONE\r\nTZID:Africa/Cairo\r\n"));
  EXPECT_THAT(exported({"Calendar"}),
              HasSubstr("END:VTIMEZONE\r\n" + cairo + event("b") + "END:VCALENDAR\r\n"));
  EXPECT_EQ(countOf(exported(), "BEGIN:VCALENDAR"), 2u);
}

TEST_F(Export, BringsNewItemsAfterTheImportedOnesWithTheZonesTheyMean) {
  const std::string file = calendarText(zoneText("Office", "+0100") + event("a", kOffice));
  import(file);
  const RowId work = calendar("Work")->id;
  {
    Database::Transaction writing(*database_, Kind::writing);
    ItemTable items(*database_);
    items.ensureTimeZone(work, "Office", zoneText("Office", "+0500"));  // the calendar knows better
    items.ensureTimeZone(work, "Home", zoneText("Home", "-0300"));
    writing.commit();
  }
  make(work, event("b", kOffice));
  make(work, event("c", "DTSTART;TZID=Home:20240501T090000"));
  const std::string all = exported({"Work"});
  EXPECT_EQ(all.substr(0, file.size() - 15), file.substr(0, file.size() - 15));
  EXPECT_EQ(all.substr(file.size() - 15), zoneText("Home", "-0300") + event("b", kOffice) +
                                              event("c", "DTSTART;TZID=Home:20240501T090000") +
                                              "END:VCALENDAR\r\n");
}

TEST_F(Export, AnItemThatMovesTakesItsZoneAlong) {
  import(calendarText(zoneText("Office", "+0100") + event("a", kOffice) + event("b")));
  const RowId home = calendar("Calendar")->id;
  {
    Database::Transaction writing(*database_, Kind::writing);
    ItemTable items(*database_);
    const ItemRow row = *items.findByUid("a");
    std::string why;
    const auto index = indexItem(ical::parseComponents(row.text), items.zoneFinder(row), why);
    items.replace(row.id, home, row.text, *index);
    writing.commit();
  }
  EXPECT_THAT(exported({"Calendar"}), HasSubstr(zoneText("Office", "+0100") + event("a", kOffice)));
  EXPECT_THAT(exported({"Work"}), Not(HasSubstr("UID:a")));
}

TEST_F(Export, AnEditedSeriesStandsWhereItStood) {
  const std::string change = event("s", "DTSTART:20240503T100000Z", {"RECURRENCE-ID:20240502T090000Z"});
  const std::string another = event("s", "DTSTART:20240504T100000Z", {"RECURRENCE-ID:20240503T090000Z"});
  const std::string master = event("s", "DTSTART:20240501T090000Z", {"RRULE:FREQ=DAILY;COUNT=5"});
  import(calendarText(master + event("a") + change + event("b")));
  Database::Transaction writing(*database_, Kind::writing);
  ItemTable items(*database_);
  const ItemRow row = *items.findByUid("s");
  const std::string edited = master + change + another;
  items.replace(row.id, row.calendar, edited, indexOf(items, row.calendar, edited));
  writing.commit();
  EXPECT_EQ(exported({"Work"}), calendarText(master + event("a") + change + another + event("b")));
}

TEST_F(Export, FollowsARenamedCalendar) {
  import(calendarText(event("a")));
  exec("UPDATE calendar SET title = 'Büro, neu' WHERE title = 'Work'");
  EXPECT_EQ(exported({"Büro, neu"}),
            calendarText(event("a"), {"VERSION:2.0", "PRODID:-//t//t//EN", "X-WR-CALNAME:Büro\\, neu"}));
}

TEST_F(Export, LeavesOutEmptyCalendarsUnlessThereAreNoOthers) {
  EXPECT_EQ(countOf(exported(), "BEGIN:VCALENDAR"), 2u);
  import(calendarText(event("a")));
  EXPECT_EQ(exported(), calendarText(event("a")));
  EXPECT_EQ(exported({"Calendar", "Work"}), calendarText(event("a")));
  EXPECT_THAT(exported({"Reminders"}), HasSubstr("X-WR-CALNAME:Reminders"));
}

}  // namespace
}  // namespace ek::embedded
