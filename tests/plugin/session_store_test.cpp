// Sessions on threads of their own, over the embedded store.
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

#include "tests/plugin/host_test.h"

namespace zuno::test {
namespace {

class SessionStore : public testing::Test, protected RunningPlugin {
 protected:
  void work(std::uint64_t session, int rounds, int* wrong) {
    const auto expect = [&](const Answer& answer, const Answer& expected) {
      if (answer != expected) ++*wrong;
    };
    const std::string mine = "Session " + std::to_string(session);
    for (int round = 0; round < rounds; ++round) {
      const std::string title = mine + ", " + std::to_string(round);
      expect(call("NewItem", {text("event")}, session), kSuccess);
      expect(call("SetProperty", {text("event"), text("title"), text(title)}, session), kSuccess);
      expect(call("SetProperty", {text("event"), text("calendartitle"), text("Calendar")}, session),
             kSuccess);
      for (const char* date : {"startdate", "enddate"})
        expect(call("SetProperty", {text("event"), text(date), timestamp("3/2/2026 9:00:00")}, session),
               kSuccess);
      expect(call("SaveItem", {text("event"), text("this")}, session), kSuccess);
      const Answer uid = call("GetProperty", {text("event"), text("uid")}, session);
      expect(call("OpenItemWithUID", {text("event"), text("nobody")}, session), kFailure);
      if (lastError(session).first != 9001) ++*wrong;
      expect(call("OpenItemWithUID", {text("event"), text(uid.shown)}, session), kSuccess);
      expect(call("GetProperty", {text("event"), text("title")}, session), textAnswer(title));
    }
  }
};

TEST_F(SessionStore, EachFindsWhatItSaved) {
  constexpr int kRounds = 15;
  int wrong[2] = {};
  std::thread other([&] { work(2, kRounds, &wrong[1]); });
  work(1, kRounds, &wrong[0]);
  other.join();
  EXPECT_EQ(wrong[0], 0);
  EXPECT_EQ(wrong[1], 0);
  EXPECT_EQ(call("EventsFetch", {text(""), text(""), text(""), text("")}), kSuccess);
  EXPECT_EQ(call("GetItemCountForType", {text("event")}), numberAnswer(2 * kRounds));
}

// The store is found by its variable, at the plug-in's start: once for the program.
class OwnFolder : public testing::Environment {
 public:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "zuno-sessions-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    setenv("ZUNO_STORE", (folder_ / "calendars.sqlite").c_str(), 1);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

 private:
  std::filesystem::path folder_;
};
const auto* const kOwnFolder = testing::AddGlobalTestEnvironment(new OwnFolder);

}  // namespace
}  // namespace zuno::test
