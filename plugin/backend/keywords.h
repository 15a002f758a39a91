// Keywords are compared after lower-casing, exactly; an absent keyword matches nothing.
#pragma once

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/text.h"
#include "plugin/backend/value.h"

namespace zuno {

inline std::optional<std::string> lowercased(TextArgument text) {
  return text ? std::optional(foundation::lowercased(*text)) : std::nullopt;
}

// A row of a keyword table; what the word stands for follows.
template <class Meaning>
struct KeywordRow {
  std::string_view word;
  Meaning meaning;
};

// What the lower-cased word stands for; null when the table does not have it.
template <class Meaning, std::size_t N>
const Meaning* find(const KeywordRow<Meaning> (&table)[N], TextArgument lowered) {
  const auto* const row = std::find_if(std::begin(table), std::end(table),
                                       [lowered](const auto& entry) { return entry.word == lowered; });
  return row == std::end(table) ? nullptr : &row->meaning;
}

// The kinds of item that scripts name.
enum class ItemType { calendar, reminderList, event, reminder, alarm, attendee, recurrenceRule };

// Nothing for an absent or unknown word.
std::optional<ItemType> itemTypeFrom(TextArgument keyword);

// The value as a switch: yes for "true" in any case, no for anything else, none included.
bool isTrue(const Value& value);

}  // namespace zuno
