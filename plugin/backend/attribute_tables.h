// Tables of what a keyword reads from an item, and the words for its numbers.
#pragma once

#include <cstddef>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "plugin/backend/keywords.h"
#include "plugin/backend/value.h"

namespace zuno {

template <class Item>
using Reader = Value (*)(const Item&);

template <class Item>
using ReaderRow = KeywordRow<Reader<Item>>;

// The word for a number that counts from 0, as for an enumeration; no value beyond the words.
template <std::size_t N, class Number>
Value wordFor(const std::string_view (&words)[N], Number number) {
  const auto index = static_cast<std::size_t>(number);
  return index < N ? Value(std::string(words[index])) : Value();
}

// A number printed with a format of the C library's.
template <class Number>
std::string formatted(const char* format, Number number) {
  char buffer[64];
  const int length = std::snprintf(buffer, sizeof buffer, format, number);
  return {buffer, static_cast<std::size_t>(length)};
}

}  // namespace zuno
