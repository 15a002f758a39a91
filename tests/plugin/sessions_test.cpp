#include "plugin/shell/sessions.h"

#include "tests/plugin/host_test.h"

namespace zuno::test {
namespace {

class Sessions : public HostTest {
 protected:
  Answer title(std::uint64_t session) { return call("GetProperty", {text("event"), text("title")}, session); }
  void open(int position, std::uint64_t session) {
    EXPECT_EQ(call("EventsFetch", {text(""), text(""), text(""), text("")}, session), kSuccess);
    EXPECT_EQ(call("OpenItemAt", {text("event"), number(position)}, session), kSuccess);
  }
  // Sessions that no other case uses: what a session has open outlives the case.
  static std::uint64_t fresh() {
    static std::uint64_t last = 100;
    return ++last;
  }
};

TEST_F(Sessions, EachHasItsOwnCursorAndLastError) {
  const std::uint64_t one = fresh();
  const std::uint64_t other = fresh();
  open(1, one);
  EXPECT_EQ(title(other), kFailure);
  EXPECT_EQ(lastError(other).first, 9066);
  EXPECT_EQ(lastError(one), std::pair(0, std::string("Success")));
  open(2, other);
  EXPECT_EQ(title(one), textAnswer("Standup"));
  EXPECT_EQ(title(other), textAnswer("Review"));
  call("NewItem", {text("meeting")}, one);
  EXPECT_EQ(lastError(other).first, 0);
  EXPECT_EQ(lastError(one).first, 9042);
  EXPECT_EQ(lastError(one).second, "Invalid type specified in parameter.");
  EXPECT_EQ(call("GetItemCountForType", {text("event")}, other), numberAnswer(3));
  EXPECT_EQ(call("GetItemCountForType", {text("event")}, one), kFailure);
}

TEST_F(Sessions, TheReasonOfAFailureIsTheSessionsToo) {
  const std::uint64_t one = fresh();
  const std::uint64_t other = fresh();
  store_.raiseAt(1);
  call("GetItemCountForType", {text("calendar")}, one);
  EXPECT_EQ(backend_.getLastErrorString(), "the store broke");
  call("Version", {}, other);
  EXPECT_EQ(backend_.getLastErrorString(), std::nullopt);
  call("Version", {}, one);
  EXPECT_EQ(backend_.getLastErrorString(), "the store broke");
}

TEST_F(Sessions, TheLongestIdleAreForgotten) {
  const std::uint64_t kept = fresh();
  const std::uint64_t forgotten = fresh();
  open(1, kept);
  open(2, forgotten);
  EXPECT_EQ(title(kept), textAnswer("Standup"));
  for (std::size_t i = 0; i < kRememberedSessions - 1; ++i) call("Version", {}, fresh());
  EXPECT_EQ(title(kept), textAnswer("Standup"));
  call("Version", {}, fresh());
  call("Version", {}, fresh());
  EXPECT_EQ(title(forgotten), kFailure);
  EXPECT_EQ(lastError(forgotten).first, 9066);
}

TEST_F(Sessions, IdleForLongTheyAreForgotten) {
  const std::uint64_t current = fresh();
  const std::uint64_t idle = fresh();
  open(1, idle);
  open(2, current);
  forgetSessionsIdleSince(SessionClock::now() - kRememberedFor);
  EXPECT_EQ(title(idle), textAnswer("Standup"));
  EXPECT_EQ(title(current), textAnswer("Review"));
  forgetSessionsIdleSince(SessionClock::now());
  EXPECT_EQ(title(current), textAnswer("Review"));
  EXPECT_EQ(title(idle), kFailure);
}

TEST_F(Sessions, ACallWithinACallLeavesTheFirstAsItWas) {
  const std::uint64_t one = fresh();
  const std::uint64_t other = fresh();
  open(1, one);
  open(2, other);
  {
    const SessionScope outer(one);
    EXPECT_EQ(title(other), textAnswer("Review"));
    EXPECT_EQ(event("title"), "Standup");
    EXPECT_EQ(title(one), textAnswer("Standup"));
    EXPECT_EQ(event("title"), "Standup");
  }
  call("Version", {}, other);
  EXPECT_EQ(event("title"), "Review");
}

}  // namespace
}  // namespace zuno::test
