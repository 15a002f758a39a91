// Calendars as programs wrote them, and broken ones: all of their items are read, byte for byte.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/ical/stream.h"

namespace ek::ical {
namespace {

namespace fs = std::filesystem;

// Another folder of calendars to go through, named by ZUNO_ICS_FOLDER, comes beside the test data.
std::vector<fs::path> calendarFiles() {
  std::vector<fs::path> folders = {fs::path(ZUNO_TEST_DATA) / "ics"};
  if (const char* more = std::getenv("ZUNO_ICS_FOLDER")) folders.emplace_back(more);
  std::vector<fs::path> files;
  for (const fs::path& folder : folders)
    for (const auto& entry : fs::recursive_directory_iterator(folder))
      if (entry.path().extension() == ".ics") files.push_back(entry.path());
  return files;
}

std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::size_t countLines(std::string_view text, std::string_view wanted) {
  std::size_t count = 0;
  for (std::size_t at = text.find(wanted); at != std::string_view::npos; at = text.find(wanted, at + 1))
    count += at == 0 || text[at - 1] == '\n' ? 1 : 0;
  return count;
}

TEST(CalendarFiles, EveryEventAndTaskIsAPieceThatCanBeParsed) {
  const std::vector<fs::path> files = calendarFiles();
  ASSERT_GE(files.size(), 25U);
  for (const fs::path& path : files) {
    SCOPED_TRACE(path);
    const std::string content = contentOf(path);
    std::size_t events = 0, tasks = 0;
    walkStream(content, {.piece = [&](const Piece& piece) {
                 if (!piece.isComponent) return;
                 const std::vector<Component> parsed = parseComponents(piece.text);
                 ASSERT_EQ(parsed.size(), 1U);
                 EXPECT_EQ(parsed[0].name(), piece.name);
                 EXPECT_TRUE(parsed[0].text().starts_with(
                     piece.text.substr(0, piece.text.find_last_not_of("\r\n") + 1)));
                 events += parsed[0].is("VEVENT") ? 1 : 0;
                 tasks += parsed[0].is("VTODO") ? 1 : 0;
               }});
    EXPECT_EQ(events, countLines(content, "BEGIN:VEVENT"));
    EXPECT_EQ(tasks, countLines(content, "BEGIN:VTODO"));
  }
}

}  // namespace
}  // namespace ek::ical
