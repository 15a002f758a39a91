// Sessions on threads of their own, over the embedded store.
#include <gtest/gtest.h>
#include <thread>

#include "tests/plugin/host_test.h"
#include "tests/storage/temporary_folder.h"

namespace zuno::test {
namespace {

// The plug-in finds the store by its variable when it starts.
class OwnStore {
  zuno_test::TemporaryFolder folder_;
  ScopedVariable variable_{"ZUNO_STORE", folder_.file("calendars.sqlite")};
};

class SessionStore : public testing::Test, private OwnStore, protected RunningPlugin {
 protected:
  void work(std::uint64_t session, int rounds, int* wrong) {
    const auto expect = [&](const Answer& answer, const Answer& expected) {
      if (answer != expected) ++*wrong;
    };
    for (int round = 0; round < rounds; ++round) {
      const std::string title = "Session " + std::to_string(session) + ", " + std::to_string(round);
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
  EXPECT_EQ(wrong[0] + wrong[1], 0);
  EXPECT_EQ(call("EventsFetch", {text(""), text(""), text(""), text("")}), kSuccess);
  EXPECT_EQ(call("GetItemCountForType", {text("event")}), numberAnswer(2 * kRounds));
}

}  // namespace
}  // namespace zuno::test
