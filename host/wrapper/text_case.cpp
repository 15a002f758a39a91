#include "host/wrapper/text_case.h"

#include <algorithm>
#include <clocale>
#include <wctype.h>

#ifdef __APPLE__
#include <xlocale.h>
#endif

namespace fmhost {
namespace {

// Null where the system has no UTF-8 locale: then only ASCII letters have a case.
locale_t unicodeLocale() {
  static const locale_t locale = [] {
    const locale_t plain = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return plain != nullptr ? plain : newlocale(LC_CTYPE_MASK, "en_US.UTF-8", nullptr);
  }();
  return locale;
}

bool isSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDFFF; }

char16_t mapped(char16_t c, wint_t (*mapping)(wint_t, locale_t)) {
  if (isSurrogate(c) || unicodeLocale() == nullptr) return c;
  const wint_t other = mapping(c, unicodeLocale());
  return other <= 0xFFFF ? static_cast<char16_t>(other) : c;
}

bool equalIgnoringCase(char16_t a, char16_t b) { return a == b || lowerCased(a) == lowerCased(b); }

}  // namespace

char16_t upperCased(char16_t c) {
  if (c < 0x80) return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
  return mapped(c, towupper_l);
}

char16_t lowerCased(char16_t c) {
  if (c < 0x80) return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
  return mapped(c, towlower_l);
}

void makeUpperCase(std::u16string& text) { std::ranges::transform(text, text.begin(), upperCased); }

void makeLowerCase(std::u16string& text) { std::ranges::transform(text, text.begin(), lowerCased); }

std::strong_ordering compareIgnoringCase(std::u16string_view a, std::u16string_view b) {
  return std::lexicographical_compare_three_way(
      a.begin(), a.end(), b.begin(), b.end(),
      [](char16_t x, char16_t y) { return lowerCased(x) <=> lowerCased(y); });
}

std::size_t findIgnoringCase(std::u16string_view text, std::u16string_view what, std::size_t from) {
  if (from > text.size()) return std::u16string_view::npos;
  const auto start = text.begin() + static_cast<std::ptrdiff_t>(from);
  const auto found = std::search(start, text.end(), what.begin(), what.end(), equalIgnoringCase);
  if (found == text.end() && !what.empty()) return std::u16string_view::npos;
  return static_cast<std::size_t>(found - text.begin());
}

std::size_t findLastIgnoringCase(std::u16string_view text, std::u16string_view what, std::size_t from) {
  if (what.size() > text.size()) return std::u16string_view::npos;
  for (std::size_t at = std::min(from, text.size() - what.size()) + 1; at-- > 0;) {
    if (std::equal(what.begin(), what.end(), text.begin() + static_cast<std::ptrdiff_t>(at),
                   equalIgnoringCase)) {
      return at;
    }
  }
  return std::u16string_view::npos;
}

}  // namespace fmhost
