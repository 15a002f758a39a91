#include <SQLiteCpp/Database.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include "tests/zunocal/zunocal_fixture.h"

namespace zuno_test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr char kUuid[] = "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[0-9A-F]{4}-[0-9A-F]{12}";

TEST_F(Zunocal, ListsANewStore) {
  const Outcome table = zunocal({"list"});
  EXPECT_EQ(table.status, 0) << table.errors;
  EXPECT_THAT(table.output, MatchesRegex(std::string("TITLE      KIND       TYPE   IDENTIFIER *  ITEMS\n") +
                                         "Calendar   events     local  " + kUuid + "      0\n" +
                                         "Reminders  reminders  local  " + kUuid + "      0\n"));
  const Outcome json = zunocal({"--json", "list"});
  EXPECT_THAT(json.output, StartsWith(R"([{"title":"Calendar","kind":"events","type":"local",)"));
  EXPECT_THAT(json.output, HasSubstr(R"(,"items":0,"default":true,"subscribed":false,)"));
  EXPECT_EQ(zunocal({"list", "--json"}).output, json.output);
}

TEST_F(Zunocal, GivesTheTerminalNoOrders) {
  const std::string rule = write("rule.ics",
                                 "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:a\nDTSTART:20240501\n"
                                 "RRULE:FREQ=DA\x1b[7mX\nEND:VEVENT\nEND:VCALENDAR\n");
  EXPECT_THAT(zunocal({"import", rule}).errors, HasSubstr("\"DA [7MX\""));
  zunocal({"import", "--calendar", "two\nlines\x1b[7m", write("one.ics", calendar("One", 1))});
  EXPECT_THAT(zunocal({"list"}).output, HasSubstr("\ntwo lines [7m  events"));
}

TEST_F(Zunocal, ImportsAndTellsWhatItSkipped) {
  const std::string file =
      write("in.ics",
            "BEGIN:VCALENDAR\nVERSION:2.0\nX-WR-CALNAME:Dïary \"1\"\nBEGIN:VEVENT\nUID:a\n"
            "DTSTART:20240501\nEND:VEVENT\nBEGIN:VEVENT\nUID:b\nEND:VEVENT\nBEGIN:VTODO\nUID:c\n"
            "END:VTODO\nEND:VCALENDAR\n");
  const Outcome text = zunocal({"import", file});
  EXPECT_EQ(text.status, 0);
  EXPECT_EQ(text.output, "Imported 1 event, 1 reminder and 0 contacts; 1 skipped.\n");
  EXPECT_EQ(text.errors, file + ":8: there is no DTSTART\n");
  EXPECT_EQ(zunocal({"--json", "import", file}).output,
            R"({"events":1,"reminders":1,"contacts":0,"skipped":[{"file":")" + file +
                R"(","line":8,"reason":"there is no DTSTART"}]})"
                "\n");
  EXPECT_THAT(zunocal({"--json", "list"}).output, HasSubstr(R"({"title":"Dïary \"1\"","kind":"reminders")"));
  EXPECT_EQ(zunocal({"check"}).status, 0);
}

TEST_F(Zunocal, ImportOfAFileThatSaysNothingFails) {
  const std::string good = write("good.ics", calendar("Good", 2));
  const std::string bad = write("bad.ics", "Nothing of the kind\n");
  const Outcome outcome = zunocal({"import", bad, good, folder_.file("missing.ics")});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.output, StartsWith("Imported 2 events"));
  EXPECT_THAT(outcome.errors, HasSubstr("missing.ics: No such file or directory\n"));
  EXPECT_THAT(outcome.errors, HasSubstr("bad.ics:1: "));
}

TEST_F(Zunocal, ExportsToStandardOutputAndToAFile) {
  const std::string text = calendar("One", 3);
  zunocal({"import", write("one.ics", text), write("two.ics", calendar("Two", 1))});
  EXPECT_EQ(zunocal({"export", "--calendar", "One"}).output, text);
  EXPECT_EQ(zunocal({"export", "--calendar", "Two", "--calendar", "One"}).output, text + calendar("Two", 1));
  const std::string target = write("out.ics", "former");
  chmod(target.c_str(), 0640);
  std::filesystem::create_symlink("out.ics", folder_.file("link.ics"));
  EXPECT_EQ(zunocal({"export", "-o", folder_.file("link.ics"), "--calendar", "One"}).status, 0);
  EXPECT_EQ(read(target), text);
  struct stat status {};
  stat(target.c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

TEST_F(Zunocal, AFailedExportLeavesTheFormerFile) {
  zunocal({"import", write("one.ics", calendar("One", 3))});
  const std::string target = write("out.ics", "former");
  const Outcome unknown = zunocal({"export", "-o", target, "--calendar", "Nope"});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.errors, "zunocal: There is no calendar or reminder list titled \"Nope\".\n");
  EXPECT_EQ(read(target), "former");
  EXPECT_EQ(zunocal({"export", "-o", folder_.file("no/folder/out.ics")}).status, 1);
  const Outcome full = zunocal({"export", "-o", "/dev/full"});
  EXPECT_EQ(full.status, 1);
  EXPECT_THAT(full.errors, HasSubstr("No space left on device"));
  std::size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
    files += entry.path().string().find("out.ics") != std::string::npos ? 1 : 0;
  EXPECT_EQ(files, 1u);
}

TEST_F(Zunocal, SaysWhyAStoreCannotBeOpened) {
  const std::string text = "no store\n";
  write("store.sqlite", text);
  for (const char* command : {"list", "check", "export"}) {
    SCOPED_TRACE(command);
    const Outcome outcome = zunocal({command});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors,
              "zunocal: The calendar store " + store_ + " is no calendar store (not a SQLite file).\n");
  }
  EXPECT_EQ(zunocal({"import", write("a.ics", calendar("A", 1))}).status, 1);
  EXPECT_EQ(read(store_), text);
}

TEST_F(Zunocal, CheckFindsWhatIsWrong) {
  zunocal({"import", write("a.ics", calendar("A", 2))});
  EXPECT_THAT(zunocal({"check"}).output, HasSubstr("is in order"));
  SQLite::Database(store_, SQLITE_OPEN_READWRITE).exec("UPDATE single_event SET hi = hi + 60");
  const Outcome outcome = zunocal({"check"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.output, HasSubstr("The item A-0 is not found as its text says"));
  EXPECT_THAT(zunocal({"check", "--json"}).output, StartsWith(R"({"ok":false,"faults":["The item A-0)"));
}

TEST_F(Zunocal, RefusesWrongArguments) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"import"},
                                             {"nonsense"},
                                             {"import", "--read-only", "--subscribed", "x.ics"},
                                             {"list", "--bogus"}}) {
    const Outcome outcome = zunocal(arguments);
    EXPECT_EQ(outcome.status, 2) << outcome.errors;
    EXPECT_FALSE(outcome.errors.empty());
  }
  EXPECT_FALSE(std::filesystem::exists(store_));
}

}  // namespace
}  // namespace zuno_test
