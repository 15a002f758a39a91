#include "plugin/shell/plugin_logger.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "foundation/text.h"

namespace zuno {

namespace {

constexpr const char* kFileName = "LogFile.txt";
constexpr const char* kDesktop = "~/Desktop";
constexpr const char* kFolder = "Morva";

bool enterOrCreate(const std::string& folder) {
  if (chdir(folder.c_str()) == 0) return true;
  return mkdir(folder.c_str(), 0777) == 0 && chdir(folder.c_str()) == 0;
}

std::string localTime() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  char text[30];
  return {text, std::strftime(text, sizeof text, "%y-%m-%d %H:%M:%S", &parts)};
}

}  // namespace

std::int32_t GetInstanceID() {
  // The numbers above this one would make the lowest results likelier.
  constexpr int highestFair = 0x7FFFDF1E;
  constexpr int share = 214769;
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  int drawn = std::rand();
  while (drawn > highestFair) drawn = std::rand();
  return drawn / share;
}

void CreateDefaultPath(const std::string& name, std::string& path) {
  [[maybe_unused]] const int ignored = chdir(kDesktop);  // without it the folders are made where we are
  if (!enterOrCreate(kFolder) || !enterOrCreate(name)) return;
  path = std::string(kDesktop) + "/" + kFolder + "/" + name + "/" + kFileName;
}

void DeleteLog(const std::string& name) {
  std::string path;
  CreateDefaultPath(name, path);
  unlink(path.c_str());
}

PluginLogger::PluginLogger(std::string name, std::string logPath)
    : logPath_(std::move(logPath)), name_(std::move(name)), instanceNumber_(GetInstanceID()) {
  if (logPath_.empty()) CreateDefaultPath(name_, logPath_);
  WriteLine("************* SESSION STARTED *************");
}

PluginLogger::~PluginLogger() {
  if (!logPath_.empty() && OpenLogFile()) WriteLine("************* SESSION ENDED *************");
}

void PluginLogger::WriteLine(const std::string& text) {
  if (logPath_.empty()) return;
  const bool wasOpen = file_ != nullptr;
  if (!OpenLogFile() && !wasOpen) return;
  std::ofstream log(logPath_, std::ios::out | std::ios::app);
  const auto tabs = static_cast<std::size_t>(std::max<std::int64_t>(depth_, 0)) + 1;
  log << localTime() << std::string(tabs, '\t') << text << '\n' << std::flush;
  CloseLogFile();
}

void PluginLogger::EnteringFunction(const std::string& routine) {
  WriteLine("FUNCTION ENTER: " + routine);
  ++depth_;
}

void PluginLogger::ExitingFunction(const std::string& routine) {
  --depth_;
  WriteLine("FUNCTION EXIT: " + routine);
}

void PluginLogger::WriteParameter(const std::string& parameter, const std::string& value) {
  --depth_;
  WriteLine("PARAM: " + parameter + " VAL: " + value);
  ++depth_;
}

bool PluginLogger::OpenLogFile() {
  try {
    GetIntoLogDirectory();
    file_.reset(std::fopen(kFileName, "a+t"));
  } catch (const std::exception&) {
    return false;
  }
  return file_ != nullptr;
}

int PluginLogger::CloseLogFile() {
  if (!file_) return 0;
  std::fflush(file_.get());
  return std::fclose(file_.release());
}

void PluginLogger::ClearLog() {
  if (logPath_.empty()) return;
  GetIntoLogDirectory();
  std::FILE* emptied = std::fopen(kFileName, "wt");
  if (emptied == nullptr) return;
  std::fclose(emptied);
  WriteLine("************* CONTENT CLEARED *************");
}

int PluginLogger::SetLogPath(const std::string& path) {
  if (logPath_.empty()) CreateDefaultPath(name_, logPath_);
  logPath_ = path;
  return 0;
}

void PluginLogger::GetIntoLogDirectory() {
  std::string root = "/";
  for (const std::string_view piece : foundation::split(logPath_, '/')) {
    if (piece == kFileName) return;
    if (piece.empty()) continue;
    if (!enterOrCreate(std::exchange(root, "") + std::string(piece))) return;
  }
}

}  // namespace zuno
