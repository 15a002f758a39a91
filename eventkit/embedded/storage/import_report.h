// What an import is asked for, and what became of it.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ek::embedded {

struct ImportOptions {
  std::optional<std::string> title;  // of the calendars, in place of the file's
  // Make the calendars that the import creates so.
  bool isReadOnly = false;
  bool isSubscribed = false;
  // Called now and then with how many components of the present file are done.
  std::function<void(std::size_t done, std::size_t total)> progress = {};
};

struct Skipped {
  std::string file;
  std::size_t line = 0;  // 0: the file itself
  std::string reason;
};

struct ImportReport {
  std::size_t events = 0;  // items: a series with its overridden occurrences counts once
  std::size_t reminders = 0;
  std::size_t contacts = 0;
  std::vector<Skipped> skipped;
  std::size_t unreadableFiles = 0;  // of which nothing at all could be read
};

}  // namespace ek::embedded
