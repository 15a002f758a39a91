// What belongs to the plug-in as a bundle of the system: its localised strings, and the system's version.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace foundation {

// The localised string of `key` in `table`. `bundle` is the host's reference to the plug-in's own bundle
// (macOS: a CFBundleRef; elsewhere ignored, since the table is compiled into the plug-in). Nothing when the
// key is missing.
std::optional<std::u16string> localizedString(std::uintptr_t bundle, std::string_view key,
                                              std::string_view table);

// A string table as it lies in a bundle: the text of a ".strings" file, UTF-8.
struct CompiledTable {
  std::string_view name;
  std::string_view text;
};
// Defined beside the tables, off macOS, by the program that has any. What follows a fault in a table is not
// read.
std::span<const CompiledTable> compiledTables();

// The system's answer to a Gestalt selector; nothing where the call does not succeed.
std::optional<std::int32_t> gestalt(std::uint32_t selector);

}  // namespace foundation
