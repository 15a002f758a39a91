#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace zunocal {

// A file that appears under its name whole or not at all: until finish() the former one stays. What is no
// regular file (a pipe, a device) is written directly. Throws std::system_error.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path);  // empty: standard output
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void write(std::string_view text);
  void finish();

 private:
  void openTemporary();
  [[noreturn]] void fail() const;

  std::string path_;
  std::string temporary_;  // empty when written directly or finished
  std::FILE* file_ = nullptr;
};

}  // namespace zunocal
