#include "foundation/bundle.h"

#include <functional>
#include <map>
#include <utility>

#include "foundation/text.h"

namespace foundation {

namespace {

using StringTable = std::map<std::string, std::u16string, std::less<>>;

// Reads the text of a ".strings" file: pairs of quoted strings, "key" = "value"; with comments between.
class TableReader {
 public:
  explicit TableReader(std::string_view text) : rest_(text) {}

  StringTable read() {
    StringTable table;
    while (true) {
      const std::optional<std::u16string> key = quoted();
      if (!key || !punctuation('=')) return table;
      std::optional<std::u16string> value = quoted();
      if (!value || !punctuation(';')) return table;
      table.insert_or_assign(utf8FromUtf16(*key), std::move(*value));
    }
  }

 private:
  bool startsWith(std::string_view prefix) const { return rest_.substr(0, prefix.size()) == prefix; }

  // Moves past `end`, or to the end of the text without one.
  void skipThrough(std::string_view end) {
    const std::size_t found = rest_.find(end);
    rest_.remove_prefix(found == std::string_view::npos ? rest_.size() : found + end.size());
  }

  void skipBlanksAndComments() {
    while (!rest_.empty()) {
      if (startsWith("/*"))
        skipThrough("*/");
      else if (startsWith("//"))
        skipThrough("\n");
      else if (std::string_view(" \t\r\n").find(rest_.front()) != std::string_view::npos)
        rest_.remove_prefix(1);
      else
        return;
    }
  }

  bool punctuation(char expected) {
    skipBlanksAndComments();
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::optional<std::u16string> quoted() {
    if (!punctuation('"')) return std::nullopt;
    std::u16string text;
    while (!rest_.empty() && rest_.front() != '"') {
      if (rest_.front() == '\\') {
        rest_.remove_prefix(1);
        appendEscaped(text);
      } else {
        const std::size_t plain = rest_.substr(0, rest_.find_first_of("\"\\")).size();
        text += utf16FromUtf8(rest_.substr(0, plain));
        rest_.remove_prefix(plain);
      }
    }
    if (rest_.empty()) return std::nullopt;
    rest_.remove_prefix(1);
    return text;
  }

  // What follows a backslash: a unit in four hexadecimal digits after U, in up to three octal digits, a
  // control character's letter, or any other character for itself.
  void appendEscaped(std::u16string& text) {
    if (rest_.empty()) return;
    const char escape = rest_.front();
    if (escape >= '0' && escape <= '7') {
      text += number(3, 8);
      return;
    }
    rest_.remove_prefix(1);
    if (escape == 'U') {
      text += number(4, 16);
      return;
    }
    constexpr std::string_view letters = "ntrabfv";
    constexpr std::u16string_view controls = u"\n\t\r\a\b\f\v";
    const std::size_t known = letters.find(escape);
    text += known == std::string_view::npos ? static_cast<char16_t>(escape) : controls[known];
  }

  char16_t number(int mostDigits, unsigned base) {
    constexpr std::string_view digits = "0123456789abcdef";
    unsigned value = 0;
    for (int taken = 0; taken < mostDigits && !rest_.empty(); ++taken) {
      const std::size_t digit = digits.find(lowercased(rest_.substr(0, 1)));
      if (digit >= base) break;
      value = value * base + static_cast<unsigned>(digit);
      rest_.remove_prefix(1);
    }
    return static_cast<char16_t>(value);
  }

  std::string_view rest_;
};

using Tables = std::map<std::string, StringTable, std::less<>>;

const Tables& tables() {
  static const Tables all = [] {
    Tables parsed;
    for (const CompiledTable& table : compiledTables())
      parsed.emplace(table.name, TableReader(table.text).read());
    return parsed;
  }();
  return all;
}

}  // namespace

std::optional<std::u16string> localizedString(std::uintptr_t /*bundle*/, std::string_view key,
                                              std::string_view table) {
  const auto found = tables().find(table);
  if (found == tables().end()) return std::nullopt;
  const auto string = found->second.find(key);
  return string == found->second.end() ? std::nullopt : std::optional(string->second);
}

std::optional<std::int32_t> gestalt(std::uint32_t /*selector*/) { return std::nullopt; }

}  // namespace foundation
