#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace ek::embedded {

// An upper-case random UUID.
std::string newIdentifier();

// 16 bytes in a UUID's form, upper-case; version and variant as given by `version` (4 random, 8 made
// otherwise).
std::string identifierFrom(std::array<std::uint8_t, 16> bytes, unsigned version);

}  // namespace ek::embedded
