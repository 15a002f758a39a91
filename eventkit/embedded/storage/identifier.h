#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ek::embedded {

// An upper-case random UUID.
std::string newIdentifier();

// So many of them in ascending order. What is stored in that order goes through the index once, and not up
// and down in it.
std::vector<std::string> newIdentifiers(std::size_t count);

// 16 bytes in a UUID's form, upper-case; version and variant as given by `version` (4 random, 8 made
// otherwise).
std::string identifierFrom(std::array<std::uint8_t, 16> bytes, unsigned version);

}  // namespace ek::embedded
