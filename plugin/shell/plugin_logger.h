// A trace of routines and their parameters in a text file, "LogFile.txt". Off when its path is empty. What
// cannot be written is not written, and nobody is told. Not for several threads, and it changes the process's
// current folder.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace zuno {

class PluginLogger {
 public:
  // Writes to the default path of that name when `logPath` is empty.
  PluginLogger(std::string name, std::string logPath);
  ~PluginLogger();
  PluginLogger(const PluginLogger&) = delete;
  PluginLogger& operator=(const PluginLogger&) = delete;

  void WriteLine(const std::string& text);
  // Lines between the two are indented one tab further; parameters line up with the two.
  void EnteringFunction(const std::string& routine);
  void ExitingFunction(const std::string& routine);
  void WriteParameter(const std::string& parameter, const std::string& value);

  bool OpenLogFile();
  // 0 also when nothing was open.
  int CloseLogFile();
  void ClearLog();
  // Creates the default folders when there was no path before. Always 0.
  int SetLogPath(const std::string& path);
  // Makes the log file's folder the current one, missing folders included.
  void GetIntoLogDirectory();

  std::int32_t instanceNumber() const { return instanceNumber_; }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
  };

  std::int64_t depth_ = 0;
  std::string logPath_;
  std::string name_;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::int32_t instanceNumber_;
};

// "~/Desktop/Morva/NAME/LogFile.txt", the tilde standing for itself, and makes its folders. `path` stays as
// it is when they cannot be made.
void CreateDefaultPath(const std::string& name, std::string& path);
void DeleteLog(const std::string& name);
// A random number from 0 to 9998, each equally likely.
std::int32_t GetInstanceID();

}  // namespace zuno
