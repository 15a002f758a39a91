// Words that scripts write: they match in any case, and otherwise exactly.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <type_traits>

#include "plugin/backend/value.h"

namespace zuno {

// The letters of a word, eight to a number, the first ones lowest; zeros follow. Words are compared by these
// numbers: most differ in the first.
struct PackedWord {
  static constexpr std::size_t kLongest = 32;

  constexpr PackedWord() = default;
  // A word of the plug-in's own, in lower case.
  consteval PackedWord(std::string_view word) {
    if (word.size() > kLongest) throw "too long for a keyword";
    for (std::size_t at = 0; at < word.size(); ++at)
      parts[at / kPerPart] |= std::uint64_t{static_cast<unsigned char>(word[at])} << at % kPerPart * 8;
  }
  template <std::size_t N>
  consteval PackedWord(const char (&word)[N]) : PackedWord(std::string_view(word, N - 1)) {}
  friend constexpr bool operator==(const PackedWord& a, const PackedWord& b) {
    return a.parts[0] == b.parts[0] && a.parts[1] == b.parts[1] && a.parts[2] == b.parts[2] &&
           a.parts[3] == b.parts[3];
  }

  static constexpr std::size_t kPerPart = 8;
  std::uint64_t parts[kLongest / kPerPart] = {};
};

// A word that was given, in lower case; an absent one too may be. Keeps no text that is too long for a word.
class Keyword {
 public:
  Keyword() = default;
  template <class Text>
  requires std::is_convertible_v<const Text&, TextArgument> Keyword(const Text& text)
      : Keyword(TextArgument(text)) {}
  Keyword(TextArgument text);
  // The first units, as many as they are; after them zeros.
  using Units = std::array<std::uint16_t, PackedWord::kLongest>;
  Keyword(const Units& utf16, std::size_t count);

  bool isNone() const { return isNone_; }
  // An absent keyword equals no word.
  bool operator==(const PackedWord& word) const { return word_ == word && !isNone_; }

 private:
  PackedWord word_;
  bool isNone_ = true;
};

// A row of a keyword table: a word in lower case, and what it stands for.
template <class Meaning>
struct KeywordRow {
  consteval KeywordRow(std::string_view word_, Meaning meaning_) : word(word_), meaning(meaning_) {}

  PackedWord word;
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
