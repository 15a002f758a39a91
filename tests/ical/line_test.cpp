#include <gmock/gmock.h>

#include "eventkit/embedded/ical/component.h"

namespace ek::ical {
namespace {

Line parsed(std::string_view line) {
  const std::string text = "BEGIN:VEVENT\r\n" + std::string(line) + "\r\nEND:VEVENT\r\n";
  return parseComponents(text).at(0).lines().at(0);
}

TEST(ContentLine, ReadsParametersAsProgramsWriteThem) {
  const struct {
    std::string_view line, parameter;
    std::optional<std::string> expected;
    std::string_view value;
  } cases[] = {
      {"A;X=1:v", "x", "1", "v"},
      {"A:v;X=1", "X", std::nullopt, "v;X=1"},
      {"A;X=\"a;b:c,d\";Y=2:v:w", "X", "a;b:c,d", "v:w"},
      {"A;X=\"a;b:c,d\";Y=2:v:w", "Y", "2", "v:w"},
      {"A;X=a,b:v", "X", "a", "v"},
      {"A;X=\"a,b\",c:v", "X", "a,b", "v"},
      {"A;X=say ^'hi^'^nnow^^:v", "X", "say \"hi\"\rnow^", "v"},
      {"A;X=lone^ caret^x:v", "X", "lone^ caret^x", "v"},
      {"A;;X=1:v", "X", "1", "v"},
      {"A;BARE;X=:v", "X", "", "v"},
      {"A;BARE:v", "BARE", "", "v"},
      {"A;X=\"open:v", "X", "\"open", "v"},
      {"A;X=1;X=2:v", "X", "1", "v"},
  };
  for (const auto& [text, name, expected, value] : cases) {
    SCOPED_TRACE(text);
    const Line line = parsed(text);
    EXPECT_EQ(line.name(), "A");
    EXPECT_EQ(line.parameter(name), expected);
    EXPECT_EQ(line.value(), value);
  }
}

TEST(ContentLine, BrokenOnesHaveNoNameAndMatchNothing) {
  for (const std::string_view text : {"no colon", ":value", ";X=1:value", "URL;//"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(parsed(text).name(), "");
    EXPECT_FALSE(parsed(text).is(""));
    EXPECT_EQ(parsed(text).value(), text);
  }
}

TEST(ContentLine, NewOnesReadBackAsTheyWereMade) {
  const std::vector<std::pair<std::string, std::string>> parameters = {
      {"CN", "Doe, \"Jo\"; x:y"}, {"X-CARET", "a^nb"}, {"PLAIN", "yes"}};
  const Line line = Line::make("ATTENDEE", "mailto:jo@example.com", parameters);
  const Line again = parsed(line.raw().substr(0, line.raw().size() - 2));
  for (const auto& [name, value] : parameters) EXPECT_EQ(again.parameter(name), value);
  EXPECT_EQ(again.value(), "mailto:jo@example.com");
  EXPECT_EQ(line.number(), 0U);
  EXPECT_EQ(Line::make("X", "a\r\nEND:VEVENT\nb").value(), "a\\nEND:VEVENT\\nb");
}

TEST(ContentLine, FoldsAt75OctetsBetweenCharacters) {
  const std::string smile = "\xF0\x9F\x98\x80";
  std::string value;
  for (int i = 0; i < 60; ++i) value += i % 3 == 0 ? "\xC3\xA9" : smile;
  for (std::size_t shift = 0; shift < 5; ++shift) {
    const Line line = Line::make("SUMMARY", std::string(shift, '.') + value);
    EXPECT_EQ(line.value(), std::string(shift, '.') + value);
    for (std::string_view rest = line.raw(); !rest.empty();) {
      const std::size_t end = rest.find("\r\n");
      EXPECT_LE(end, 75U);
      EXPECT_NE(static_cast<unsigned char>(rest[rest.front() == ' ' ? 1 : 0]) & 0xC0U, 0x80U);
      rest.remove_prefix(end + 2);
    }
  }
  EXPECT_EQ(Line::make("A", std::string(73, 'x')).raw(), "A:" + std::string(73, 'x') + "\r\n");
  EXPECT_EQ(Line::make("A", std::string(74, 'x')).raw(), "A:" + std::string(73, 'x') + "\r\n x\r\n");
  const std::string noUtf8(500, '\x80');
  EXPECT_EQ(parsed(Line::make("A", noUtf8).raw()).value(), noUtf8);
}

TEST(ContentLine, ChangesKeepTheOtherParts) {
  const Line line = parsed("DTSTART;X-A=\"1,2\";TZID=Europe/Berlin;x-b=^n:20240101T000000");
  EXPECT_EQ(line.withValue("20250101T000000").raw(),
            "DTSTART;X-A=\"1,2\";TZID=Europe/Berlin;x-b=^n:20250101T000000\r\n");
  const struct {
    std::string_view name;
    std::optional<std::string_view> value;
    std::string_view expected;
  } cases[] = {
      {"tzid", "Asia/Tokyo", "DTSTART;X-A=\"1,2\";TZID=Asia/Tokyo;x-b=^n:20240101T000000\r\n"},
      {"TZID", std::nullopt, "DTSTART;X-A=\"1,2\";x-b=^n:20240101T000000\r\n"},
      {"VALUE", "DATE", "DTSTART;X-A=\"1,2\";TZID=Europe/Berlin;x-b=^n;VALUE=DATE:20240101T000000\r\n"},
      {"VALUE", std::nullopt, "DTSTART;X-A=\"1,2\";TZID=Europe/Berlin;x-b=^n:20240101T000000\r\n"},
  };
  for (const auto& [name, value, expected] : cases)
    EXPECT_EQ(line.withParameter(name, value).raw(), expected);
}

}  // namespace
}  // namespace ek::ical
