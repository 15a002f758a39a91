// Processes that are killed, and several that do the same at once.
#include <chrono>
#include <gmock/gmock.h>
#include <thread>

#include "tests/zunocal/zunocal_fixture.h"

namespace zuno_test {
namespace {

using testing::HasSubstr;

class ZunocalTogether : public Zunocal {
 protected:
  void expectSound() {
    const Outcome outcome = zunocal({"check"});
    EXPECT_EQ(outcome.status, 0) << outcome.output << outcome.errors;
  }
};

TEST_F(ZunocalTogether, AnImportThatIsKilledIsThereWholeOrNotAtAll) {
  constexpr int kEvents = 20000;
  zunocal({"import", write("small.ics", calendar("Small", 10))});
  const std::string before = zunocal({"export"}).output;
  const std::string big = write("big.ics", calendar("Big", kEvents));
  const auto eventsIn = [](std::string_view text) {
    int count = 0;
    for (std::size_t at = text.find("BEGIN:VEVENT"); at != text.npos; at = text.find("BEGIN:VEVENT", at + 1))
      ++count;
    return count;
  };
  int killed = 0;
  for (int delay = 20; delay <= 320; delay += 60) {
    SCOPED_TRACE(delay);
    Process process(command({"import", big}));
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    process.kill();
    if (process.wait() == 0) break;
    ++killed;
    const std::string after = zunocal({"export"}).output;
    if (after == before) continue;
    // It came between the commit and the end of the process.
    EXPECT_EQ(eventsIn(after), eventsIn(before) + kEvents);
    break;
  }
  EXPECT_GT(killed, 0);
  expectSound();
  EXPECT_EQ(zunocal({"import", big}).status, 0);
  expectSound();
}

TEST_F(ZunocalTogether, SeveralThatCreateAndFillAStoreLoseNothing) {
  std::vector<Process> processes;
  for (int i = 0; i < 6; ++i) {
    const std::string title = "Together" + std::to_string(i % 3);
    const std::string file = write(std::to_string(i) + ".ics", calendar(title, 50, i));
    processes.emplace_back(command({"import", file}));
  }
  for (Process& process : processes) EXPECT_EQ(process.wait(), 0);
  expectSound();
  const std::string list = zunocal({"--json", "list"}).output;
  std::size_t calendars = 0;
  for (std::size_t at = list.find("\"title\""); at != std::string::npos; at = list.find("\"title\"", at + 1))
    ++calendars;
  EXPECT_EQ(calendars, 5u) << list;
  EXPECT_THAT(list, HasSubstr("\"items\":50"));
}

}  // namespace
}  // namespace zuno_test
