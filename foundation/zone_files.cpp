// Where zones come from: the system's zone files, and what TZ asks for.
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <list>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "foundation/time_zone.h"
#include "foundation/zone_table.h"

namespace foundation {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargestFile = 1 << 20;
constexpr const char* kSystemZone = "/etc/localtime";
constexpr const char* kSystemZoneName = "/etc/timezone";
constexpr std::string_view kUsualFolders[] = {"/usr/share/zoneinfo", "/usr/lib/zoneinfo",
                                              "/usr/share/lib/zoneinfo", "/var/db/timezone/zoneinfo"};

std::optional<std::string> readFile(const fs::path& path) {
  std::error_code failed;
  const std::uintmax_t size = fs::is_regular_file(path, failed) ? fs::file_size(path, failed) : 0;
  if (failed || size == 0 || size > kLargestFile) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  if (!file.read(bytes.data(), static_cast<std::streamsize>(size))) return std::nullopt;
  return bytes;
}

// A plain text, and looked for once: zones are asked for by name for each event of an import.
std::string zoneFolder() {
  if (const char* folder = std::getenv("TZDIR"); folder != nullptr && *folder != '\0') return folder;
  static const std::string usual = [] {
    std::error_code ignored;
    const auto exists = [&](std::string_view folder) { return fs::is_directory(folder, ignored); };
    const auto* const folder = std::ranges::find_if(kUsualFolders, exists);
    return std::string(folder == std::end(kUsualFolders) ? kUsualFolders[0] : *folder);
  }();
  return usual;
}

// Stays within the zone folder: "Europe/Berlin", no empty, "." or ".." part.
bool isZoneName(std::string_view name) {
  const auto isNamePart = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '+' || c == '.';
  };
  while (true) {
    const std::string_view part = name.substr(0, name.find('/'));
    if (part.empty() || part == "." || part == ".." || !std::ranges::all_of(part, isNamePart)) return false;
    if (part.size() == name.size()) return true;
    name.remove_prefix(part.size() + 1);
  }
}

// The part of a path behind the zone folder: "/usr/share/zoneinfo/Europe/Berlin" is Europe/Berlin, whatever
// the folder's name goes on with ("zoneinfo.default").
std::string nameFromPath(const std::string& path) {
  constexpr std::string_view kFolder = "/zoneinfo";
  const std::size_t folder = path.rfind(kFolder);
  if (folder == std::string::npos) return {};
  const std::size_t name = path.find('/', folder + kFolder.size());
  if (name == std::string::npos || !isZoneName(std::string_view(path).substr(name + 1))) return {};
  return path.substr(name + 1);
}

}  // namespace

class ZoneFiles {
 public:
  using Zone = std::shared_ptr<const TimeZone>;

  static Zone named(std::string_view name) {
    if (name == "UTC") return TimeZone::utc();
    if (!isZoneName(name)) return nullptr;
    const std::string path = zoneFolder().append("/").append(name);
    const std::scoped_lock lock(mutex());
    static std::unordered_map<std::string, Zone> known;
    const auto found = known.find(path);
    if (found != known.end()) return found->second;
    Zone zone = load(path, std::string(name));
    if (zone) known.emplace(path, zone);
    return zone;
  }

  // As the C library reads TZ: a zone's name, a file or a rule, the first two also behind a colon.
  static Zone fromVariable(std::string_view value) {
    if (value.empty()) return TimeZone::utc();
    const bool namesFile = value.front() == ':';
    if (namesFile) value.remove_prefix(1);
    if (value.empty()) return TimeZone::utc();
    if (value == kSystemZone) return ofSystem();
    if (value.front() == '/') return load(value, nameFromPath(std::string(value)));
    if (Zone zone = named(value)) return zone;
    return namesFile ? nullptr : TimeZone::fromPosixRule(value);
  }

  static Zone ofSystem() {
    Zone zone = load(kSystemZone, systemZoneName());
    return zone ? zone : TimeZone::utc();
  }

 private:
  static std::mutex& mutex() {
    static std::mutex only;
    return only;
  }

  static Zone load(const fs::path& path, std::string name) {
    const std::optional<std::string> bytes = readFile(path);
    if (!bytes) return nullptr;
    std::optional<ZoneTable> table = readZoneFile(*bytes);
    if (!table) return nullptr;
    return Zone(new TimeZone(std::move(name), std::move(*table)));
  }

  static std::string systemZoneName() {
    std::error_code failed;
    const fs::path target = fs::read_symlink(kSystemZone, failed);
    if (!failed) return nameFromPath((fs::path(kSystemZone).parent_path() / target).lexically_normal());
    // A copy of the zone's file: trust the name beside it when it still belongs to the copy.
    std::ifstream file(kSystemZoneName);
    std::string name;
    if (!std::getline(file, name) || !isZoneName(name)) return {};
    return readFile(fs::path(zoneFolder()) / name) == readFile(kSystemZone) ? name : std::string();
  }
};

std::shared_ptr<const TimeZone> TimeZone::named(std::string_view name) { return ZoneFiles::named(name); }

namespace {

// What a value of TZ means, found out once. There are few, and they stay: readers need no lock.
struct ZoneOfVariable {
  std::optional<std::string> variable;
  std::shared_ptr<const TimeZone> zone;

  bool isOf(const char* value) const {
    return value == nullptr ? !variable : variable && std::strcmp(variable->c_str(), value) == 0;
  }
};

const ZoneOfVariable& zoneOfVariable(const char* value) {
  static std::mutex& mutex = *new std::mutex;
  static std::list<ZoneOfVariable>& known = *new std::list<ZoneOfVariable>;
  const std::scoped_lock lock(mutex);
  const auto place =
      std::ranges::find_if(known, [&](const ZoneOfVariable& each) { return each.isOf(value); });
  if (place != known.end()) return *place;
  ZoneOfVariable found;
  if (value != nullptr) {
    found.variable = value;
    found.zone = ZoneFiles::fromVariable(value);
  }
  if (!found.zone) found.zone = ZoneFiles::ofSystem();
  return known.emplace_back(std::move(found));
}

}  // namespace

const std::shared_ptr<const TimeZone>& TimeZone::defaultZone() {
  static std::atomic<const ZoneOfVariable*> last = nullptr;
  const char* variable = std::getenv("TZ");
  const ZoneOfVariable* current = last.load(std::memory_order_acquire);
  if (current == nullptr || !current->isOf(variable)) {
    current = &zoneOfVariable(variable);
    last.store(current, std::memory_order_release);
  }
  return current->zone;
}

}  // namespace foundation
