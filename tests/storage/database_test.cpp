#include "eventkit/embedded/storage/database.h"

#include <SQLiteCpp/Database.h>
#include <chrono>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <sqlite3.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "eventkit/embedded/storage/calendar_table.h"
#include "eventkit/embedded/storage/migrations.h"
#include "tests/storage/process.h"
#include "tests/storage/temporary_folder.h"

namespace ek::embedded {
namespace {

using zuno_test::TemporaryFolder;
using Kind = Database::Transaction::Kind;

std::string contentsOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void write(const std::string& path, const std::string& contents) {
  std::ofstream(path, std::ios::binary) << contents;
}

unsigned modeOf(const std::string& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return status.st_mode & 0777u;
}

// SQLite knows the locks of its own process by heart: what another one does has to be done by another one.
void elsewhere(const std::string& path, const std::string& sql) {
  const zuno_test::Outcome outcome = zuno_test::run({ZUNO_RUN_SQL, path, sql});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
}

class StoreFile : public testing::Test {
 protected:
  std::shared_ptr<Database> open() { return Database::open(path_, why_); }
  void create() { ASSERT_TRUE(open()) << why_; }
  void exec(const std::string& sql) {
    SQLite::Database(path_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE).exec(sql);
  }
  void expectRefusedUntouched(const std::string& reason) {
    const std::string before = contentsOf(path_);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(why_, testing::HasSubstr(reason));
    EXPECT_EQ(contentsOf(path_), before);
  }

  TemporaryFolder folder_;
  std::string path_ = folder_.file("deep/er/calendars.sqlite");
  std::string why_;
};

std::vector<CalendarRow> calendarsOf(Database& database) {
  const Database::Transaction reading(database, Kind::reading);
  return CalendarTable(database).all();
}

TEST_F(StoreFile, IsCreatedForItsOwnerAloneWithOneCalendarAndOneList) {
  const auto database = open();
  ASSERT_TRUE(database) << why_;
  EXPECT_EQ(modeOf(path_), 0600u);
  EXPECT_EQ(modeOf(folder_.file("deep")), 0700u);
  EXPECT_EQ(modeOf(folder_.file("deep/er")), 0700u);
  const auto calendars = calendarsOf(*database);
  ASSERT_EQ(calendars.size(), 2u);
  EXPECT_EQ(calendars[0].title, "Calendar");
  EXPECT_EQ(calendars[0].kind, EntityType::event);
  EXPECT_EQ(calendars[1].title, "Reminders");
  EXPECT_EQ(calendars[1].kind, EntityType::reminder);
  for (const auto& calendar : calendars) {
    EXPECT_EQ(calendar.color, (Color{27.0 / 255, 173.0 / 255, 248.0 / 255, 1}));
    EXPECT_TRUE(calendar.isDefault);
    EXPECT_TRUE(calendar.allowsModification);
    EXPECT_EQ(calendar.identifier.size(), 36u);
  }
}

TEST_F(StoreFile, IsNotOfAnotherProgramWhileOneOfOursCreatesIt) {
  path_ = folder_.file("calendars.sqlite");
  SQLite::Database early(path_, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  int statements = 0;
  std::function<void()> beforeTheSecond = [&] {
    if (++statements == 2) create();
  };
  const auto atStart = [](unsigned, void* action, void*, void* sql) {
    const bool isInner = std::string_view(static_cast<const char*>(sql)).starts_with("--");
    if (!isInner) (*static_cast<std::function<void()>*>(action))();
    return 0;
  };
  sqlite3_trace_v2(early.getHandle(), SQLITE_TRACE_STMT, atStart, &beforeTheSecond);
  const FileMarks before = readMarks(early);
  EXPECT_TRUE(before.isEmpty);
  EXPECT_EQ(before.applicationId, 0);
  EXPECT_EQ(before.version, 0);
  const FileMarks after = readMarks(early);
  EXPECT_FALSE(after.isEmpty);
  EXPECT_EQ(after.applicationId, kApplicationId);
  EXPECT_EQ(after.version, schemaVersion());
}

TEST_F(StoreFile, AnEmptyFileIsANewStore) {
  path_ = folder_.file("empty.sqlite");
  write(path_, "");
  const auto database = open();
  ASSERT_TRUE(database) << why_;
  EXPECT_EQ(calendarsOf(*database).size(), 2u);
}

TEST_F(StoreFile, WhatIsNoStoreIsRefusedAndLeftAsItWas) {
  path_ = folder_.file("x");
  write(path_, "BEGIN:VCALENDAR\r\n");
  expectRefusedUntouched("not a SQLite file");
  write(path_, std::string("SQLite format 3\0", 16) + std::string(5000, 'x'));
  expectRefusedUntouched("another program");

  path_ = folder_.file("foreign");
  exec("CREATE TABLE t (x); INSERT INTO t VALUES (1)");
  expectRefusedUntouched("another program");
  path_ = folder_.file("foreign-wal");
  exec("PRAGMA application_id = 7; PRAGMA journal_mode = WAL; CREATE TABLE t (x)");
  expectRefusedUntouched("another program");

  path_ = folder_.path().string();
  EXPECT_EQ(open(), nullptr);
  EXPECT_THAT(why_, testing::HasSubstr("is a folder"));
  path_ = "/dev/full";
  EXPECT_EQ(open(), nullptr);
  EXPECT_THAT(why_, testing::HasSubstr("no regular file"));
  path_ = folder_.file("foreign") + "/store.sqlite";
  EXPECT_EQ(open(), nullptr);
  EXPECT_THAT(why_, testing::HasSubstr("Not a directory"));
}

TEST_F(StoreFile, OfANewerVersionThatOnlyTheLogTellsIsRefusedAndLeftAsItWas) {
  create();
  zuno_test::Process newer({ZUNO_RUN_SQL, path_, "PRAGMA user_version = 99", "hold"});
  newer.waitForOutput();
  newer.kill();
  newer.wait();
  const std::string log = contentsOf(path_ + "-wal");
  ASSERT_FALSE(log.empty());
  expectRefusedUntouched("newer version");
  EXPECT_EQ(contentsOf(path_ + "-wal"), log);
}

// Runs f in a process of a user who owns nothing here, where root would be stopped by no permission.
template <class F>
int asNobody(F&& f) {
  constexpr uid_t kNobody = 65534;
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(99);
    _exit(f());
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(StoreFile, ThatCannotBeWrittenIsRead) {
  create();
  const std::string before = contentsOf(path_);
  const std::string inner = folder_.file("deep/er");
  for (const std::string& path : {folder_.path().string(), folder_.file("deep")}) chmod(path.c_str(), 0755);
  chmod(path_.c_str(), 0444);
  for (const unsigned mode : {0555u, 0777u}) {  // with and without room for SQLite's files beside it
    SCOPED_TRACE(mode);
    chmod(inner.c_str(), mode);
    EXPECT_EQ(asNobody([&] {
                const auto database = open();
                if (!database || !database->isReadOnly()) return 1;
                if (calendarsOf(*database).size() != 2) return 2;
                if (database->version() != database->version()) return 3;
                try {
                  const Database::Transaction writing(*database, Kind::writing);
                  database->nextChange();
                } catch (const ek::Exception&) {
                  return 0;
                }
                return 4;
              }),
              0);
  }
  EXPECT_EQ(contentsOf(path_), before);
  for (const auto& entry : std::filesystem::directory_iterator(inner))
    EXPECT_EQ(entry.path().string(), path_);
}

TEST_F(StoreFile, ThatCannotBeReadOrMadeIsRefused) {
  create();
  chmod(folder_.path().c_str(), 0755);
  const auto refused = [&](const char* reason) {
    return asNobody([&] { return !open() && why_.find(reason) != std::string::npos ? 0 : 1; });
  };
  EXPECT_EQ(refused("Permission denied"), 0);
  path_ = folder_.file("new/store.sqlite");
  EXPECT_EQ(refused("cannot be made: Permission denied"), 0);
}

TEST_F(StoreFile, UncommittedChangesAreGone) {
  const auto database = open();
  CalendarRow row;
  row.title = "Gone";
  {
    const Database::Transaction writing(*database, Kind::writing);
    CalendarTable(*database).insert(row);
  }
  EXPECT_EQ(database->rollbacks(), 1u);
  EXPECT_EQ(calendarsOf(*database).size(), 2u);
}

TEST_F(StoreFile, WaitsForAnotherWriter) {
  const auto database = open();
  SQLite::Database other(path_, SQLITE_OPEN_READWRITE);
  other.exec("BEGIN IMMEDIATE");
  std::thread release([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    other.exec("COMMIT");
  });
  const auto start = std::chrono::steady_clock::now();
  { Database::Transaction(*database, Kind::writing).commit(); }
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
  release.join();
}

TEST_F(StoreFile, HasMoreMemoryForAWhile) {
  const auto database = open();
  ASSERT_TRUE(database) << why_;
  const auto kilobytes = [&] { return -database->connection().execAndGet("PRAGMA cache_size").getInt(); };
  const int usual = kilobytes();
  {
    const Database::MoreMemory memory(*database, std::size_t{1} << 20);
    EXPECT_EQ(kilobytes(), usual + 1024);
  }
  EXPECT_EQ(kilobytes(), usual);
}

class StoreVersion : public StoreFile {
 protected:
  void SetUp() override {
    database_ = open();
    ASSERT_TRUE(database_) << why_;
    last_ = database_->version();
  }
  void touch() {
    Database::Transaction writing(*database_, Kind::writing);
    database_->nextChange();
    writing.commit();
  }
  void elsewhere(const std::string& sql) { embedded::elsewhere(path_, sql); }
  bool hasChanged() {
    const auto now = database_->version();
    return !(std::exchange(last_, now) == now);
  }

  std::shared_ptr<Database> database_;
  Database::Version last_;
};

constexpr char kElsewhere[] = "UPDATE counter SET change = change + 1";

TEST_F(StoreVersion, StaysWhileNothingIsCommitted) {
  EXPECT_FALSE(hasChanged());
  database_->change();
  EXPECT_FALSE(hasChanged());
  { const Database::Transaction writing(*database_, Kind::writing); }
  EXPECT_FALSE(hasChanged());
}

TEST_F(StoreVersion, ChangesWithOwnAndOtherProcessesCommits) {
  for (int round = 0; round < 20; ++round) {
    SCOPED_TRACE(round);
    touch();
    EXPECT_TRUE(hasChanged());
    elsewhere(kElsewhere);
    EXPECT_TRUE(hasChanged());
    EXPECT_FALSE(hasChanged());
  }
  EXPECT_EQ(database_->change(), 41);
}

// After the log was written back and starts anew its length may well be what it was.
TEST_F(StoreVersion, ChangesWhenTheLogIsRestartedInBetween) {
  for (const char* mode : {"PASSIVE", "FULL", "RESTART", "TRUNCATE"}) {
    SCOPED_TRACE(mode);
    const std::string checkpoint = std::string("PRAGMA wal_checkpoint(") + mode + ")";
    elsewhere(checkpoint);
    elsewhere(kElsewhere);
    hasChanged();
    for (int round = 0; round < 5; ++round) {
      const auto before = database_->change();
      elsewhere(checkpoint + "; " + kElsewhere);
      EXPECT_TRUE(hasChanged());
      EXPECT_EQ(database_->change(), before + 1);
      database_->connection().exec(checkpoint);
      hasChanged();
      elsewhere(kElsewhere);
      EXPECT_TRUE(hasChanged());
    }
  }
}

// What is read in a transaction is of its beginning, whatever others commit meanwhile.
TEST_F(StoreVersion, WithinATransactionIsThatOfItsBeginning) {
  {
    const Database::Transaction reading(*database_, Kind::reading);
    const auto before = database_->change();
    elsewhere(kElsewhere);
    EXPECT_FALSE(hasChanged());
    EXPECT_EQ(database_->change(), before);
  }
  EXPECT_TRUE(hasChanged());
}

TEST(SharedDatabase, IsOneUntilAnotherFileStandsInItsPlace) {
  const TemporaryFolder folder;
  const std::string path = folder.file("store.sqlite");
  const auto first = Database::shared(path);
  ASSERT_TRUE(first);
  EXPECT_EQ(Database::shared(path), first);
  {
    std::string why;
    Database::open(folder.file("other.sqlite"), why);
  }
  std::filesystem::rename(folder.file("other.sqlite"), path);
  const auto second = Database::shared(path);
  ASSERT_TRUE(second);
  EXPECT_NE(second, first);
  EXPECT_FALSE(second->version() == first->version());
  std::filesystem::remove(path);
  EXPECT_NE(Database::shared(path), second);
}

TEST(SharedDatabase, SaysOnceWhyItCannotBeOpened) {
  const TemporaryFolder folder;
  testing::internal::CaptureStderr();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Database::shared(folder.path().string()), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "The calendar store " + folder.path().string() + " is a folder.\n");
}

}  // namespace
}  // namespace ek::embedded
