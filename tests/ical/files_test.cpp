// Calendars as programs wrote them, and broken ones: all are read, and written again byte for byte.
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

// What text() may add to a file that ends too early.
void expectClosingLinesOnly(std::string_view rest) {
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    EXPECT_TRUE(line.starts_with("END:") || line.empty() || line == "\r") << rest;
    if (end == std::string_view::npos) return;
    rest.remove_prefix(end + 1);
  }
}

TEST(CalendarFiles, AreReadAndWrittenByteForByte) {
  const std::vector<fs::path> files = calendarFiles();
  ASSERT_GE(files.size(), 25U);
  for (const fs::path& path : files) {
    SCOPED_TRACE(path);
    const std::string content = contentOf(path);
    std::string written;
    for (const Component& component : parseComponents(content)) written += component.text();
    // What stands around the calendar is no part of it.
    std::string_view essential = content;
    essential.remove_prefix(content.find("BEGIN:"));
    constexpr std::string_view kEnd = "END:VCALENDAR";
    const std::size_t end = essential.rfind(kEnd);
    essential = end == std::string_view::npos ? essential.substr(0, essential.find_last_not_of("\r\n") + 1)
                                              : essential.substr(0, end + kEnd.size());
    ASSERT_EQ(written.substr(0, essential.size()), essential);
    expectClosingLinesOnly(std::string_view(written).substr(essential.size()));
  }
}

TEST(CalendarFiles, EveryEventAndTaskIsAPieceThatCanBeParsed) {
  for (const fs::path& path : calendarFiles()) {
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
