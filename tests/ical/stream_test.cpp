#include "eventkit/embedded/ical/stream.h"

#include <gmock/gmock.h>

namespace ek::ical {
namespace {

// What a walk reports, one word each: "[" and "]" around a calendar, "NAME@line" for a property,
// "<NAME@line>" for a component, "!line" for a problem.
std::vector<std::string> walked(std::string_view text) {
  std::vector<std::string> seen;
  walkStream(
      text, {.beginCalendar = [&] { seen.emplace_back("["); },
             .piece =
                 [&](const Piece& piece) {
                   const std::string word = std::string(piece.name) + "@" + std::to_string(piece.line);
                   seen.push_back(piece.isComponent ? "<" + word + ">" : word);
                 },
             .endCalendar = [&] { seen.emplace_back("]"); },
             .problem = [&](const Problem& problem) { seen.push_back("!" + std::to_string(problem.line)); }});
  return seen;
}

TEST(WalkingAStream, AcceptsWhatProgramsWrite) {
  const struct {
    std::string_view why, text;
    std::vector<std::string> seen;
  } cases[] = {
      {"folded lines, and what follows the components",
       "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:a\r\n b\r\nBEGIN:VEVENT\r\nBEGIN:VALARM\r\n"
       "END:VALARM\r\nEND:VEVENT\r\nX-LATE:1\r\nEND:VCALENDAR\r\n",
       {"[", "VERSION@2", "X-WR-CALNAME@3", "<VEVENT@5>", "X-LATE@9", "]"}},
      {"byte-order mark",
       "\xEF\xBB\xBF"
       "BEGIN:VCALENDAR\nEND:VCALENDAR\n",
       {"[", "]"}},
      {"lone CR",
       "BEGIN:VCALENDAR\rX:1\rBEGIN:VTODO\rEND:VTODO\rEND:VCALENDAR",
       {"[", "X@2", "<VTODO@3>", "]"}},
      {"blank lines and lower case",
       "\n\nbegin:vcalendar\n \n\nbegin:vevent\nend:vevent\n\nend:vcalendar\n\n",
       {"[", "<vevent@6>", "]"}},
      {"several calendars",
       "BEGIN:VCALENDAR\nEND:VCALENDAR\nBEGIN:VCALENDAR\nEND:VCALENDAR\n",
       {"[", "]", "[", "]"}},
      {"no calendar",
       "BEGIN:VEVENT\nEND:VEVENT\nBEGIN:VTODO\nEND:VTODO\n",
       {"[", "<VEVENT@1>", "<VTODO@3>", "]"}},
      {"cut off", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:1", {"[", "<VEVENT@2>", "]"}},
      {"Latin-1", "BEGIN:VCALENDAR\nX-N:caf\xE9\nEND:VCALENDAR\n", {"[", "X-N@2", "]"}},
      {"unknown components",
       "BEGIN:VCALENDAR\nBEGIN:X-ODD\nBEGIN:VPOLL\nEND:VPOLL\nEND:X-ODD\nEND:VCALENDAR\n",
       {"[", "<X-ODD@2>", "]"}},
  };
  for (const auto& [why, text, seen] : cases) {
    SCOPED_TRACE(why);
    EXPECT_EQ(walked(text), seen);
  }
}

TEST(WalkingAStream, ReportsWhatIsWrongAndGoesOn) {
  const struct {
    std::string_view why, text;
    std::vector<std::string> seen;
  } cases[] = {
      {"nothing of a calendar, said once", "a\nb\nc: d\n", {"!1"}},
      {"a card", "BEGIN:VCARD\nFN:x\nEND:VCARD\nBEGIN:VEVENT\nEND:VEVENT\n", {"!1", "[", "<VEVENT@4>", "]"}},
      {"a broken line", "BEGIN:VCALENDAR\nX\nY\nZ:1\nEND:VCALENDAR\n", {"[", "!2", "Z@4", "]"}},
      {"no END before the next event",
       "BEGIN:VCALENDAR\nBEGIN:VEVENT\nBEGIN:VALARM\nBEGIN:VEVENT\nEND:VEVENT\nEND:VCALENDAR\n",
       {"[", "!2", "<VEVENT@2>", "<VEVENT@4>", "]"}},
      {"no END before the calendar's",
       "BEGIN:VCALENDAR\nBEGIN:VEVENT\nEND:VCALENDAR\nBEGIN:VCALENDAR\nEND:VCALENDAR\n",
       {"[", "!2", "<VEVENT@2>", "]", "[", "]"}},
      {"a stray END",
       "BEGIN:VCALENDAR\nEND:VEVENT\nX:1\nEND:VCALENDAR\nEND:VCALENDAR\n",
       {"[", "!2", "X@3", "]", "!5"}},
      {"a misspelt BEGIN",
       "BEGIN:VCALENDAR\nBEGIN:VEVNT\nEND:VEVENT\nBEGIN:VEVENT\nEND:VEVENT\nEND:VCALENDAR\n",
       {"[", "<VEVNT@2>", "<VEVENT@4>", "]"}},
      {"UTF-16",
       std::string_view("\xFF\xFE"
                        "B\0E\0",
                        6),
       {"!1"}},
      {"empty", "", {}},
  };
  for (const auto& [why, text, seen] : cases) {
    SCOPED_TRACE(why);
    EXPECT_EQ(walked(text), seen);
  }
}

}  // namespace
}  // namespace ek::ical
