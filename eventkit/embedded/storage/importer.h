// Brings files into the store: iCalendar into calendars and reminder lists, vCards into the contacts.
#pragma once

#include <filesystem>
#include <string>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/import_report.h"

namespace ek::embedded {

class Importer {
 public:
  Importer(Database& database, ImportOptions options) : database_(database), options_(std::move(options)) {}

  // A file, or a folder: then every .ics and .vcf in it, by name. Each file is one transaction. What cannot
  // be read goes to the report; ek::Exception when the store cannot be written.
  void importPath(const std::filesystem::path& path);
  const ImportReport& report() const { return report_; }

 private:
  void importFile(const std::filesystem::path& path);
  void importText(const std::filesystem::path& path, const std::string& text);
  void skip(const std::filesystem::path& path, std::size_t line, std::string reason);

  Database& database_;
  ImportOptions options_;
  ImportReport report_;
};

}  // namespace ek::embedded
