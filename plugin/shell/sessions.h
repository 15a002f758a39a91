// One server process runs several sessions of the host's, on several threads. Each has a cursor and a last
// error of its own: while a call runs, its session's are in the backend and in the globals, and everybody
// else waits.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace zuno {

struct Sessions;

// The lock alone, for what belongs to no session. Recursive: while a call waits for the calendar store on the
// host's run loop, the host may call again on the same thread.
class SessionLock {
 public:
  SessionLock();
  ~SessionLock();
  SessionLock(const SessionLock&) = delete;
  SessionLock& operator=(const SessionLock&) = delete;

  Sessions& sessions() const { return sessions_; }

 private:
  Sessions& sessions_;
};

// The session is current for as long as this lives; then the one is again that was before, when that one's
// call is still running.
class SessionScope {
 public:
  explicit SessionScope(std::uint64_t session);
  ~SessionScope();
  SessionScope(const SessionScope&) = delete;
  SessionScope& operator=(const SessionScope&) = delete;

 private:
  SessionLock lock_;
  std::optional<std::uint64_t> interrupted_;
};

// Of the sessions other than the current one those keep their state that were in use last: so many, and no
// longer than this.
inline constexpr std::size_t kRememberedSessions = 1000;
inline constexpr std::chrono::hours kRememberedFor{24};

using SessionClock = std::chrono::steady_clock;
// Called whenever another session becomes current.
void forgetSessionsIdleSince(SessionClock::time_point time);

}  // namespace zuno
