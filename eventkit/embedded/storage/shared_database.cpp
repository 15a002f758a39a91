#include <array>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <map>
#include <mutex>
#include <pwd.h>
#include <set>
#include <unistd.h>

#include "eventkit/embedded/storage/database.h"

namespace ek::embedded {

struct SharedDatabases {
  struct Entry {
    std::weak_ptr<Database> database;
    std::optional<std::chrono::steady_clock::time_point> failed;
  };

  ~SharedDatabases() {
    for (const auto& [path, entry] : entries)
      if (const auto database = entry.database.lock()) database->close();
  }

  std::mutex mutex;
  std::map<std::string, Entry> entries;
  std::set<std::string> told;
};

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kRetryAfter = std::chrono::seconds(1);

SharedDatabases& sharedDatabases() {
  static SharedDatabases databases;
  return databases;
}

std::optional<std::string> environment(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

std::string homeFolder() {
  if (const auto home = environment("HOME")) return *home;
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 16384> buffer{};
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
    return found->pw_dir;
  return "/";
}

}  // namespace

std::string defaultStorePath() {
  if (const auto path = environment("ZUNO_STORE")) return *path;
  const auto dataHome = environment("XDG_DATA_HOME");
  // A relative one is to be ignored (XDG Base Directory).
  const bool isUsable = dataHome && dataHome->front() == '/';
  return (isUsable ? *dataHome : homeFolder() + "/.local/share") + "/zuno/calendars.sqlite";
}

std::shared_ptr<Database> Database::shared(const std::string& path) {
  SharedDatabases& databases = sharedDatabases();
  const std::lock_guard lock(databases.mutex);
  SharedDatabases::Entry& entry = databases.entries[path];
  if (auto database = entry.database.lock(); database && database->isCurrent()) return database;
  if (entry.failed && Clock::now() - *entry.failed < kRetryAfter) return nullptr;
  std::string why;
  auto database = open(path, why);
  if (!database) {
    entry.failed = Clock::now();
    if (databases.told.insert(why).second) std::cerr << why << '\n';
    return nullptr;
  }
  entry = {.database = database, .failed = std::nullopt};
  return database;
}

}  // namespace ek::embedded
