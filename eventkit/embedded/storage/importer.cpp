#include "eventkit/embedded/storage/importer.h"

#include <algorithm>
#include <utility>

#include "eventkit/embedded/storage/calendar_import.h"
#include "eventkit/embedded/storage/contact_import.h"
#include "eventkit/embedded/storage/import_text.h"
#include "foundation/text.h"

namespace ek::embedded {
namespace {

namespace fs = std::filesystem;

// The pages of the indexes in which rows come in no order are to stay in memory: about so much of the text.
constexpr std::size_t kTextsPerMemory = 4;

std::string extensionOf(const fs::path& path) { return foundation::lowercased(path.extension().string()); }

std::vector<fs::path> filesIn(const fs::path& folder, std::error_code& error) {
  std::vector<fs::path> files;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string extension = extensionOf(entry->path());
    if ((extension == ".ics" || extension == ".vcf") && !entry->is_directory())
      files.push_back(entry->path());
  }
  std::ranges::sort(files);
  return files;
}

}  // namespace

void Importer::importPath(const fs::path& path) {
  std::error_code error;
  if (!fs::is_directory(path, error)) return importFile(path);
  const std::vector<fs::path> files = filesIn(path, error);
  if (error || files.empty()) {
    ++report_.unreadableFiles;
    return skip(path, 0, error ? error.message() : "there is no .ics and no .vcf file in this folder");
  }
  for (const fs::path& file : files) importFile(file);
}

void Importer::importFile(const fs::path& path) {
  std::string why;
  const std::optional<std::string> text = readFile(path.string(), why);
  if (!text) {
    ++report_.unreadableFiles;
    return skip(path, 0, why);
  }
  importText(path, *text);
}

void Importer::importText(const fs::path& path, const std::string& text) {
  const std::size_t before = report_.events + report_.reminders + report_.contacts;
  const std::size_t skippedBefore = report_.skipped.size();
  const auto report = [&](std::size_t line, std::string reason) { skip(path, line, std::move(reason)); };
  guarded([&] {
    const bool isContacts = extensionOf(path) == ".vcf" || isContactText(text);
    CalendarImport calendars(database_, options_, path.stem().string(), report_, report);
    if (!isContacts) calendars.plan(text);
    const Database::MoreMemory memory(database_, text.size() / kTextsPerMemory);
    Database::Transaction writing(database_, Database::Transaction::Kind::writing);
    if (isContacts)
      report_.contacts += importContacts(database_, text, report);
    else
      calendars.store();
    if (report_.events + report_.reminders + report_.contacts > before) writing.commit();
  });
  if (report_.events + report_.reminders + report_.contacts > before) return;
  if (report_.skipped.size() > skippedBefore) ++report_.unreadableFiles;
}

void Importer::skip(const fs::path& path, std::size_t line, std::string reason) {
  report_.skipped.push_back({.file = path.string(), .line = line, .reason = std::move(reason)});
}

}  // namespace ek::embedded
