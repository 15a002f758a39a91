// What a store file says about itself, and how an older one becomes a present one.
#pragma once

#include <cstdint>

namespace SQLite {
class Database;
}

namespace ek::embedded {

// "Zuno", in SQLite's application_id.
constexpr std::int64_t kApplicationId = 0x5a756e6f;

// The statements of version 1.
extern const char kSchema[];

struct FileMarks {
  std::int64_t applicationId = 0;
  std::int64_t version = 0;
  bool isEmpty = true;  // there is no table
};
FileMarks readMarks(SQLite::Database& database);

// The schema version that this program writes.
std::int64_t schemaVersion();

// Within a writing transaction: brings an empty or older store to the present version; an empty one gets its
// first source, calendar and list.
void migrate(SQLite::Database& database, const FileMarks& marks);

}  // namespace ek::embedded
