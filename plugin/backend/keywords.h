// Words that scripts write: they match in any case, and otherwise exactly.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>
#include <type_traits>

#include "plugin/backend/value.h"

namespace zuno {

// Length, first and last letter: words that differ in it are different, which most words do.
using KeywordSignature = std::uint32_t;

constexpr KeywordSignature signatureOf(std::string_view word) {
  if (word.empty()) return 0;
  const auto first = static_cast<unsigned char>(word.front());
  const auto last = static_cast<unsigned char>(word.back());
  return static_cast<KeywordSignature>(word.size()) << 16 | first << 8 | last;
}

// A word that was given, in lower case; an absent one too may be. Keeps no text that is too long for a word.
class Keyword {
 public:
  static constexpr std::size_t kLongest = 32;

  Keyword() = default;
  template <class Text>
  requires std::is_convertible_v<const Text&, TextArgument> Keyword(const Text& text)
      : Keyword(TextArgument(text)) {}
  Keyword(TextArgument text);
  explicit Keyword(std::span<const std::uint16_t> utf16);

  bool isNone() const { return isNone_; }
  // With a word in lower case, of ASCII letters. An absent keyword equals none.
  bool operator==(std::string_view word) const { return is(word, signatureOf(word)); }
  bool is(std::string_view word, KeywordSignature signature) const {
    // Letter by letter, as the letters were written: comparing blocks waits until these have reached memory.
    return signature == signature_ && !isNone_ &&
           std::equal(word.begin(), word.end(), letters_.begin(), [](char a, char b) { return a == b; });
  }

 private:
  std::array<char, kLongest> letters_;
  KeywordSignature signature_ = 0;
  bool isNone_ = true;
};

// A row of a keyword table: a word in lower case, and what it stands for.
template <class Meaning>
struct KeywordRow {
  constexpr KeywordRow(std::string_view word_, Meaning meaning_)
      : word(word_), signature(signatureOf(word_)), meaning(meaning_) {
    if (word.size() > Keyword::kLongest) throw "too long for a keyword";  // when compiled
  }

  std::string_view word;
  KeywordSignature signature;
  Meaning meaning;
};

// What the keyword stands for; null when the table does not have it.
template <class Meaning, std::size_t N>
const Meaning* find(const KeywordRow<Meaning> (&table)[N], const Keyword& keyword) {
  const auto* const row = std::find_if(std::begin(table), std::end(table), [&keyword](const auto& entry) {
    return keyword.is(entry.word, entry.signature);
  });
  return row == std::end(table) ? nullptr : &row->meaning;
}

// The kinds of item that scripts name.
enum class ItemType { none, calendar, reminderList, event, reminder, alarm, attendee, recurrenceRule };

inline constexpr KeywordRow<ItemType> kItemTypes[] = {
    {"event", ItemType::event},
    {"task", ItemType::reminder},  // the older word; scripts use both
    {"reminder", ItemType::reminder},
    {"calendar", ItemType::calendar},
    {"reminderlist", ItemType::reminderList},
    {"alarm", ItemType::alarm},
    {"attendee", ItemType::attendee},
    {"recurrencerule", ItemType::recurrenceRule},
};

// None for an absent or unknown word.
inline ItemType itemTypeFrom(const Keyword& keyword) {
  const ItemType* type = find(kItemTypes, keyword);
  return type != nullptr ? *type : ItemType::none;
}

// The value as a switch: yes for "true" in any case, no for anything else, none included.
bool isTrue(const Value& value);

}  // namespace zuno
