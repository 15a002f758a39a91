#include <cstdio>
#include <fmt/format.h>

#include "eventkit/embedded/storage/exporter.h"
#include "zunocal/commands.h"
#include "zunocal/output_file.h"

namespace zunocal {

int exportCalendars(Database& database, const std::vector<std::string>& titles, const std::string& file) {
  OutputFile output(file);
  const auto write = [&](std::string_view text) { output.write(text); };
  const std::vector<std::string> unknown = ek::embedded::Exporter(database).write(titles, write);
  for (const std::string& title : unknown)
    fmt::print(stderr, "zunocal: There is no calendar or reminder list titled \"{}\".\n", title);
  if (!unknown.empty()) return 1;
  output.finish();
  return 0;
}

}  // namespace zunocal
