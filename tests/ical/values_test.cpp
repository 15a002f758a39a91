#include "eventkit/embedded/ical/values.h"

#include <gmock/gmock.h>

namespace ek::ical {
namespace {

using testing::ElementsAre;

TEST(DateTimes, AreReadAndWrittenAlike) {
  for (const std::string_view text : {"19970714", "19970714T133000", "19970714T133059Z", "00010101",
                                      "99991231T235959Z", "20240229", "20000229T000000"}) {
    const auto value = parseDateTime(text);
    ASSERT_TRUE(value) << text;
    EXPECT_EQ(formatDateTime(*value), text);
    EXPECT_EQ(value->isDate, text.size() == 8);
    EXPECT_EQ(value->isUtc, text.back() == 'Z');
  }
  EXPECT_EQ(parseDateTime("20161231T235960Z"), parseDateTime("20161231T235959Z")) << "leap second";
  EXPECT_EQ(parseDateTime(" 20161231t235959z "), parseDateTime("20161231T235959Z"));
}

TEST(DateTimes, AreNothingWhereNoCalendarHasThem) {
  for (const std::string_view text :
       {"", "1997", "1997071", "199707145", "00000101", "20230229", "20231301", "20230001", "20230100",
        "20230132", "20230101T", "20230101Z", "2023-01-01", "+2230101", "2023 101", "20230101T+20000"})
    EXPECT_FALSE(parseDateTime(text)) << text;
  for (const std::string time : {"1200", "240000", "126000", "120061", "120000X", "120000ZZ"})
    EXPECT_FALSE(parseDateTime("20230101T" + time)) << time;
}

TEST(Durations, CountDaysApartFromSeconds) {
  const struct {
    std::string_view text;
    recurrence::Duration duration;
    std::string_view written;
  } cases[] = {{"+P1D", {1, 0}, "P1D"},          {"P0D", {0, 0}, "PT0S"},
               {"P1DT", {1, 0}, "P1D"},          {"P7W", {49, 0}, "P49D"},
               {"P1W2D", {9, 0}, "P9D"},         {"pt5m", {0, 300}, "PT5M"},
               {"PT1H", {0, 3600}, "PT1H"},      {"-PT0H0M0S", {0, 0}, "PT0S"},
               {"PT90M", {0, 5400}, "PT1H30M"},  {"-PT15M", {0, -900}, "-PT15M"},
               {"-P1DT1S", {-1, -1}, "-P1DT1S"}, {"P15DT5H0M20S", {15, 18020}, "P15DT5H0M20S"}};
  for (const auto& [text, duration, written] : cases) {
    SCOPED_TRACE(text);
    EXPECT_EQ(parseDuration(text), duration);
    EXPECT_EQ(formatDuration(duration), written);
  }
  EXPECT_EQ(formatDuration({1, -3600}), "PT23H") << "parts of different sign";
}

TEST(Durations, AreNothingWhenBroken) {
  for (const std::string_view text :
       {"", "P", "PT", "1D", "P1", "PD", "P1H", "PT1D", "PT1M1H", "P1D1D", "PT-5M", "P--1D", "PT1.5H",
        "P99999999999999999999D", "P4000000D", "PT5M ago"})
    EXPECT_FALSE(parseDuration(text)) << text;
}

TEST(UtcOffsets, AreReadAndWritten) {
  const struct {
    std::string_view text;
    std::optional<int> offset;
  } cases[] = {{"+0100", 3600}, {"-0530", -19800}, {"-053012", -19812}, {"0200", 7200}, {"+0000", 0},
               {"+5328", {}},   {"+01", {}},       {"+01:00", {}},      {"", {}},       {"+010", {}},
               {"+0160", {}},   {"+010060", {}},   {"+01000", {}}};
  for (const auto& [text, offset] : cases) {
    SCOPED_TRACE(text);
    const auto read = parseUtcOffset(text);
    ASSERT_EQ(read.has_value(), offset.has_value());
    if (!read) continue;
    EXPECT_EQ(read->count(), *offset);
    EXPECT_EQ(formatUtcOffset(*read).substr(1), text.substr(text[0] == '0' ? 0 : 1));
  }
}

TEST(Texts, AreEscapedAndBack) {
  const struct {
    std::string_view text, escaped;
  } cases[] = {
      {"plain", "plain"},
      {"a,b;c\\d:e\"f", "a\\,b\\;c\\\\d:e\"f"},
      {"one\rtwo", "one\\ntwo"},
      {"\\n is no break", "\\\\n is no break"},
      {"caf\xC3\xA9 \xF0\x9F\x98\x80", "caf\xC3\xA9 \xF0\x9F\x98\x80"},
      {"", ""},
  };
  for (const auto& [text, escaped] : cases) {
    EXPECT_EQ(encodeText(text), escaped);
    EXPECT_EQ(decodeText(escaped), text);
  }
  EXPECT_EQ(encodeText("a\r\nb\nc\r\rd"), "a\\nb\\nc\\n\\nd");
  EXPECT_EQ(encodeText("a\vb\fc\x01"
                       "d\x7F\te"),
            "a\\nb\\ncd\te");
}

TEST(Texts, AreReadAsCarelessProgramsWriteThem) {
  const struct {
    std::string_view escaped, text;
  } cases[] = {
      {"a\\Nb", "a\rb"},
      {"C:\\temp", "C:\\temp"},
      {"12\\:30 \\\"x\\\"", "12:30 \"x\""},
      {"ends in \\", "ends in \\"},
      {"a, b; c", "a, b; c"},
      {"caf\xE9", "caf\xC3\xA9"},                                        // Latin-1
      {"5 \x80 \x93x\x94", "5 \xE2\x82\xAC \xE2\x80\x9Cx\xE2\x80\x9D"},  // Windows-1252
      {"\xC3\xA9 and \xE9", "\xC3\xA9 and \xC3\xA9"},
      {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xE2\x82\xAC"},  // a surrogate is no UTF-8
      {"\x81", "\xEF\xBF\xBD"},
  };
  for (const auto& [escaped, text] : cases) EXPECT_EQ(decodeText(escaped), text) << escaped;
}

TEST(Lists, AreSplitAtUnescapedSeparators) {
  EXPECT_THAT(splitList("a,b\\,c,,d"), ElementsAre("a", "b\\,c", "", "d"));
  EXPECT_THAT(splitList("a\\\\,b"), ElementsAre("a\\\\", "b"));
  EXPECT_THAT(splitList("1;2,3", ';'), ElementsAre("1", "2,3"));
  EXPECT_THAT(splitList(""), ElementsAre(""));
  EXPECT_THAT(splitList("a\\"), ElementsAre("a\\"));
}

}  // namespace
}  // namespace ek::ical
