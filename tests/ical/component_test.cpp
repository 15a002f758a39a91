#include "eventkit/embedded/ical/component.h"

#include <gmock/gmock.h>

namespace ek::ical {
namespace {

using testing::ElementsAre;

Component only(std::string_view text) {
  std::vector<Component> components = parseComponents(text);
  EXPECT_EQ(components.size(), 1U);
  return components.empty() ? Component("NOTHING") : std::move(components.front());
}

std::vector<std::string> values(const Component& component) {
  std::vector<std::string> found;
  for (const Line& line : component.lines()) found.emplace_back(line.value());
  return found;
}

constexpr std::string_view kMeeting =
    "BEGIN:VEVENT\r\n"
    "UID:1\r\n"
    "summary;LANGUAGE=en:Planning of the\r\n"
    "  year\r\n"
    "BEGIN:VALARM\r\n"
    "TRIGGER:-PT15M\r\n"
    "END:VALARM\r\n"
    "X-AFTER;X-P=\"a:b\":1\r\n"
    "x-after:2\r\n"
    "END:VEVENT\r\n";

TEST(ReadingComponents, GivesBackEveryByte) {
  constexpr std::string_view texts[] = {
      kMeeting,
      "begin:vevent\nUID:1\nend:VEVENT\n",
      "BEGIN:VEVENT\rUID:1\rEND:VEVENT\r",
      "BEGIN:VEVENT\r\nUID:1\nSUMMARY:a\r\r\n b\r\nEND:VEVENT \r\n",
      "BEGIN:VEVENT\r\n\r\nno colon here\r\n;X=1:no name\r\nBEGIN:VALARM\r\nEND:VALARM\r\n\r\nEND:VEVENT\r\n",
      "BEGIN:VEVENT\r\nBEGIN:VALARM\r\nEND:VEVENT\r\n",
      "BEGIN:VEVENT\r\nATTENDEE;CN=\"never closed:mailto:a@b\r\nEND:VEVENT\r\n",
      "BEGIN:VEVENT\r\nEND:VEVENT\r\n \r\n",
  };
  for (const std::string_view text : texts) EXPECT_EQ(only(text).text(), text);
  const std::string nul("BEGIN:VEVENT\r\nX-NUL:a\0b\r\nEND:VEVENT\r\n", 36);
  EXPECT_EQ(only(nul).text(), nul);
  EXPECT_EQ(only(nul).value("X-NUL"), std::string_view("a\0b", 3));
}

TEST(ReadingComponents, FindsPropertiesWithoutRegardToCaseAndFolding) {
  const Component meeting = only(kMeeting);
  EXPECT_TRUE(meeting.is("vevent"));
  EXPECT_EQ(meeting.value("Summary"), "Planning of the year");
  EXPECT_EQ(meeting.find("SUMMARY")->number(), 3U);
  EXPECT_EQ(meeting.all("X-AFTER").size(), 2U);
  EXPECT_EQ(meeting.value("TRIGGER"), std::nullopt) << "belongs to the alarm";
  ASSERT_EQ(meeting.components().size(), 1U);
  EXPECT_EQ(meeting.components()[0].value("TRIGGER"), "-PT15M");
  EXPECT_EQ(meeting.components()[0].find("TRIGGER")->number(), 6U);
}

TEST(ReadingComponents, UnfoldsPhysicalLinesOfAnyLength) {
  for (const std::string lineBreak : {"\r\n", "\n", "\r", "\r\r\n"})
    for (std::size_t length = 240; length < 270; ++length) {
      const std::string part(length, 'x');
      const auto parsed =
          parseComponents("BEGIN:VEVENT\r\nSUMMARY:" + part + lineBreak + " " + part + "\r\nEND:VEVENT\r\n");
      ASSERT_EQ(parsed.front().value("SUMMARY"), part + part) << length;
    }
}

TEST(ReadingComponents, LinesOutliveTheirComponent) {
  const Line line = *only(kMeeting).find("SUMMARY");
  EXPECT_EQ(line.value(), "Planning of the year");
}

TEST(ReadingComponents, GoesOnWhereAnEndIsMissingOrWrong) {
  const struct {
    std::string_view why, text;
    std::vector<std::string> names;
    bool isComplained;
  } cases[] = {
      {"sound", "BEGIN:A\nEND:A\nBEGIN:B\nEND:B\n", {"A", "B"}, false},
      {"cut off", "BEGIN:VEVENT\nUID:1\n", {"VEVENT"}, true},
      {"misspelt", "BEGIN:STANDAR\nEND:STANDARD\nBEGIN:B\nEND:B\n", {"STANDAR", "B"}, true},
      {"an event in an event",
       "BEGIN:VEVENT\nUID:1\nBEGIN:VEVENT\nUID:2\nEND:VEVENT\n",
       {"VEVENT", "VEVENT"},
       true},
      {"an END too many", "BEGIN:A\nEND:A\nEND:A\nBEGIN:B\nEND:B\n", {"A", "B"}, false},
      {"inner END missing", "BEGIN:A\nBEGIN:B\nEND:A\nBEGIN:C\nEND:C\n", {"A", "C"}, true},
      {"nothing", "hello", {}, true},
  };
  for (const auto& [why, text, names, isComplained] : cases) {
    SCOPED_TRACE(why);
    std::string complaint;
    std::vector<std::string> found;
    for (const Component& component : parseComponents(text, &complaint)) found.emplace_back(component.name());
    EXPECT_EQ(found, names);
    EXPECT_EQ(!complaint.empty(), isComplained) << complaint;
  }
}

TEST(ReadingComponents, WritesTheEndThatWasMissing) {
  const struct {
    std::string_view text, written;
  } cases[] = {
      {"BEGIN:VEVENT\nUID:1", "BEGIN:VEVENT\nUID:1\nEND:VEVENT\n"},
      {"BEGIN:VEVENT\r\nUID:1\r\nEND:VEVENT", "BEGIN:VEVENT\r\nUID:1\r\nEND:VEVENT\r\n"},
      {"BEGIN:VEVENT\nBEGIN:VALARM\n", "BEGIN:VEVENT\nBEGIN:VALARM\nEND:VALARM\nEND:VEVENT\n"},
  };
  for (const auto& [text, written] : cases) EXPECT_EQ(only(text).text(), written);
}

TEST(ReadingComponents, SurvivesAnyDepthAndLength) {
  std::string deep;
  for (int i = 0; i < 200'000; ++i) deep += "BEGIN:A\n";
  for (int i = 0; i < 200'000; ++i) deep += "END:A\n";
  EXPECT_EQ(only(deep).text(), deep);

  const std::string title(1'000'000, 'x');
  Component event("VEVENT");
  event.add(Line::make("SUMMARY", title));
  EXPECT_EQ(only(event.text()).value("SUMMARY"), title);
}

TEST(EditingComponents, KeepsWhatIsNotTouched) {
  Component meeting = only(kMeeting);
  meeting.set(Line::make("SUMMARY", "Short"));
  meeting.set(Line::make("X-AFTER", "3"));
  meeting.add(Line::make("LOCATION", "Room 5"));
  meeting.remove("uid");
  EXPECT_EQ(meeting.text(),
            "BEGIN:VEVENT\r\n"
            "SUMMARY:Short\r\n"
            "BEGIN:VALARM\r\n"
            "TRIGGER:-PT15M\r\n"
            "END:VALARM\r\n"
            "X-AFTER:3\r\n"
            "LOCATION:Room 5\r\n"
            "END:VEVENT\r\n");
}

TEST(EditingComponents, NewLinesComeBeforeInnerComponentsThatFollowTheProperties) {
  Component event = only("BEGIN:VEVENT\nUID:1\n\nBEGIN:VALARM\nEND:VALARM\nEND:VEVENT\n");
  event.add(Line::make("SUMMARY", "x"));
  Component alarm("VALARM");
  alarm.add(Line::make("ACTION", "AUDIO"));
  event.add(std::move(alarm));
  EXPECT_EQ(event.text(),
            "BEGIN:VEVENT\nUID:1\nSUMMARY:x\n\nBEGIN:VALARM\nEND:VALARM\n"
            "BEGIN:VALARM\r\nACTION:AUDIO\r\nEND:VALARM\r\nEND:VEVENT\n");
  event.removeComponent(0);
  event.components()[0].remove("ACTION");
  EXPECT_EQ(event.text(), "BEGIN:VEVENT\nUID:1\nSUMMARY:x\n\nBEGIN:VALARM\r\nEND:VALARM\r\nEND:VEVENT\n");
}

TEST(EditingComponents, FoldsWithTheLineBreakOfTheComponent) {
  for (const std::string lineBreak : {"\r\n", "\n", "\r"}) {
    Component event = only("BEGIN:VEVENT" + lineBreak + "UID:1" + lineBreak + "END:VEVENT" + lineBreak);
    event.set(Line::make("UID", std::string(100, 'u')));
    EXPECT_EQ(event.text(), "BEGIN:VEVENT" + lineBreak + "UID:" + std::string(71, 'u') + lineBreak + " " +
                                std::string(29, 'u') + lineBreak + "END:VEVENT" + lineBreak);
  }
}

TEST(EditingComponents, KeepsInnerComponentsInPlaceWhenManyPropertiesGo) {
  std::string text = "BEGIN:VEVENT\nX:0\n";
  for (int i = 0; i < 50'000; ++i) text += "X:1\n";
  Component event = only(text + "UID:1\nBEGIN:VALARM\nEND:VALARM\nX:2\nY:3\nEND:VEVENT\n");
  event.set(Line::make("X", "4"));
  EXPECT_EQ(event.text(), "BEGIN:VEVENT\nX:4\nUID:1\nBEGIN:VALARM\nEND:VALARM\nY:3\nEND:VEVENT\n");
  event.remove(event.lines()[0].name());
  EXPECT_EQ(event.text(), "BEGIN:VEVENT\nUID:1\nBEGIN:VALARM\nEND:VALARM\nY:3\nEND:VEVENT\n");
}

TEST(EditingComponents, StaysReadableWhereLineBreaksAreMixed) {
  Component event = only("BEGIN:VEVENT\rUID:1\r\n\nBEGIN:VALARM\nEND:VALARM\r\nEND:VEVENT\r\n");
  event.add(Line::make("SUMMARY", std::string(100, 'x')));
  const Component again = only(event.text());
  EXPECT_EQ(again.value("UID"), "1");
  EXPECT_EQ(again.value("SUMMARY"), std::string(100, 'x'));
  EXPECT_EQ(again.components().size(), 1U);
}

TEST(EditingComponents, ClosesAnInnerComponentBeforeAnotherOneFollows) {
  Component event = only("BEGIN:VEVENT\nBEGIN:VALARM\nTRIGGER:P0D\nEND:VEVENT\n");
  event.add(Component("VALARM"));
  const Component again = only(event.text());
  EXPECT_EQ(again.components().size(), 2U) << event.text();
}

TEST(EditingComponents, LinesAreReplacedAndRemovedByIndex) {
  Component event = only("BEGIN:VEVENT\nA:1\nBEGIN:X\nEND:X\nA:2\nB:3\nEND:VEVENT\n");
  event.replaceLine(1, event.lines()[1].withValue("two"));
  event.removeLine(0);
  EXPECT_THAT(values(event), ElementsAre("two", "3"));
  EXPECT_EQ(event.text(), "BEGIN:VEVENT\nBEGIN:X\nEND:X\nA:two\nB:3\nEND:VEVENT\n");
}

TEST(EditingComponents, CopiesAreIndependent) {
  const Component original = only(kMeeting);
  Component copy = original;
  copy.set(Line::make("UID", "2"));
  copy.components().clear();
  EXPECT_EQ(original.text(), kMeeting);
  copy = original;
  EXPECT_EQ(copy.text(), kMeeting);
}

}  // namespace
}  // namespace ek::ical
