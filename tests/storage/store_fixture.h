// A store of the test's own, and words for bringing files into it and out of it.
#pragma once

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Database.h>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/storage/calendar_table.h"
#include "eventkit/embedded/storage/check.h"
#include "eventkit/embedded/storage/exporter.h"
#include "eventkit/embedded/storage/importer.h"
#include "eventkit/embedded/storage/item_table.h"
#include "tests/storage/temporary_folder.h"

namespace ek::embedded {

class StoreFixture : public testing::Test {
 protected:
  using Kind = Database::Transaction::Kind;

  void SetUp() override {
    std::string why;
    database_ = Database::open(folder_.file("store.sqlite"), why);
    ASSERT_TRUE(database_) << why;
  }
  void TearDown() override {
    if (mayHaveFaults_) return;
    EXPECT_EQ(findFaults(*database_), std::vector<std::string>());
  }

  std::string write(const std::string& name, const std::string& text) {
    std::ofstream(folder_.file(name), std::ios::binary) << text;
    return folder_.file(name);
  }
  ImportReport import(const std::string& text, const std::string& name = "file.ics",
                      ImportOptions options = {}) {
    Importer importer(*database_, std::move(options));
    importer.importPath(write(name, text));
    return importer.report();
  }
  std::string exported(const std::vector<std::string>& titles = {}) {
    std::string text;
    Exporter(*database_).write(titles, [&](std::string_view piece) { text += piece; });
    return text;
  }
  std::int64_t number(const std::string& sql) { return database_->connection().execAndGet(sql).getInt64(); }
  std::string text(const std::string& sql) { return database_->connection().execAndGet(sql).getString(); }
  void exec(const std::string& sql) { database_->connection().exec(sql); }

  std::optional<CalendarRow> calendar(const std::string& title, EntityType kind = EntityType::event) {
    const Database::Transaction reading(*database_, Kind::reading);
    return CalendarTable(*database_).findByTitle(title, kind);
  }
  std::optional<ItemRow> item(const std::string& uid) {
    const Database::Transaction reading(*database_, Kind::reading);
    return ItemTable(*database_).findByUid(uid);
  }

  // An item made here, as the saving side does it.
  RowId make(RowId calendar, const std::string& text) {
    Database::Transaction writing(*database_, Kind::writing);
    ItemTable items(*database_);
    const RowId id = items.insert(calendar, {}, text, indexOf(items, calendar, text));
    writing.commit();
    return id;
  }
  ItemIndex indexOf(ItemTable& items, RowId calendar, const std::string& text) {
    std::string why;
    const auto index = indexItem(ical::parseComponents(text), items.zoneFinder(calendar), why);
    EXPECT_TRUE(index) << why;
    return index.value_or(ItemIndex());
  }

  zuno_test::TemporaryFolder folder_;
  std::shared_ptr<Database> database_;
  bool mayHaveFaults_ = false;
};

// Lines joined by CRLF.
inline std::string lines(const std::vector<std::string>& each) {
  std::string text;
  for (const std::string& line : each) text += line + "\r\n";
  return text;
}

inline std::string event(const std::string& uid, const std::string& start = "DTSTART:20240501T090000Z",
                         const std::vector<std::string>& more = {}) {
  std::vector<std::string> all = {"BEGIN:VEVENT", "UID:" + uid, start};
  all.insert(all.end(), more.begin(), more.end());
  all.emplace_back("END:VEVENT");
  return lines(all);
}

inline std::string task(const std::string& uid, const std::vector<std::string>& more = {}) {
  std::vector<std::string> all = {"BEGIN:VTODO", "UID:" + uid};
  all.insert(all.end(), more.begin(), more.end());
  all.emplace_back("END:VTODO");
  return lines(all);
}

inline std::string calendarText(const std::string& contents,
                                const std::vector<std::string>& header = {"VERSION:2.0", "PRODID:-//t//t//EN",
                                                                          "X-WR-CALNAME:Work"}) {
  return "BEGIN:VCALENDAR\r\n" + lines(header) + contents + "END:VCALENDAR\r\n";
}

inline std::string zoneText(const std::string& tzid, const std::string& offset) {
  return lines({"BEGIN:VTIMEZONE", "TZID:" + tzid, "BEGIN:STANDARD", "DTSTART:19700101T000000",
                "TZOFFSETFROM:" + offset, "TZOFFSETTO:" + offset, "END:STANDARD", "END:VTIMEZONE"});
}

}  // namespace ek::embedded
