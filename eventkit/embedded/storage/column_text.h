#pragma once

#include <SQLiteCpp/Column.h>
#include <cstddef>
#include <string_view>

namespace ek::embedded {

// A text column as it is, zero bytes included. Valid until the statement's next step.
inline std::string_view textOf(const SQLite::Column& column) {
  const char* text = column.getText("");
  return {text, static_cast<std::size_t>(column.getBytes())};
}

}  // namespace ek::embedded
