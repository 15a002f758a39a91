#include "eventkit/embedded/storage/database.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <sqlite3.h>
#include <thread>
#include <unordered_map>
#include <utility>

#include "eventkit/embedded/storage/migrations.h"
#include "eventkit/embedded/storage/store_file.h"
#include "eventkit/types.h"

namespace ek::embedded {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kLongestWait = 10s;
constexpr std::size_t kUsualMemory = std::size_t{16} << 20;
constexpr std::size_t kMostMemory = std::size_t{256} << 20;
constexpr int kWalRegionSize = 32768;
constexpr std::size_t kWalHeaderSize = 96;

// Waits for other processes in short steps, counted from the first refusal of a call.
class Patience {
 public:
  bool wait(int attempt) {
    const auto now = Clock::now();
    if (attempt == 0) deadline_ = now + kLongestWait;
    if (now >= deadline_) return false;
    std::this_thread::sleep_for(attempt < 10 ? 1ms : attempt < 50 ? 5ms : 20ms);
    return true;
  }

 private:
  Clock::time_point deadline_;
};

int waitForOthers(void* patience, int attempt) {
  return static_cast<Patience*>(patience)->wait(attempt) ? 1 : 0;
}

bool isBusy(const SQLite::Exception& error) {
  return error.getErrorCode() == SQLITE_BUSY || error.getErrorCode() == SQLITE_LOCKED;
}

// The last connection that closes would write the log back into the file: not before the file is known to be
// ours, and never when it is refused.
void keepLogOnClose(SQLite::Database& database, bool keep) {
  sqlite3_db_config(database.getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, keep ? 1 : 0, nullptr);
}

// Where the first bytes of the write-ahead log's index are shared between processes; null where they are not.
const std::uint64_t* sharedLogHeader(sqlite3* handle) {
  sqlite3_file* file = nullptr;
  if (sqlite3_file_control(handle, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
      file == nullptr || file->pMethods == nullptr || file->pMethods->iVersion < 2 ||
      file->pMethods->xShmMap == nullptr)
    return nullptr;
  void volatile* region = nullptr;
  if (file->pMethods->xShmMap(file, 0, kWalRegionSize, 0, &region) != SQLITE_OK) return nullptr;
  return static_cast<const std::uint64_t*>(const_cast<void*>(region));
}

bool hasLog(SQLite::Database& database) {
  return database.execAndGet("PRAGMA journal_mode").getString() == "wal";
}

std::uint64_t nextSerial() {
  static std::atomic<std::uint64_t> serial{0};
  return ++serial;
}

}  // namespace

struct Database::CachedStatement {
  CachedStatement(SQLite::Database& database, const char* sql) : statement(database, sql) {}
  SQLite::Statement statement;
  bool isLeased = false;
};

struct Database::Connection {
  static std::unique_ptr<Connection> open(const std::string& path) {
    if (isOnlyReadable(path)) return openImmutable(path);
    try {
      auto connection = std::make_unique<Connection>(path, path, SQLITE_OPEN_READWRITE);
      readMarks(connection->database);  // this is what opens the log
      connection->file = identityOf(path, false);
      return connection;
    } catch (const SQLite::Exception& error) {
      const bool mayBeReadable =
          error.getErrorCode() == SQLITE_CANTOPEN || error.getErrorCode() == SQLITE_READONLY;
      if (!mayBeReadable || hasWriteAheadLog(path)) throw;
    }
    return openImmutable(path);
  }

  static std::unique_ptr<Connection> openImmutable(const std::string& path) {
    const FileIdentity before = identityOf(path, true);
    auto connection =
        std::make_unique<Connection>(path, immutableUri(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    connection->isImmutable = true;
    connection->file = before;
    return connection;
  }

  Connection(std::string storePath, const std::string& name, int flags)
      : path(std::move(storePath)), database(name, flags) {
    sqlite3_busy_handler(database.getHandle(), waitForOthers, &patience);
    keepLogOnClose(database, true);
  }

  std::string path;
  Patience patience;
  SQLite::Database database;
  std::unordered_map<const char*, std::deque<CachedStatement>> statements;
  std::uint64_t serial = nextSerial();
  std::uint64_t rollbacks = 0;
  int depth = 0;
  Transaction::Kind kind = Transaction::Kind::reading;
  Version versionAtBegin;
  std::int64_t pendingChange = 0;
  bool isReadOnly = false;
  bool isImmutable = false;
  // Stays mapped as long as the connection is open and has a log, which nobody can take away meanwhile.
  const std::uint64_t* logHeader = nullptr;
  FileIdentity file;
};

namespace {

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw Refusal("The calendar store " + path + " " + reason);
}

void checkMarks(const std::string& path, const FileMarks& marks) {
  if (marks.version > schemaVersion()) refuse(path, "was made by a newer version of this program.");
  if (!marks.isEmpty && marks.applicationId != kApplicationId)
    refuse(path, "is no calendar store (a database of another program).");
}

// Two processes that create the store at once: the second finds the work done.
void bringUpToDate(const std::string& path, SQLite::Database& database) {
  database.exec("BEGIN IMMEDIATE");
  try {
    const FileMarks marks = readMarks(database);
    checkMarks(path, marks);
    if (marks.version < schemaVersion()) migrate(database, marks);
    database.exec("COMMIT");
  } catch (...) {
    if (sqlite3_get_autocommit(database.getHandle()) == 0) database.tryExec("ROLLBACK");
    throw;
  }
}

void useMemory(SQLite::Database& database, std::size_t bytes) {
  database.tryExec("PRAGMA cache_size = -" + std::to_string(bytes / 1024));
}

// Changing the journal's mode does not ask the busy handler.
void useWriteAheadLog(SQLite::Database& database) {
  Patience patience;
  for (int attempt = 0;; ++attempt) {
    try {
      database.exec("PRAGMA journal_mode = WAL");
      return;
    } catch (const SQLite::Exception& error) {
      if (!isBusy(error) || !patience.wait(attempt)) throw;
    }
  }
}

}  // namespace

Database::Lease::Lease(CachedStatement& cached) : cached_(cached), statement_(&cached.statement) {
  cached_.isLeased = true;
}

Database::Lease::~Lease() {
  statement_->tryReset();
  try {
    statement_->clearBindings();
  } catch (const SQLite::Exception&) {  // declared, yet sqlite3_clear_bindings always succeeds
  }
  cached_.isLeased = false;
}

Database::Database(std::unique_ptr<Connection> connection) : connection_(std::move(connection)) {}

Database::~Database() = default;

void Database::close() { connection_.reset(); }

std::shared_ptr<Database> Database::open(const std::string& givenPath, std::string& why) {
  const std::string path = std::filesystem::absolute(givenPath).lexically_normal().string();
  try {
    prepareFile(path);
    auto connection = Connection::open(path);
    const FileMarks marks = readMarks(connection->database);
    SQLite::Database& database = connection->database;
    connection->isReadOnly = sqlite3_db_readonly(database.getHandle(), "main") == 1;
    checkMarks(path, marks);
    if (marks.version < schemaVersion()) {
      if (connection->isReadOnly) refuse(path, "cannot be brought up to date: it can only be read.");
      bringUpToDate(path, database);
    }
    if (!connection->isReadOnly) useWriteAheadLog(database);
    database.exec(
        "PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON; PRAGMA journal_size_limit = 4194304;"
        "PRAGMA temp_store = MEMORY");
    useMemory(database, kUsualMemory);
    readMarks(database);  // maps the log's shared memory
    // Asking where there is no log would make one's shared file.
    if (!connection->isImmutable && hasLog(database))
      connection->logHeader = sharedLogHeader(database.getHandle());
    keepLogOnClose(database, false);
    return std::shared_ptr<Database>(new Database(std::move(connection)));
  } catch (const Refusal& refusal) {
    why = refusal.what();
  } catch (const SQLite::Exception& error) {
    why = "The calendar store " + path + " cannot be opened: " + error.what() + ".";
  } catch (const std::filesystem::filesystem_error& error) {
    why = "The calendar store " + path + " cannot be opened: " + error.code().message() + ".";
  }
  return nullptr;
}

const std::string& Database::path() const { return connection_->path; }
bool Database::isReadOnly() const { return connection_->isReadOnly; }
bool Database::isCurrent() const {
  return connection_->file == identityOf(connection_->path, connection_->isImmutable);
}
std::uint64_t Database::rollbacks() const { return connection_->rollbacks; }
RowId Database::lastInsertedRow() const { return connection_->database.getLastInsertRowid(); }
SQLite::Database& Database::connection() { return connection_->database; }

Database::Lease Database::statement(const char* sql) {
  std::deque<CachedStatement>& candidates = connection_->statements[sql];
  for (CachedStatement& candidate : candidates)
    if (!candidate.isLeased) return Lease(candidate);
  return Lease(candidates.emplace_back(connection_->database, sql));
}

Database::Transaction::Transaction(Database& database, Kind kind)
    : database_(database), kind_(kind), isJoined_(database.connection_->depth > 0) {
  Connection& connection = *database_.connection_;
  if (isJoined_ && kind == Kind::writing && connection.kind == Kind::writing)
    throwException("A transaction for writing cannot be nested.");
  if (isJoined_ && kind == Kind::writing)
    throwException("A transaction for reading cannot become one for writing.");
  if (!isJoined_) {
    guarded([&] { database_.statement(kind == Kind::writing ? "BEGIN IMMEDIATE" : "BEGIN")->exec(); });
    connection.kind = kind;
    connection.pendingChange = 0;
    try {
      connection.versionAtBegin = database_.versionNow();
    } catch (...) {
      connection.database.tryExec("ROLLBACK");
      throw;
    }
  }
  ++connection.depth;
}

Database::Transaction::~Transaction() {
  if (!isOpen_) return;
  Connection& connection = *database_.connection_;
  --connection.depth;
  if (isJoined_) return;
  if (kind_ == Kind::writing) ++connection.rollbacks;
  connection.pendingChange = 0;
  if (sqlite3_get_autocommit(connection.database.getHandle()) == 0) connection.database.tryExec("ROLLBACK");
}

void Database::Transaction::commit() {
  Connection& connection = *database_.connection_;
  if (!isJoined_) guarded([&] { database_.statement("COMMIT")->exec(); });
  --connection.depth;
  isOpen_ = false;
}

Database::MoreMemory::MoreMemory(Database& database, std::size_t bytes) : database_(database) {
  useMemory(database_.connection(), std::min(kUsualMemory + bytes, kMostMemory));
}

Database::MoreMemory::~MoreMemory() { useMemory(database_.connection(), kUsualMemory); }

// A commit writes both copies of the header, each time with another change counter and checksum, and a
// restart of the log (after a checkpoint) picks another salt: no earlier content of the 96 bytes comes back.
// A copy that was caught half-written equals neither the old nor the new content and counts as a change.
Database::Version Database::version() {
  return connection_->depth > 0 ? connection_->versionAtBegin : versionNow();
}

Database::Version Database::versionNow() {
  Version version;
  version.words.back() = connection_->serial;
  if (const std::uint64_t* header = connection_->logHeader) {
    for (std::size_t i = 0; i < kWalHeaderSize / sizeof(std::uint64_t); ++i)
      version.words[i] = __atomic_load_n(header + i, __ATOMIC_ACQUIRE);
    return version;
  }
  guarded([&] {
    const Lease dataVersion = statement("PRAGMA data_version");
    dataVersion->executeStep();
    version.words[0] = static_cast<std::uint64_t>(dataVersion->getColumn(0).getInt64());
  });
  version.words[1] = static_cast<std::uint64_t>(sqlite3_total_changes64(connection_->database.getHandle()));
  return version;
}

std::int64_t Database::change() {
  return guarded([&] {
    const Lease read = statement("SELECT change FROM counter");
    read->executeStep();
    return read->getColumn(0).getInt64();
  });
}

std::int64_t Database::nextChange() {
  if (connection_->pendingChange == 0) {
    guarded([&] { statement("UPDATE counter SET change = change + 1")->exec(); });
    connection_->pendingChange = change();
  }
  return connection_->pendingChange;
}

void throwStoreError() {
  try {
    throw;
  } catch (const SQLite::Exception& error) {
    if (isBusy(error)) throwException("The calendar store is kept busy by another program.");
    throwException(std::string("The calendar store cannot be read or written: ") + error.what() + ".");
  }
}

}  // namespace ek::embedded
