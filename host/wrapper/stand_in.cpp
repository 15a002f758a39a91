#include "host/wrapper/stand_in.h"

#include <algorithm>

namespace fmhost {
namespace {

constexpr std::int16_t kCommandUnavailable = 3;
constexpr std::int16_t kCommandInvalid = 5;

auto rowOf(Registrations& rows, std::int16_t id) { return std::ranges::find(rows, id, &Registration::id); }

}  // namespace

void StandIn::open(const QuadChar& pluginId, int extensionVersion) {
  const std::scoped_lock lock(mutex_);
  pluginId_ = pluginId;
  extensionVersion_ = extensionVersion;
}

void StandIn::close() {
  const std::scoped_lock lock(mutex_);
  pluginId_.reset();
  functions_.clear();
  steps_.clear();
}

std::int16_t StandIn::add(Registrations& rows, const QuadChar& pluginId, Registration row,
                          int neededVersion) {
  const std::scoped_lock lock(mutex_);
  if (extensionVersion_ < neededVersion) return kCommandUnavailable;
  if (pluginId_ != pluginId || row.name.empty() || row.function == nullptr) return kCommandInvalid;
  const auto known = rowOf(rows, row.id);
  if (known == rows.end()) {
    rows.push_back(std::move(row));
  } else {
    *known = std::move(row);
  }
  return 0;
}

std::int16_t StandIn::addFunction(const QuadChar& pluginId, Registration function, int neededVersion) {
  const bool anyNumber = function.mostArguments == -1;
  if (function.fewestArguments < 0 || (!anyNumber && function.mostArguments < function.fewestArguments)) {
    return kCommandInvalid;
  }
  return add(functions_, pluginId, std::move(function), neededVersion);
}

std::int16_t StandIn::addStep(const QuadChar& pluginId, Registration step) {
  return add(steps_, pluginId, std::move(step), k160ExtnVersion);
}

std::int16_t StandIn::remove(Registrations& rows, const QuadChar& pluginId, std::int16_t id) {
  const std::scoped_lock lock(mutex_);
  const auto row = rowOf(rows, id);
  if (pluginId_ != pluginId || row == rows.end()) return kCommandInvalid;
  rows.erase(row);
  return 0;
}

std::int16_t StandIn::removeFunction(const QuadChar& pluginId, std::int16_t id) {
  return remove(functions_, pluginId, id);
}

std::int16_t StandIn::removeStep(const QuadChar& pluginId, std::int16_t id) {
  return remove(steps_, pluginId, id);
}

std::int64_t StandIn::liveObjects() const {
  std::int64_t sum = 0;
  for (const auto& count : live_) sum += count.load();
  return sum;
}

std::string StandIn::describeLiveObjects() const {
  std::string text;
  for (std::size_t kind = 0; kind < live_.size(); ++kind) {
    const std::int64_t count = live_[kind].load();
    if (count == 0) continue;
    if (!text.empty()) text += ", ";
    text += std::to_string(count) + " " + kObjectKindNames[kind];
  }
  return text;
}

void StandIn::failCall(std::int64_t n, std::int32_t code) {
  failureCode_.store(code);
  callsUntilFailure_.store(n);
}

}  // namespace fmhost
