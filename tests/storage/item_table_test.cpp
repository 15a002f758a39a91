#include "eventkit/embedded/storage/item_table.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "eventkit/embedded/storage/index_rows.h"
#include "tests/storage/store_fixture.h"

namespace ek::embedded {
namespace {

class Items : public StoreFixture {
 protected:
  void SetUp() override {
    StoreFixture::SetUp();
    home_ = calendar("Calendar")->id;
  }
  void erase(RowId id) {
    Database::Transaction writing(*database_, Kind::writing);
    ItemTable(*database_).erase(id);
    writing.commit();
  }
  RowId home_ = 0;
};

TEST(Extent, IsThePowerOfFourAboveTheLength) {
  constexpr struct {
    std::int64_t length;
    int extent;
  } cases[] = {{-5, 0}, {0, 0},  {1, 1},     {3, 1},      {4, 2},
               {15, 2}, {16, 3}, {86400, 9}, {262143, 9}, {262144, 10}};
  for (const auto& [length, extent] : cases) EXPECT_EQ(extentFor(1000, 1000 + length), extent) << length;
  EXPECT_EQ(extentFor(INT64_MIN, INT64_MAX), 32);
}

TEST_F(Items, OfOneUidStandOnceInACalendar) {
  make(home_, event("u"));
  EXPECT_ANY_THROW(make(home_, event("u")));
}

TEST_F(Items, ThatAreErasedLeaveAMark) {
  const RowId id = make(home_, event("u", "DTSTART:20240501", {"RRULE:FREQ=DAILY"}));
  const auto before = database_->change();
  erase(id);
  EXPECT_EQ(number("SELECT count(*) FROM item") + number("SELECT count(*) FROM series_event"), 0);
  EXPECT_EQ(number("SELECT change FROM removed_item WHERE uid = 'u' AND item = " + std::to_string(id)),
            before + 1);
  EXPECT_NE(make(home_, event("u")), id);
}

TEST_F(Items, MarksAreDroppedWhenTheyAreOldUnlessASyncNeedsThem) {
  import(calendarText(event("synced")), "a.ics", {.title = "Account"});
  exec("UPDATE calendar SET type = 1 WHERE title = 'Account'");
  erase(item("synced")->id);
  erase(make(home_, event("old")));
  exec("UPDATE counter SET change = change + 9998");
  erase(make(home_, event("middle")));
  EXPECT_EQ(number("SELECT count(*) FROM removed_item"), 3);
  erase(make(home_, event("new")));
  EXPECT_EQ(text("SELECT group_concat(uid) FROM (SELECT uid FROM removed_item ORDER BY item)"),
            "synced,middle,new");
}

// The item, its change number's index and the counter: what queries know of it stays where it is.
TEST_F(Items, WithAnotherTextAloneWriteFewPages) {
  const RowId id = make(home_, event("u"));
  const std::string edited = event("u", "DTSTART:20240501T090000Z", {"LOCATION:here"});
  exec("PRAGMA wal_checkpoint(TRUNCATE)");
  Database::Transaction writing(*database_, Kind::writing);
  ItemTable items(*database_);
  items.replace(id, home_, edited, indexOf(items, home_, edited));
  writing.commit();
  constexpr std::uintmax_t kLogHeader = 32, kFrame = 24 + 4096;
  EXPECT_EQ(std::filesystem::file_size(folder_.file("store.sqlite-wal")), kLogHeader + 3 * kFrame);
}

TEST_F(Items, RemindersKeepTheirCreationWhenTheirTextHasNone) {
  const RowId list = calendar("Reminders", EntityType::reminder)->id;
  const RowId id = make(list, task("t"));
  exec("UPDATE reminder SET created = 1000");
  Database::Transaction writing(*database_, Kind::writing);
  ItemTable items(*database_);
  const std::string edited = task("t", {"DUE;VALUE=DATE:20240501"});
  items.replace(id, list, edited, indexOf(items, list, edited));
  writing.commit();
  EXPECT_EQ(number("SELECT created FROM reminder"), 1000);
  EXPECT_EQ(number("SELECT due FROM reminder WHERE due_is_floating"), 1714521600);
}

TEST_F(Items, ZonesAreFoundAgainByTheirKeys) {
  Database::Transaction writing(*database_, Kind::writing);
  ItemTable items(*database_);
  items.ensureTimeZone(home_, "Office", zoneText("Office", "+0330"));
  const ZoneFinder find = items.zoneFinder(home_);
  const Date date{std::chrono::seconds(1714543200)};
  for (const char* tzid : {"Europe/Berlin", "Office", "W. Europe Standard Time"}) {
    SCOPED_TRACE(tzid);
    const KeyedZone found = find(tzid);
    ASSERT_TRUE(found.zone);
    const auto again = ItemTable(*database_).zoneForKey(found.key);
    ASSERT_TRUE(again) << found.key;
    EXPECT_EQ(again->offsetAt(date), found.zone->offsetAt(date));
  }
  EXPECT_EQ(find("Europe/Berlin").key, "Europe/Berlin");
  EXPECT_EQ(find("Office").zone->offsetAt(date), std::chrono::minutes(210));
  EXPECT_FALSE(find("Nowhere").zone);
  for (const char* key : {"", "vtimezone:", "vtimezone:77", "vtimezone:1x", "No/Where"})
    EXPECT_FALSE(items.zoneForKey(key)) << key;
}

TEST_F(Items, ZonesOfARolledBackTransactionAreForgotten) {
  ItemTable items(*database_);
  const auto minutes = [&](const std::string& offset) {
    items.ensureTimeZone(home_, "Office", zoneText("Office", offset));
    return items.zoneFinder(home_)("Office").zone->offsetAt(Date{}).count() / 60;
  };
  {
    const Database::Transaction writing(*database_, Kind::writing);
    EXPECT_EQ(minutes("+0100"), 60);
  }
  Database::Transaction writing(*database_, Kind::writing);
  EXPECT_EQ(minutes("+0200"), 120);
  writing.commit();
}

TEST_F(Items, ZonesAreWhatTheStoreHasThemForNow) {
  ItemTable items(*database_);
  const ZoneFinder find = items.zoneFinder(home_);
  const auto minutes = [&] {
    return find("Office").zone ? find("Office").zone->offsetAt(Date{}).count() / 60 : 0;
  };
  EXPECT_EQ(minutes(), 0);
  EXPECT_FALSE(items.hasTimeZone(home_, "Office"));
  import(calendarText(zoneText("Office", "+0100") + event("a", "DTSTART;TZID=Office:20240501T090000")),
         "a.ics", {.title = "Calendar"});
  EXPECT_EQ(minutes(), 60) << "of a file whose items are in the calendar";
  EXPECT_FALSE(items.hasTimeZone(home_, "Office"));
  import(calendarText(zoneText("Office", "+0200") + event("b", "DTSTART;TZID=Office:20240501T090000")),
         "b.ics", {.title = "Calendar"});
  EXPECT_EQ(minutes(), 120) << "of the newest file";
  Database::Transaction writing(*database_, Kind::writing);
  items.ensureTimeZone(home_, "Office", zoneText("Office", "+0300"));
  EXPECT_EQ(minutes(), 120) << "what it meant";
  EXPECT_TRUE(items.hasTimeZone(home_, "Office"));
  writing.commit();
  import(calendarText(zoneText("Office", "+0400") + event("c", "DTSTART;TZID=Office:20240501T090000")),
         "c.ics", {.title = "Calendar"});
  EXPECT_EQ(minutes(), 120) << "from then on";
}

TEST_F(Items, GoWithTheirCalendar) {
  import(calendarText(zoneText("Office", "+0100") + event("a", "DTSTART;TZID=Office:20240501T090000") +
                      task("t")));
  const auto eraseCalendar = [&](RowId id) {
    Database::Transaction writing(*database_, Kind::writing);
    CalendarTable(*database_).erase(id);
    writing.commit();
  };
  eraseCalendar(calendar("Work")->id);
  EXPECT_EQ(number("SELECT count(*) FROM envelope"), 1);  // the list's part of the file stays
  EXPECT_EQ(number("SELECT count(*) FROM removed_item WHERE uid = 'a'"), 1);
  eraseCalendar(calendar("Work", EntityType::reminder)->id);
  EXPECT_EQ(number("SELECT count(*) FROM envelope") + number("SELECT count(*) FROM item"), 0);
  import(calendarText(event("b")));
  eraseCalendar(home_);
  EXPECT_TRUE(calendar("Work")->isDefault);
}

TEST(Identifier, IsARandomUuidInCapitals) {
  std::vector<std::string> all = newIdentifiers(1000);
  EXPECT_TRUE(std::ranges::is_sorted(all));
  all.push_back(newIdentifier());
  for (const std::string& identifier : all)
    EXPECT_THAT(identifier,
                testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
  EXPECT_EQ(std::set(all.begin(), all.end()).size(), 1001u);
}

}  // namespace
}  // namespace ek::embedded
