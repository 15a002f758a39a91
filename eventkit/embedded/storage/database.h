// The embedded store's one SQLite file: opening and creating it, its schema, transactions, and the cheap
// question whether anything changed since. Used from one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace SQLite {
class Database;
class Statement;
}  // namespace SQLite

namespace ek::embedded {

using RowId = std::int64_t;

// $ZUNO_STORE, else $XDG_DATA_HOME/zuno/calendars.sqlite, else ~/.local/share/zuno/calendars.sqlite.
std::string defaultStorePath();

// One connection. Statements are prepared once and kept.
class Database {
 public:
  // Opens the file, creating it (0600, with its folders 0700) and the first source, calendar and list when it
  // does not exist. Null with a reason for people when it cannot be opened: no permission, no SQLite file,
  // made by a newer version. Such a file is never changed. A store that can only be read is opened for
  // reading, without leaving files beside it; it is taken to be immutable while nobody else has it open.
  static std::shared_ptr<Database> open(const std::string& path, std::string& why);
  // The connection that every store of this process on the same path shares; opened on first use, tried again
  // at most once a second after a failure, and then null. The reason is written to standard error once.
  // Costs one stat(): ask again on every call rather than keep the pointer, and a file that was put in the
  // place of the first one, or removed, is noticed: the answer is another object then. The connection is
  // closed when the program ends (or unloads this code), whoever still holds it: then the file alone holds
  // everything, without a log beside it.
  static std::shared_ptr<Database> shared(const std::string& path);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  const std::string& path() const;
  bool isReadOnly() const;
  // False when another file was put in the place of this one, or it is gone, or one that was taken to be
  // immutable was changed. Costs a stat().
  bool isCurrent() const;

  // A statement that is reset and unbound when it goes out of scope. What SQLite throws becomes ek::Exception
  // at the edge of the store (see guarded below).
  struct CachedStatement;
  class Lease {
   public:
    explicit Lease(CachedStatement& cached);
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    ~Lease();
    SQLite::Statement* operator->() const { return statement_; }
    SQLite::Statement& operator*() const { return *statement_; }

   private:
    CachedStatement& cached_;
    SQLite::Statement* statement_;
  };
  // `sql` must be a literal: its address is the key. The same one may be leased several times at once.
  Lease statement(const char* sql);

  // Everything until commit() or the end of the scope is one transaction. Writing ones take the write lock at
  // once (BEGIN IMMEDIATE) and wait for other processes for at most 10 seconds; then, as on every failure of
  // the file, ek::Exception. One for reading inside another joins it; one for writing cannot be nested.
  class Transaction {
   public:
    enum class Kind { reading, writing };
    Transaction(Database& database, Kind kind);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();
    void commit();

   private:
    Database& database_;
    Kind kind_;
    bool isJoined_;
    bool isOpen_ = true;
  };

  // While it lives, the connection keeps so many bytes more of the file in memory: for a transaction that
  // goes to and fro in much of it, whose changed pages would be written out and read again and again.
  class MoreMemory {
   public:
    MoreMemory(Database& database, std::size_t bytes);
    MoreMemory(const MoreMemory&) = delete;
    MoreMemory& operator=(const MoreMemory&) = delete;
    ~MoreMemory();

   private:
    Database& database_;
  };

  // A value that differs from an earlier one when any process (this one included) has committed anything in
  // between. Take it before reading what it stands for. Cheap enough for every call: the write-ahead log's
  // shared header is compared in memory, without a lock or system call, where SQLite keeps one; else PRAGMA
  // data_version. Never fails to see a committed change; may see one where there is none. Within a
  // transaction it is what it was when that began: what is read in there is no older. Values of different
  // Database objects differ.
  struct Version {
    std::array<std::uint64_t, 13> words{};
    bool operator==(const Version&) const = default;
  };
  Version version();

  // The store's change number: grows with every writing transaction that touches items or calendars.
  std::int64_t change();
  // Within a writing transaction: the number that this transaction's changes carry.
  std::int64_t nextChange();

  // Grows when a transaction ends without commit(): rows read or made in it may never have been.
  std::uint64_t rollbacks() const;
  RowId lastInsertedRow() const;
  SQLite::Database& connection();

 private:
  struct Connection;
  friend struct SharedDatabases;
  Version versionNow();
  void close();  // at the very end: nothing may be asked of it any more
  explicit Database(std::unique_ptr<Connection> connection);
  std::unique_ptr<Connection> connection_;
};

// Runs f and turns what SQLite throws into ek::Exception with SQLite's text.
[[noreturn]] void throwStoreError();  // call in a catch block only
template <class F>
auto guarded(F&& f) -> decltype(f()) {
  try {
    return f();
  } catch (...) {
    throwStoreError();
  }
}

}  // namespace ek::embedded
