#include "zunocal/output_file.h"

#include <cerrno>
#include <filesystem>
#include <stdlib.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zunocal {
namespace {

constexpr mode_t kNewFileMode = 0666;

// Of the file that is replaced, else what the user's mask leaves.
mode_t modeFor(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return kNewFileMode & ~mask;
}

bool isReplaceable(const std::string& path) {
  const auto type = std::filesystem::status(path).type();
  return type == std::filesystem::file_type::regular || type == std::filesystem::file_type::not_found;
}

// The file that a symbolic link stands for is replaced, not the link.
std::string targetOf(const std::string& path) { return std::filesystem::weakly_canonical(path).string(); }

}  // namespace

OutputFile::OutputFile(const std::string& path) : path_(path) {
  if (path_.empty()) {
    file_ = stdout;
  } else if (isReplaceable(path_)) {
    path_ = targetOf(path_);
    openTemporary();
  } else if (file_ = std::fopen(path_.c_str(), "wb"); file_ == nullptr) {
    fail();
  }
}

OutputFile::~OutputFile() {
  if (file_ != nullptr && file_ != stdout) std::fclose(file_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void OutputFile::openTemporary() {
  temporary_ = path_ + ".XXXXXX";
  const int descriptor = mkstemp(temporary_.data());
  if (descriptor < 0) {
    temporary_.clear();
    fail();
  }
  file_ = fdopen(descriptor, "wb");
  if (file_ == nullptr) fail();
  if (fchmod(descriptor, modeFor(path_)) != 0) fail();
}

void OutputFile::write(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) fail();
}

void OutputFile::finish() {
  if (std::fflush(file_) != 0) fail();
  if (temporary_.empty()) return;
  if (fsync(fileno(file_)) != 0) fail();
  std::FILE* file = std::exchange(file_, nullptr);
  if (std::fclose(file) != 0 || rename(temporary_.c_str(), path_.c_str()) != 0) fail();
  temporary_.clear();
}

void OutputFile::fail() const {
  throw std::system_error(errno, std::generic_category(), path_.empty() ? "standard output" : path_);
}

}  // namespace zunocal
