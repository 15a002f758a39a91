// The store as a file: what stands at its path before SQLite touches it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace ek::embedded {

// Why a store cannot be opened, in words for people.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Makes the folders (0700) and an empty file (0600) where there is nothing; looks at what is there without
// changing it. Throws Refusal when that is a folder, a device, no SQLite file, or another program's.
void prepareFile(const std::string& path);

// The path as a URI for sqlite3_open_v2, without locks or a write-ahead log: for media that cannot change.
std::string immutableUri(const std::string& path);
// Whether a write-ahead log with contents stands beside the file.
bool hasWriteAheadLog(const std::string& path);
// Whether this process may not write the file and nobody else has it open: then SQLite must not leave files
// beside it that its owner could not write.
bool isOnlyReadable(const std::string& path);

// Tells one file from another that is put in its place, and one that is taken to be immutable from what
// somebody made of it. Zeros when there is none.
struct FileIdentity {
  std::uint64_t device = 0, inode = 0;
  std::int64_t size = 0, modified = 0;  // only `withContents`
  bool operator==(const FileIdentity&) const = default;
};
FileIdentity identityOf(const std::string& path, bool withContents);

}  // namespace ek::embedded
