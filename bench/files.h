#pragma once

#include <string>
#include <string_view>

namespace bench {

// Both throw std::runtime_error, naming the file.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, std::string_view text);

}  // namespace bench
