#include "eventkit/embedded/storage/item_index.h"

#include <gmock/gmock.h>

#include "eventkit/embedded/ical/values.h"

namespace ek::embedded {
namespace {

using foundation::TimeZone;
using foundation::WallTime;

KeyedZone findZone(std::string_view tzid) {
  std::shared_ptr<const TimeZone> zone = TimeZone::named(tzid);
  return zone ? KeyedZone{zone, std::string(tzid)} : KeyedZone{};
}

std::string shown(WallTime wall) { return ical::formatDateTime({.wall = wall}); }

// An instant with Z, wall-clock time without.
std::string shown(const Moment& moment) {
  return ical::formatDateTime(
      {.wall = WallTime(std::chrono::seconds(moment.seconds)), .isUtc = !moment.isFloating});
}

std::string shown(const recurrence::Duration& length) { return ical::formatDuration(length); }

std::string shown(const SingleEvent& event) {
  return shown(event.start) + " to " + shown(event.end) + (event.isAllDay ? " all day" : "");
}

std::string shown(const SeriesEvent& event) {
  const recurrence::Series& series = event.series;
  std::string text =
      shown(series.start) + " for " + shown(series.duration) + (series.isAllDay ? " all day" : "");
  if (!event.zoneKey.empty()) text += " in " + event.zoneKey;
  for (const auto& rule : series.rules) text += "; rule " + recurrence::formatRule(rule);
  for (const auto& rule : series.exclusionRules) text += "; but not " + recurrence::formatRule(rule);
  for (const auto& extra : series.extraDates)
    text += "; also " + shown(extra.start) + (extra.duration ? " for " + shown(*extra.duration) : "");
  for (const WallTime wall : series.excludedDates) text += "; not " + shown(wall);
  for (const WallTime wall : series.excludedDays) text += "; not on " + shown(wall).substr(0, 8);
  for (const auto& override : series.overrides)
    text += "; " + shown(override.recurrenceId) + " is " + shown(override.start) + " to " +
            shown(override.end) + (override.isAllDay ? " all day " : " ") + override.title;
  return text;
}

std::string shown(const ReminderEntry& reminder) {
  return std::string(reminder.isCompleted ? "completed" : "open") +
         (reminder.completion ? " " + shown(Moment{reminder.completion->time_since_epoch().count(), false})
                              : "") +
         (reminder.due ? " due " + shown(*reminder.due) : "");
}

// `lines` are joined by line breaks and stand in one component, or in several parted by "--".
std::optional<ItemIndex> indexed(std::string_view kind, std::string_view lines, std::string& why) {
  const std::string begin = "BEGIN:" + std::string(kind) + "\n", end = "\nEND:" + std::string(kind) + "\n";
  std::string text = begin + std::string(lines) + end;
  for (std::size_t at = text.find("--"); at != std::string::npos; at = text.find("--"))
    text.replace(at, 2, end + begin);
  return indexItem(ical::parseComponents(text), findZone, why);
}

std::string shownIndex(std::string_view kind, std::string_view lines) {
  std::string why;
  const auto index = indexed(kind, lines, why);
  return index ? std::visit([](const auto& entry) { return shown(entry); }, index->entry) : "nothing: " + why;
}

struct Case {
  std::string_view why, lines, expected;
};

TEST(IndexingEvents, PlacesSingleOnes) {
  const Case cases[] = {
      {"UTC", "DTSTART:20240115T090000Z\nDTEND:20240115T100000Z", "20240115T090000Z to 20240115T100000Z"},
      {"zone", "DTSTART;TZID=Europe/Berlin:20240715T090000\nDTEND;TZID=\"America/New_York\":20240715T090000",
       "20240715T070000Z to 20240715T130000Z"},
      {"floating", "DTSTART:20240115T090000\nDTEND:20240115T100000", "20240115T090000 to 20240115T100000"},
      {"unknown zone", "DTSTART;TZID=Nowhere:20240115T090000\nDTEND;TZID=Nowhere:20240115T100000",
       "20240115T090000 to 20240115T100000"},
      {"end without the zone", "DTSTART;TZID=Europe/Berlin:20240115T090000\nDTEND:20240115T100000",
       "20240115T080000Z to 20240115T090000Z"},
      {"end in UTC beside a floating start", "DTSTART:20240115T090000\nDTEND:20240115T100000Z",
       "20240115T090000 to 20240115T100000"},
      {"no end", "DTSTART:20240115T090000Z", "20240115T090000Z to 20240115T090000Z"},
      {"end before start", "DTSTART:20240115T090000Z\nDTEND:20240115T080000Z",
       "20240115T090000Z to 20240115T090000Z"},
      {"unreadable end", "DTSTART:20240115T090000Z\nDTEND:soon\nDURATION:PT1H",
       "20240115T090000Z to 20240115T100000Z"},
      {"duration", "DTSTART:20240115T090000Z\nDURATION:P1DT1H", "20240115T090000Z to 20240116T100000Z"},
      {"negative duration", "DTSTART:20240115T090000Z\nDURATION:-PT1H",
       "20240115T090000Z to 20240115T090000Z"},
      {"nominal day over a change of clock", "DTSTART;TZID=Europe/Berlin:20240330T120000\nDURATION:P1D",
       "20240330T110000Z to 20240331T100000Z"},
      {"exact hours over a change of clock", "DTSTART;TZID=Europe/Berlin:20240330T120000\nDURATION:PT24H",
       "20240330T110000Z to 20240331T110000Z"},
      {"skipped hour", "DTSTART;TZID=Europe/Berlin:20240331T023000\nDURATION:PT1H",
       "20240331T013000Z to 20240331T023000Z"},
      {"all day", "DTSTART;VALUE=DATE:20240115\nDTEND;VALUE=DATE:20240117",
       "20240115T000000 to 20240117T000000 all day"},
      {"all day without VALUE", "DTSTART:20240115", "20240115T000000 to 20240116T000000 all day"},
      {"date with a time", "DTSTART;VALUE=DATE:20240115T000000",
       "20240115T000000 to 20240116T000000 all day"},
      {"end on the same day", "DTSTART:20240115\nDTEND:20240115",
       "20240115T000000 to 20240116T000000 all day"},
      {"end before the day", "DTSTART:20240115\nDTEND:20240110",
       "20240115T000000 to 20240116T000000 all day"},
      {"days as duration", "DTSTART:20240115\nDURATION:P3D", "20240115T000000 to 20240118T000000 all day"},
      {"hours as duration of days", "DTSTART:20240115\nDURATION:PT25H",
       "20240115T000000 to 20240117T000000 all day"},
      {"cancelled", "DTSTART:20240115\nSTATUS:CANCELLED", "20240115T000000 to 20240116T000000 all day"},
      {"exclusions without a rule", "DTSTART:20240115\nEXDATE;VALUE=DATE:20240115",
       "20240115T000000 to 20240116T000000 all day"},
      {"no start", "SUMMARY:x", "nothing: there is no DTSTART"},
      {"unreadable start", "DTSTART;;VALUE=DATE-TIME:20140432T093000", "nothing: DTSTART is no date"},
      {"odd parameters", "DTSTART;;VALUE=DATE-TIME:20140409T093000", "20140409T093000 to 20140409T093000"},
  };
  for (const auto& [why, lines, expected] : cases) EXPECT_EQ(shownIndex("VEVENT", lines), expected) << why;
}

TEST(IndexingEvents, ReadsASeriesInItsOwnZone) {
  const Case cases[] = {
      {"zone",
       "DTSTART;TZID=Europe/Berlin:20240115T090000\nDTEND;TZID=Europe/"
       "Berlin:20240115T100000\nRRULE:FREQ=DAILY",
       "20240115T090000 for PT1H in Europe/Berlin; rule FREQ=DAILY"},
      {"UTC", "DTSTART:20240115T090000Z\nRRULE:FREQ=DAILY;COUNT=3",
       "20240115T090000 for PT0S in UTC; rule FREQ=DAILY;COUNT=3"},
      {"floating", "DTSTART:20240115T090000\nRRULE:FREQ=DAILY", "20240115T090000 for PT0S; rule FREQ=DAILY"},
      {"all day", "DTSTART:20240115\nDTEND:20240117\nRRULE:FREQ=YEARLY",
       "20240115T000000 for P2D all day; rule FREQ=YEARLY"},
      {"nominal length", "DTSTART:20240115T090000\nDURATION:P1DT2H\nRRULE:FREQ=WEEKLY",
       "20240115T090000 for P1DT2H; rule FREQ=WEEKLY"},
      {"several rules", "DTSTART:20240115T090000\nRRULE:FREQ=WEEKLY\nRRULE:FREQ=YEARLY\nEXRULE:FREQ=MONTHLY",
       "20240115T090000 for PT0S; rule FREQ=WEEKLY; rule FREQ=YEARLY; but not FREQ=MONTHLY"},
      {"excluded dates of other zones",
       "DTSTART;TZID=Europe/"
       "Berlin:20240715T090000\nRRULE:FREQ=DAILY\nEXDATE:20240717T070000Z,20240716T070000Z\n"
       "EXDATE;TZID=America/New_York:20240718T030000\nEXDATE;TZID=Europe/Berlin:20240719T090000\n"
       "EXDATE:20240716T090000,rubbish\nEXDATE;VALUE=DATE:20240801",
       "20240715T090000 for PT0S in Europe/Berlin; rule FREQ=DAILY; not 20240716T090000; not "
       "20240717T090000; "
       "not 20240718T090000; not 20240719T090000; not on 20240801"},
      {"excluded days of an all-day series",
       "DTSTART:20240715\nRRULE:FREQ=DAILY\nEXDATE;VALUE=DATE:20240717\nEXDATE;TZID=Europe/"
       "Berlin:20240718T000000\n"
       "EXDATE:20240718T220000Z,20240720T040000Z",
       "20240715T000000 for P1D all day; rule FREQ=DAILY; not 20240717T000000; not 20240718T000000; "
       "not 20240719T000000; not 20240720T000000"},
      {"extra dates",
       "DTSTART;TZID=Europe/Berlin:20240115T090000\nRDATE:20240220T080000Z\nRDATE;VALUE=DATE:20240217\n"
       "RDATE;VALUE=PERIOD:20240301T080000Z/20240301T090000Z,20240302T080000Z/PT3H",
       "20240115T090000 for PT0S in Europe/Berlin; also 20240217T090000; also 20240220T090000; "
       "also 20240301T090000 for PT1H; also 20240302T090000 for PT3H"},
  };
  for (const auto& [why, lines, expected] : cases) EXPECT_EQ(shownIndex("VEVENT", lines), expected) << why;
}

TEST(IndexingEvents, ReadsTheLastDayOfAnAllDaySeriesAsProgramsWriteIt) {
  const struct {
    std::string_view until, day;
  } cases[] = {{"20240630", "20240630"},         {"20240630T000000", "20240630"},
               {"20240630T000000Z", "20240630"}, {"20240629T220000Z", "20240629"},
               {"20240630T040000Z", "20240630"}, {"20240630T235959Z", "20240630"},
               {"20240630T215959Z", "20240630"}, {"20240701T035959Z", "20240630"}};
  for (const auto& [until, day] : cases) {
    SCOPED_TRACE(until);
    std::string why;
    const auto index =
        indexed("VEVENT", "DTSTART:20240115\nRRULE:FREQ=DAILY;UNTIL=" + std::string(until), why);
    ASSERT_TRUE(index);
    const auto& rule = std::get<SeriesEvent>(index->entry).series.rules.at(0);
    EXPECT_TRUE(rule.until->isDate);
    EXPECT_EQ(shown(rule.until->wall).substr(0, 8), day);
  }
}

TEST(IndexingEvents, PutsOverridesBesideTheirSeries) {
  constexpr std::string_view master =
      "DTSTART;TZID=Europe/Berlin:20240115T090000\nDURATION:PT1H\nRRULE:FREQ=DAILY\nSUMMARY:a\n";
  const std::string shownMaster = "20240115T090000 for PT1H in Europe/Berlin; rule FREQ=DAILY";
  const Case cases[] = {
      {"own zone", "RECURRENCE-ID:20240117T080000Z\nDTSTART:20240118T080000Z\nDURATION:PT2H\nSUMMARY:b\\, c",
       "; 20240117T090000 is 20240118T080000Z to 20240118T100000Z b, c"},
      {"by date", "RECURRENCE-ID;VALUE=DATE:20240117\nDTSTART;VALUE=DATE:20240117",
       "; 20240117T090000 is 20240117T000000 to 20240118T000000 all day "},
      {"and the following",
       "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20240117T090000\nDTSTART:20240117T100000Z",
       "; 20240117T090000 is 20240117T100000Z to 20240117T100000Z "},
      {"cancelled",
       "RECURRENCE-ID;TZID=Europe/Berlin:20240117T090000\nDTSTART:20240117T100000Z\nSTATUS:Cancelled ",
       "; not 20240117T090000"},
      {"without a start", "RECURRENCE-ID:20240117T080000Z\nSUMMARY:b",
       "; 20240117T090000 is 20240117T080000Z to 20240117T080000Z b"},
      {"twice",
       "RECURRENCE-ID:20240117T080000Z\nDTSTART:20240117T100000Z--RECURRENCE-ID;TZID=Europe/"
       "Berlin:20240117T090000\nDTSTART:20240117T110000Z",
       "; 20240117T090000 is 20240117T110000Z to 20240117T110000Z "},
      {"unreadable", "RECURRENCE-ID:one\nDTSTART:20240117T100000Z", ""},
  };
  for (const auto& [why, lines, expected] : cases) {
    EXPECT_EQ(shownIndex("VEVENT", std::string(master) + "--" + std::string(lines)),
              shownMaster + std::string(expected))
        << why;
    EXPECT_EQ(shownIndex("VEVENT", std::string(lines) + "--" + std::string(master)),
              shownMaster + std::string(expected))
        << why << ", before the master";
  }
}

TEST(IndexingEvents, TakesOverridesWithoutTheirSeries) {
  EXPECT_EQ(shownIndex("VEVENT",
                       "RECURRENCE-ID:20240118T080000Z\nDTSTART:20240118T090000Z\nSUMMARY:b--"
                       "RECURRENCE-ID:20240117T080000Z\nDTSTART:20240117T090000Z\nSUMMARY:a--"
                       "RECURRENCE-ID:20240119T080000Z\nDTSTART:20240119T090000Z\nSTATUS:CANCELLED"),
            "20240117T080000 for PT0S in UTC; 20240117T080000 is 20240117T090000Z to 20240117T090000Z a; "
            "20240118T080000 is 20240118T090000Z to 20240118T090000Z b");
  EXPECT_EQ(shownIndex("VEVENT", "RECURRENCE-ID:20240118T080000Z\nDTSTART:20240118T090000Z\nSTATUS:CANCELLED")
                .substr(0, 8),
            "nothing:");
}

TEST(IndexingEvents, ABrokenRuleMakesItOccurOnce) {
  for (const std::string_view rule :
       {"FREQ=WEEKLY;UNTL=20191023", "RRULE:AnythingRandom;FREQ=WEEKLY", "%n;BYMONTH="}) {
    std::string why;
    const auto index = indexed("VEVENT", "DTSTART:20240115T090000Z\nRRULE:" + std::string(rule), why);
    ASSERT_TRUE(index) << rule;
    EXPECT_TRUE(std::holds_alternative<SingleEvent>(index->entry)) << rule;
    EXPECT_THAT(why, testing::StartsWith("RRULE: ")) << rule;
  }
}

TEST(IndexingItems, KeepsWhatIdentifiesThem) {
  std::string why;
  const auto event =
      indexed("VEVENT", "UID:a\\,b \nCREATED:20240101T120000Z\nDTSTART:20240115\nSUMMARY:caf\xE9\\; x", why);
  ASSERT_TRUE(event);
  EXPECT_EQ(event->kind, EntityType::event);
  EXPECT_EQ(event->uid, "a,b");
  EXPECT_EQ(event->created, Date(std::chrono::seconds(1704110400)));
  EXPECT_EQ(std::get<SingleEvent>(event->entry).title, "caf\xC3\xA9; x");
  const auto task = indexed("VTODO", "SUMMARY:x", why);
  ASSERT_TRUE(task);
  EXPECT_EQ(task->kind, EntityType::reminder);
  EXPECT_EQ(task->uid, "");
  EXPECT_EQ(task->created, std::nullopt);
  EXPECT_FALSE(indexed("VJOURNAL", "DTSTART:20240115", why));
  EXPECT_FALSE(indexItem({}, findZone, why));
}

TEST(IndexingTasks, ReadsDueDateAndCompletion) {
  const Case cases[] = {
      {"nothing", "SUMMARY:x", "open"},
      {"due", "DUE;TZID=Europe/Berlin:20240115T090000", "open due 20240115T080000Z"},
      {"floating", "DUE:20240115T090000", "open due 20240115T090000"},
      {"date", "DUE;VALUE=DATE:20240115", "open due 20240115T000000"},
      {"start and length", "DTSTART:20240115T090000Z\nDURATION:P1DT1H", "open due 20240116T100000Z"},
      {"start alone", "DTSTART:20240115T090000Z", "open"},
      {"completed", "COMPLETED:20240115T090000Z\nSTATUS:COMPLETED", "completed 20240115T090000Z"},
      {"completed, status unsaid", "COMPLETED:20240115T090000Z", "completed 20240115T090000Z"},
      {"completed at UTC that does not say so", "COMPLETED:20240115T090000", "completed 20240115T090000Z"},
      {"completed in a zone", "COMPLETED;TZID=Europe/Berlin:20240115T090000", "completed 20240115T080000Z"},
      {"completed without a date", "STATUS:completed", "completed"},
      {"completed at no date", "COMPLETED:!8640709T114431\nSTATUS:NEEDS-ACTION", "open"},
      {"all of it done, but not completed", "PERCENT-COMPLETE:100\nSTATUS:IN-PROCESS", "open"},
      {"repeating: as the master says",
       "RECURRENCE-ID:20240116\nDUE:20240117--DUE:20240115\nRRULE:FREQ=DAILY", "open due 20240115T000000"},
  };
  for (const auto& [why, lines, expected] : cases) EXPECT_EQ(shownIndex("VTODO", lines), expected) << why;

  std::string why;
  EXPECT_TRUE(indexed("VTODO", "RECURRENCE-ID:20240116--RRULE:FREQ=DAILY", why));
  EXPECT_THAT(why, testing::StartsWith("RECURRENCE-ID: a repeating to-do is shown as a whole"));
  EXPECT_TRUE(indexed("VTODO", "RECURRENCE-ID:20240116", why));
  EXPECT_EQ(why, "");
}

}  // namespace
}  // namespace ek::embedded
