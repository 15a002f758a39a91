// Words that scripts write: they match in any case, and otherwise exactly.
#pragma once

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/text.h"
#include "plugin/backend/value.h"

namespace zuno {

// A word as it was given, which an absent one too may be. Borrows its text.
class Keyword {
 public:
  explicit Keyword(TextArgument text) : text_(text.value_or("")), isNone_(!text) {
    if (isNone_ || isAscii(text_)) return;
    lowered_ = foundation::lowercased(text_);
    text_ = lowered_;
  }
  Keyword(const Keyword&) = delete;
  Keyword& operator=(const Keyword&) = delete;

  bool isNone() const { return isNone_; }
  // With a word in lower case. An absent keyword equals none.
  bool operator==(std::string_view word) const {
    return text_.size() == word.size() && !isNone_ &&
           std::equal(text_.begin(), text_.end(), word.begin(),
                      [](char written, char lower) { return lowerCase(written) == lower; });
  }

 private:
  static bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  }
  static char lowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

  std::string_view text_;
  std::string lowered_;  // of a text that is not ASCII
  bool isNone_;
};

// A row of a keyword table: a word in lower case, and what it stands for.
template <class Meaning>
struct KeywordRow {
  std::string_view word;
  Meaning meaning;
};

// What the keyword stands for; null when the table does not have it.
template <class Meaning, std::size_t N>
const Meaning* find(const KeywordRow<Meaning> (&table)[N], const Keyword& keyword) {
  const auto* const row = std::find_if(std::begin(table), std::end(table),
                                       [&keyword](const auto& entry) { return keyword == entry.word; });
  return row == std::end(table) ? nullptr : &row->meaning;
}

// The kinds of item that scripts name.
enum class ItemType { calendar, reminderList, event, reminder, alarm, attendee, recurrenceRule };

// Nothing for an absent or unknown word.
std::optional<ItemType> itemTypeFrom(TextArgument keyword);

// The value as a switch: yes for "true" in any case, no for anything else, none included.
bool isTrue(const Value& value);

}  // namespace zuno
