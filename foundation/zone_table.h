// What a zone file holds, before it is made fast to search.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace foundation {

struct ZoneTable {
  struct Type {
    std::int32_t offset = 0;  // seconds east of UTC
    std::string letters;
    bool operator==(const Type&) const = default;
  };
  struct Entry {
    std::int64_t at = 0;  // seconds since 1970, UTC
    std::size_t type = 0;
  };

  std::vector<Type> types;     // at least one
  std::size_t initial = 0;     // the type before the first entry
  std::vector<Entry> entries;  // ascending
  std::string rule;            // POSIX rule for what comes after the last entry, or empty

  std::size_t typeIndex(const Type& type);  // adds what is new
};

// The content of a TZif file, versions 1 to 4 (RFC 8536, RFC 9636). Nothing for anything else.
std::optional<ZoneTable> readZoneFile(std::string_view bytes);

}  // namespace foundation
