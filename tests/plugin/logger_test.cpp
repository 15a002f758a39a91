#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>

#include "plugin/shell/plugin_logger.h"
#include "tests/storage/temporary_folder.h"

namespace zuno {
namespace {

namespace fs = std::filesystem;

// In a folder of its own, which is the current one at the start, as the logger changes it.
class Logger : public testing::Test {
 protected:
  Logger() { fs::current_path(folder_); }
  ~Logger() override { fs::current_path(before_); }
  std::string path(const std::string& folder = "a/b") const {
    return (folder_ / folder / "LogFile.txt").string();
  }
  static std::string content(const fs::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  // The lines without their times, which are checked for their form.
  static std::vector<std::string> lines(const fs::path& file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    const std::regex form(R"(\d\d-\d\d-\d\d \d\d:\d\d:\d\d(\t.*))");
    for (std::string line; std::getline(stream, line);) {
      std::smatch parts;
      lines.push_back(std::regex_match(line, parts, form) ? parts[1].str() : "no time: " + line);
    }
    return lines;
  }

  const fs::path before_ = fs::current_path();
  const zuno_test::TemporaryFolder own_;
  const fs::path folder_ = fs::canonical(own_.path());
};

TEST_F(Logger, IndentsByDepth) {
  {
    PluginLogger log("test", path());
    log.WriteLine("plain");
    log.EnteringFunction("outer");
    log.EnteringFunction("inner");
    log.WriteParameter("count", "3");
    log.ExitingFunction("inner");
    log.ExitingFunction("outer");
    log.ExitingFunction("none");
    log.WriteParameter("deep", "-1");
  }
  EXPECT_THAT(
      lines(path()),
      testing::ElementsAre("\t************* SESSION STARTED *************", "\tplain",
                           "\tFUNCTION ENTER: outer", "\t\tFUNCTION ENTER: inner", "\t\tPARAM: count VAL: 3",
                           "\t\tFUNCTION EXIT: inner", "\tFUNCTION EXIT: outer", "\tFUNCTION EXIT: none",
                           "\tPARAM: deep VAL: -1", "\t************* SESSION ENDED *************"));
}

TEST_F(Logger, AppendsToAnEarlierSession) {
  for (int session = 0; session < 2; ++session) PluginLogger("test", path());
  EXPECT_EQ(lines(path()).size(), 4U);
}

TEST_F(Logger, ClearsAndMoves) {
  PluginLogger log("test", path());
  log.ClearLog();
  EXPECT_THAT(lines(path()), testing::ElementsAre("\t************* CONTENT CLEARED *************"));
  EXPECT_EQ(log.SetLogPath(path("c")), 0);
  log.WriteLine("moved");
  EXPECT_THAT(lines(path("c")), testing::ElementsAre("\tmoved"));
  EXPECT_EQ(fs::current_path(), folder_ / "c");
  EXPECT_EQ(lines(path()).size(), 1U);
}

TEST_F(Logger, IsSilentWhereItCannotWrite) {
  std::ofstream(folder_ / "a") << "a file, not a folder";
  {
    PluginLogger log("test", path());
    log.WriteLine("nowhere");
    log.ClearLog();
  }
  EXPECT_EQ(content(folder_ / "a"), "a file, not a folder");
}

TEST_F(Logger, OpensAndCloses) {
  PluginLogger log("test", path());
  EXPECT_EQ(log.CloseLogFile(), 0);
  EXPECT_TRUE(log.OpenLogFile());
  log.WriteLine("with the file open");
  EXPECT_EQ(log.CloseLogFile(), 0);
  EXPECT_EQ(lines(path()).back(), "\twith the file open");
  EXPECT_TRUE(log.OpenLogFile());
  log.SetLogPath(path("elsewhere"));
  log.WriteLine("in a new folder");
  EXPECT_THAT(lines(path("elsewhere")), testing::ElementsAre("\tin a new folder"));
}

// The tilde is no home folder but a folder of that name, below the current one.
TEST_F(Logger, TheDefaultPathHasALiteralTilde) {
  std::string made = "unchanged";
  CreateDefaultPath("tool", made);
  EXPECT_EQ(made, "~/Desktop/Morva/tool/LogFile.txt");
  EXPECT_EQ(fs::current_path(), folder_ / "Morva" / "tool");

  fs::current_path(folder_);
  fs::create_directories("~/Desktop");
  CreateDefaultPath("tool", made);
  EXPECT_EQ(fs::current_path(), folder_ / "~" / "Desktop" / "Morva" / "tool");

  // Deleting goes by the same path, from the folder that finding it has made the current one.
  const fs::path log = folder_ / "~/Desktop/Morva/tool/~/Desktop/Morva/tool/LogFile.txt";
  fs::create_directories(log.parent_path());
  std::ofstream(log) << "log";
  fs::current_path(folder_);
  DeleteLog("tool");
  EXPECT_FALSE(fs::exists(log));

  fs::current_path(folder_);
  made = "unchanged";
  CreateDefaultPath("other/none", made);
  EXPECT_EQ(made, "unchanged");
}

TEST_F(Logger, InstancesAreNumberedBelow9999) {
  EXPECT_GE(GetInstanceID(), 0);
  EXPECT_LE(GetInstanceID(), 9998);
  EXPECT_LE(PluginLogger("test", path()).instanceNumber(), 9998);
}

}  // namespace
}  // namespace zuno
