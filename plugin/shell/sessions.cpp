#include "plugin/shell/sessions.h"

#include <algorithm>
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
  Cursor cursor;
  std::int64_t lastError = 0;
  zuno_PluginError pluginError;
  std::uint64_t lastUse = 0;
};

struct Sessions {
  std::recursive_mutex mutex;
  std::optional<std::uint64_t> current;  // none before the first call
  int running = 0;                       // calls, nested ones
  std::uint64_t uses = 0;
  std::unordered_map<std::uint64_t, Session> idle;
};

Sessions& sessions() {
  static Sessions& all = *new Sessions;  // outlives whatever the cursors refer to
  return all;
}

void exchangeWithCurrent(Session& session) {
  if (g_sharedEKFunctions != nullptr) g_sharedEKFunctions->exchangeCursor(session.cursor);
  std::swap(g_llasterror, session.lastError);
  if (error) std::swap(*error, session.pluginError);
}

void forgetLongestIdle(std::unordered_map<std::uint64_t, Session>& idle) {
  idle.erase(std::min_element(idle.begin(), idle.end(), [](const auto& one, const auto& other) {
    return one.second.lastUse < other.second.lastUse;
  }));
}

void makeCurrent(std::uint64_t session) {
  Sessions& all = sessions();
  if (all.current == session) return;
  // The first session takes over what initialisation has left.
  if (all.current) {
    Session& leaving = all.idle[*all.current];
    if (const auto known = all.idle.extract(session)) leaving = std::move(known.mapped());
    exchangeWithCurrent(leaving);
    leaving.lastUse = ++all.uses;
    if (all.idle.size() > kRememberedSessions) forgetLongestIdle(all.idle);
  }
  all.current = session;
}

}  // namespace

SessionLock::SessionLock() : lock_(sessions().mutex) {}

SessionScope::SessionScope(std::uint64_t session) {
  Sessions& all = sessions();
  if (all.running > 0) interrupted_ = all.current;
  makeCurrent(session);
  ++all.running;
}

SessionScope::~SessionScope() {
  --sessions().running;
  if (interrupted_) makeCurrent(*interrupted_);
}

}  // namespace zuno
