#include "bench/files.h"

#include <fstream>
#include <stdexcept>

namespace bench {

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  std::string text(file ? static_cast<std::size_t>(file.tellg()) : 0, '\0');
  file.seekg(0);
  if (!file.read(text.data(), static_cast<std::streamsize>(text.size())))
    throw std::runtime_error(path + ": cannot be read");
  return text;
}

void writeFile(const std::string& path, std::string_view text) {
  std::ofstream file(path, std::ios::binary);
  if (!file.write(text.data(), static_cast<std::streamsize>(text.size())).flush())
    throw std::runtime_error(path + ": cannot be written");
}

}  // namespace bench
