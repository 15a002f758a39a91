#include "eventkit/embedded/storage/check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/storage/store_fixture.h"

namespace ek::embedded {
namespace {

class Check : public StoreFixture {
 protected:
  void SetUp() override {
    StoreFixture::SetUp();
    mayHaveFaults_ = true;
    import(calendarText(zoneText("Office", "+0100") + event("a", "DTSTART;TZID=Office:20240501T090000") +
                        event("s", "DTSTART:20240501", {"RRULE:FREQ=DAILY"}) + task("t")));
  }
};

TEST_F(Check, FindsEachKindOfFault) {
  ASSERT_EQ(findFaults(*database_), std::vector<std::string>());
  constexpr struct {
    const char* damage;
    const char* fault;
  } cases[] = {
      {"UPDATE single_event SET lo = lo + 1", "The item a is not found as its text says"},
      {"UPDATE single_event SET title = 'x'", "The item a is not found as its text says"},
      {"UPDATE single_event SET calendar = 1", "The item a is not found as its text says"},
      {"DELETE FROM series_event", "The item s is not found as its text says"},
      {"UPDATE reminder SET is_completed = 1", "The item t is not found as its text says"},
      {"UPDATE item SET text = 'rubbish' WHERE uid = 'a'", "The item a cannot be read"},
      {"UPDATE item SET uid = 'b' WHERE uid = 'a'", "The item b has another UID in its text (a)."},
      {"UPDATE item SET calendar = 1 WHERE uid = 't'",
       "The item t is in a calendar for the other kind of item."},
      {"UPDATE item SET change = 1000000", "is newer than the store's own count of changes."},
      {"DELETE FROM item WHERE uid = 'a'", "An index row of an event belongs to no item"},
      {"UPDATE calendar SET is_default = 1", "More than one calendar is the default"},
      {"DELETE FROM calendar_envelope", "belongs to no calendar"},
      {"PRAGMA foreign_keys = OFF; DELETE FROM calendar WHERE title = 'Work' AND kind = 0",
       "Rows of the table item refer to rows that are gone."},
  };
  for (const auto& [damage, fault] : cases) {
    SCOPED_TRACE(damage);
    std::string why;
    const std::string copy = folder_.file("copy.sqlite");
    exec("VACUUM INTO '" + copy + "'");
    const auto damaged = Database::open(copy, why);
    ASSERT_TRUE(damaged) << why;
    damaged->connection().exec(damage);
    EXPECT_THAT(findFaults(*damaged), testing::Contains(testing::HasSubstr(fault)));
    std::filesystem::remove(copy);
  }
}

TEST_F(Check, FindsDamagedPages) {
  for (int i = 0; i < 200; ++i) make(1, event("n" + std::to_string(i)));
  const std::string path = database_->path();
  database_.reset();
  {
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    const std::string rubbish(4096, '\x5a');
    for (int page = 30; page < 60; page += 2) file.seekp(page * 4096).write(rubbish.data(), 4096);
  }
  std::string why;
  database_ = Database::open(path, why);
  ASSERT_TRUE(database_) << why;
  EXPECT_THAT(findFaults(*database_), testing::Contains(testing::HasSubstr("The file is damaged")));
}

}  // namespace
}  // namespace ek::embedded
