#include "eventkit/embedded/storage/store_file.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sqlite3.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "eventkit/embedded/storage/migrations.h"

namespace ek::embedded {
namespace {

constexpr std::string_view kMagic("SQLite format 3\0", 16);
constexpr std::size_t kHeaderSize = 100;
constexpr std::size_t kVersionOffset = 60;
constexpr std::size_t kApplicationOffset = 68;
using Header = std::array<char, kHeaderSize>;

std::string systemReason(int number) { return std::generic_category().message(number); }

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw Refusal("The calendar store " + path + " " + reason);
}

void makeFolders(const std::filesystem::path& folder) {
  if (folder.empty() || std::filesystem::exists(folder)) return;
  makeFolders(folder.parent_path());
  if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
    throw Refusal("The folder " + folder.string() + " cannot be made: " + systemReason(errno));
}

void createFile(const std::string& path) {
  makeFolders(std::filesystem::path(path).parent_path());
  const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file >= 0)
    ::close(file);
  else if (errno != EEXIST)
    refuse(path, "cannot be created: " + systemReason(errno));
}

struct FreeFilename {
  void operator()(char* name) const noexcept { sqlite3_free_filename(name); }
};

// Closing a plain descriptor would drop every lock that this process holds on the file, also those of
// another connection; SQLite's own file layer knows about them.
Header readHeader(const std::string& path) {
  sqlite3_vfs* vfs = sqlite3_vfs_find(nullptr);
  const std::unique_ptr<char, FreeFilename> name(
      const_cast<char*>(sqlite3_create_filename(path.c_str(), "", "", 0, nullptr)));
  const auto memory = std::make_unique<std::max_align_t[]>(
      static_cast<std::size_t>(vfs->szOsFile) / sizeof(std::max_align_t) + 1);
  auto* file = reinterpret_cast<sqlite3_file*>(memory.get());
  int flags = 0;
  Header header{};
  if (vfs->xOpen(vfs, name.get(), file, SQLITE_OPEN_READONLY | SQLITE_OPEN_MAIN_DB, &flags) != SQLITE_OK)
    refuse(path, "cannot be opened: " + systemReason(errno));
  const int read = file->pMethods->xRead(file, header.data(), static_cast<int>(header.size()), 0);
  file->pMethods->xClose(file);
  if (read != SQLITE_OK && read != SQLITE_IOERR_SHORT_READ) refuse(path, "cannot be read.");
  return header;
}

std::int64_t bigEndian(const Header& header, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(header[offset + i]);
  return value;
}

void examine(const std::string& path) {
  const Header header = readHeader(path);
  if (std::string_view(header.data(), kMagic.size()) != kMagic)
    refuse(path, "is no calendar store (not a SQLite file).");
  if (bigEndian(header, kApplicationOffset) != kApplicationId)
    refuse(path, "is no calendar store (a database of another program).");
  if (bigEndian(header, kVersionOffset) > schemaVersion())
    refuse(path, "was made by a newer version of this program.");
}

std::string percentEncoded(std::string_view path) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char byte : path) {
    if (byte == '%' || byte == '?' || byte == '#') {
      encoded += '%';
      encoded += kDigits[static_cast<unsigned char>(byte) >> 4];
      encoded += kDigits[byte & 0x0f];
    } else {
      encoded += byte;
    }
  }
  return encoded;
}

}  // namespace

void prepareFile(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) refuse(path, "cannot be opened: " + systemReason(errno));
    createFile(path);
    return;
  }
  if (S_ISDIR(status.st_mode)) refuse(path, "is a folder.");
  if (!S_ISREG(status.st_mode)) refuse(path, "is no regular file.");
  if (status.st_size > 0) examine(path);
}

std::string immutableUri(const std::string& path) { return "file:" + percentEncoded(path) + "?immutable=1"; }

bool hasWriteAheadLog(const std::string& path) {
  struct stat status {};
  return stat((path + "-wal").c_str(), &status) == 0 && status.st_size > 0;
}

bool isOnlyReadable(const std::string& path) {
  struct stat status {};
  return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0 &&
         stat((path + "-shm").c_str(), &status) != 0 && !hasWriteAheadLog(path);
}

FileIdentity identityOf(const std::string& path, bool withContents) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return {};
  FileIdentity identity{.device = status.st_dev, .inode = status.st_ino};
  if (withContents) {
    identity.size = status.st_size;
    std::error_code ignored;
    identity.modified = std::filesystem::last_write_time(path, ignored).time_since_epoch().count();
  }
  return identity;
}

}  // namespace ek::embedded
