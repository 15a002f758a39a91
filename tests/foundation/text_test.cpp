#include "foundation/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

using testing::ElementsAre;

namespace foundation {
namespace {

TEST(Utf, CarriesTextBothWays) {
  const std::string utf8 = "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\x85z";
  const std::u16string utf16 = u"A\u00E9\u20AC\U0001F4C5z";
  EXPECT_EQ(utf16FromUtf8(utf8), utf16);
  EXPECT_EQ(utf8FromUtf16(utf16), utf8);
  EXPECT_EQ(utf8FromUtf16(std::u16string(u"a\0b", 3)), std::string("a\0b", 3));
}

TEST(Utf, LoneSurrogatesBecomeReplacements) {
  const char16_t high = 0xD83D, low = 0xDCC5;
  EXPECT_EQ(utf8FromUtf16(std::u16string{high}), "\xEF\xBF\xBD");
  EXPECT_EQ(utf8FromUtf16(std::u16string{low, u'a'}),
            "\xEF\xBF\xBD"
            "a");
  EXPECT_EQ(utf8FromUtf16(std::u16string{high, high, low}), "\xEF\xBF\xBD\xF0\x9F\x93\x85");
}

TEST(Utf, EachIllFormedSequenceBecomesOneReplacement) {
  const struct {
    std::string bytes;
    std::u16string text;
  } cases[] = {
      {"a\x80z", u"a\uFFFDz"},
      {"\xC3", u"\uFFFD"},
      {"\xC3(", u"\uFFFD("},
      {"\xE2\x82z", u"\uFFFDz"},
      {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong
      {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},            // overlong
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
      {"\xF0\x9F\x93", u"\uFFFD"},                        // cut off
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond U+10FFFF
      {"\xFF\xFE", u"\uFFFD\uFFFD"},
  };
  for (const auto& [bytes, text] : cases)
    EXPECT_EQ(utf16FromUtf8(bytes), text) << testing::PrintToString(bytes);
}

TEST(Lowercased, ChangesNothingButLettersWithAnAsciiForm) {
  EXPECT_EQ(lowercased("EventZ[09]"), "eventz[09]");
  EXPECT_EQ(lowercased("tas\xE2\x84\xAA"), "task");               // Kelvin sign
  EXPECT_EQ(lowercased("\xC3\x84\xC4\xB0"), "\xC3\x84\xC4\xB0");  // A umlaut, dotted I
}

TEST(Split, EverySeparatorCountsByItself) {
  EXPECT_THAT(split("", ';'), ElementsAre(""));
  EXPECT_THAT(split("a;;b;", ';'), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(splitAtNewlines("a\r\nb\rc\xE2\x80\xA8"
                              "d\xC2\x85"
                              "e\xC2\xA0"
                              "f"),
              ElementsAre("a", "", "b", "c", "d",
                          "e\xC2\xA0"
                          "f"));
  EXPECT_THAT(splitAtWhitespace("a b\tc\xC2\xA0"
                                "d\xE3\x80\x80"
                                "e\nf"),
              ElementsAre("a", "b", "c", "d", "e\nf"));
  EXPECT_THAT(splitAtWhitespace(""), ElementsAre(""));
}

TEST(IntegerValue, StopsAtTheFirstOtherCharacterAndAtTheLimits) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  constexpr auto least = std::numeric_limits<std::int64_t>::min();
  constexpr struct {
    const char* text;
    std::int64_t value;
  } cases[] = {{"", 0},
               {"15", 15},
               {" \t\n 7x9", 7},
               {"\xC2\xA0"
                "8",
                8},
               {"+5", 5},
               {"-12abc", -12},
               {"--1", 0},
               {"++1", 0},
               {"- 1", 0},
               {"a1", 0},
               {"3.9", 3},
               {"9223372036854775807", most},
               {"9223372036854775808", most},
               {"99999999999999999999999", most},
               {"-9223372036854775807", least + 1},
               {"-9223372036854775808", least},
               {"-9223372036854775809", least}};
  for (const auto& [text, value] : cases) EXPECT_EQ(integerValue(text), value) << text;
}

}  // namespace
}  // namespace foundation
