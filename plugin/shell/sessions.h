// One server process runs several sessions of the host's, on several threads. Each has a cursor and a last
// error of its own: while a call runs, its session's are in the backend and in the globals, and everybody
// else waits.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>

namespace zuno {

// The lock alone, for what belongs to no session. Recursive: while a call waits for the calendar store on the
// host's run loop, the host may call again on the same thread.
class SessionLock {
 public:
  SessionLock();

 private:
  std::lock_guard<std::recursive_mutex> lock_;
};

// The session is current for as long as this lives; then the one is again that was before, when that one's
// call is still running. Of the sessions that have been idle longest only so many are remembered.
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

// How many sessions other than the current one keep their state.
inline constexpr std::size_t kRememberedSessions = 1000;

}  // namespace zuno
