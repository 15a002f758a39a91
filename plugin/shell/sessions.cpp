#include "plugin/shell/sessions.h"

#include <list>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "plugin/backend/cursor.h"
#include "plugin/backend/ical_ek_functions.h"
#include "plugin/shell/globals.h"
#include "plugin/shell/plugin_error.h"

namespace zuno {

namespace {

// What a session leaves behind between its calls.
struct Session {
  std::uint64_t id = 0;
  Cursor cursor;
  std::int64_t lastError = 0;
  zuno_PluginError pluginError;
  SessionClock::time_point lastUse;
};

}  // namespace

struct Sessions {
  std::recursive_mutex mutex;
  std::optional<std::uint64_t> current;                                    // none before the first call
  int running = 0;                                                         // calls, nested ones
  std::list<Session> idle;                                                 // the longest idle first
  std::unordered_map<std::uint64_t, std::list<Session>::iterator> places;  // in idle
};

namespace {

Sessions& allSessions() {
  static Sessions& all = *new Sessions;  // outlives whatever the cursors refer to
  return all;
}

void exchangeWithCurrent(Session& session) {
  if (g_sharedEKFunctions != nullptr) g_sharedEKFunctions->exchangeCursor(session.cursor);
  std::swap(g_llasterror, session.lastError);
  if (error) std::swap(*error, session.pluginError);
}

void forgetLongestIdle(Sessions& all) {
  all.places.erase(all.idle.front().id);
  all.idle.pop_front();
}

void makeCurrent(Sessions& all, std::uint64_t session) {
  // The first session takes over what initialisation has left.
  if (all.current) {
    const auto known = all.places.extract(session);
    const auto place = known ? known.mapped() : all.idle.emplace(all.idle.end());
    exchangeWithCurrent(*place);
    place->id = *all.current;
    place->lastUse = SessionClock::now();
    all.idle.splice(all.idle.end(), all.idle, place);
    all.places.emplace(place->id, place);
    if (all.idle.size() > kRememberedSessions) forgetLongestIdle(all);
    forgetSessionsIdleSince(place->lastUse - kRememberedFor);
  }
  all.current = session;
}

}  // namespace

void forgetSessionsIdleSince(SessionClock::time_point time) {
  Sessions& all = allSessions();
  while (!all.idle.empty() && all.idle.front().lastUse < time) forgetLongestIdle(all);
}

SessionLock::SessionLock() : sessions_(allSessions()) { sessions_.mutex.lock(); }

SessionLock::~SessionLock() { sessions_.mutex.unlock(); }

SessionScope::SessionScope(std::uint64_t session) {
  Sessions& all = lock_.sessions();
  if (all.running > 0) interrupted_ = all.current;
  if (all.current != session) makeCurrent(all, session);
  ++all.running;
}

SessionScope::~SessionScope() {
  Sessions& all = lock_.sessions();
  --all.running;
  if (interrupted_ && all.current != interrupted_) makeCurrent(all, *interrupted_);
}

}  // namespace zuno
