#include <cstddef>
#include <cstdio>
#include <fmt/format.h>
#include <unistd.h>
#include <utility>

#include "eventkit/embedded/storage/importer.h"
#include "zunocal/commands.h"
#include "zunocal/json.h"
#include "zunocal/plain.h"

namespace zunocal {
namespace {

using ek::embedded::ImportOptions;
using ek::embedded::ImportReport;
using ek::embedded::Skipped;

void showProgress(std::size_t done, std::size_t total) {
  if (total == 0) return;
  fmt::print(stderr, "\r{:3}% of {}{}", 100 * done / total, total, done == total ? "\r\x1b[K" : "");
  std::fflush(stderr);
}

std::string jsonOf(const Skipped& skipped) {
  return fmt::format("{{\"file\":{},\"line\":{},\"reason\":{}}}", jsonText(skipped.file), skipped.line,
                     jsonText(skipped.reason));
}

void printJson(const ImportReport& report) {
  std::string skipped;
  for (const Skipped& part : report.skipped) skipped += (skipped.empty() ? "" : ",") + jsonOf(part);
  fmt::print("{{\"events\":{},\"reminders\":{},\"contacts\":{},\"skipped\":[{}]}}\n", report.events,
             report.reminders, report.contacts, skipped);
}

std::string counted(std::size_t count, std::string_view one) {
  return fmt::format("{} {}{}", count, one, count == 1 ? "" : "s");
}

void printText(const ImportReport& report) {
  for (const auto& [file, line, reason] : report.skipped) {
    if (line == 0)
      fmt::print(stderr, "{}: {}\n", plain(file), plain(reason));
    else
      fmt::print(stderr, "{}:{}: {}\n", plain(file), line, plain(reason));
  }
  fmt::print("Imported {}, {} and {}; {} skipped.\n", counted(report.events, "event"),
             counted(report.reminders, "reminder"), counted(report.contacts, "contact"),
             report.skipped.size());
}

}  // namespace

int importFiles(Database& database, const ImportRequest& request, bool asJson) {
  if (database.isReadOnly()) {
    fmt::print(stderr, "zunocal: The calendar store {} can only be read.\n", database.path());
    return 1;
  }
  ImportOptions options{
      .title = request.title, .isReadOnly = request.isReadOnly, .isSubscribed = request.isSubscribed};
  if (isatty(STDERR_FILENO) == 1) options.progress = showProgress;
  ek::embedded::Importer importer(database, std::move(options));
  for (const std::string& path : request.paths) importer.importPath(path);
  if (asJson)
    printJson(importer.report());
  else
    printText(importer.report());
  return importer.report().unreadableFiles == 0 ? 0 : 1;
}

}  // namespace zunocal
