#include "eventkit/embedded/store/series_cache.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <utility>

#include "eventkit/embedded/store/changes.h"

namespace ek::embedded {

namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

std::string_view bytesOf(const SQLite::Column& column) {
  return {static_cast<const char*>(column.getBlob()), static_cast<std::size_t>(column.getBytes())};
}

}  // namespace

void SeriesCache::visit(std::int64_t start, std::int64_t end,
                        const std::function<void(const Entry&)>& visit) {
  bringUpToDate();
  load(start, end);
  for (Entry& entry : entries_) {
    const bool touches = entry.hi >= start && (entry.lo < end || entry.lo == start);
    if (touches) visit(decoded(entry));
  }
}

const SeriesCache::Entry* SeriesCache::find(RowId item) {
  bringUpToDate();
  if (!places_.contains(item)) refresh(item);
  const auto place = places_.find(item);
  return place == places_.end() ? nullptr : &decoded(entries_[place->second]);
}

void SeriesCache::bringUpToDate() {
  const std::int64_t change = database_.change();
  if (change == seen_) return;
  zones_.clear();
  const auto changed = loadedAfter_ == kNever ? std::nullopt : itemsChangedSince(database_, seen_, change);
  if (changed) {
    for (const RowId item : *changed) refresh(item);
  } else {
    entries_.clear();
    places_.clear();
    loadedAfter_ = kNever;
  }
  seen_ = change;
}

// Sees to it that every series that ends at `start` or later is there. Those that begin after `end` are not
// decoded yet.
void SeriesCache::load(std::int64_t start, std::int64_t end) {
  if (start > loadedAfter_) return;
  auto select = database_.statement(
      "SELECT item, calendar, lo, hi, data FROM series_event WHERE hi >= ?1 AND hi <= ?2");
  select->bind(1, start);
  select->bind(2, loadedAfter_);
  while (select->executeStep()) {
    Entry entry{.item = select->getColumn(0).getInt64(),
                .calendar = select->getColumn(1).getInt64(),
                .lo = select->getColumn(2).getInt64(),
                .hi = select->getColumn(3).getInt64(),
                .series = nullptr};
    if (places_.contains(entry.item)) continue;
    if (entry.lo <= end) entry.series = decoded(bytesOf(select->getColumn(4)));
    put(std::move(entry));
  }
  loadedAfter_ = start - 1;
}

// Reads one item's row again; an item that no longer repeats is dropped.
void SeriesCache::refresh(RowId item) {
  auto select = database_.statement("SELECT calendar, lo, hi, data FROM series_event WHERE item = ?1");
  select->bind(1, item);
  if (!select->executeStep()) return drop(item);
  put({.item = item,
       .calendar = select->getColumn(0).getInt64(),
       .lo = select->getColumn(1).getInt64(),
       .hi = select->getColumn(2).getInt64(),
       .series = decoded(bytesOf(select->getColumn(3)))});
}

std::shared_ptr<const Series> SeriesCache::decoded(std::string_view data) {
  std::optional<recurrence::Decoded> decoded = recurrence::decode(data);
  if (!decoded) throw Exception("the store is damaged: a repeating event cannot be read");
  decoded->series.zone = zoneOf(decoded->zoneKey);
  return std::make_shared<const Series>(std::move(decoded->series));
}

std::shared_ptr<const foundation::TimeZone> SeriesCache::zoneOf(const std::string& key) {
  if (key.empty()) return nullptr;
  const auto [kept, isNew] = zones_.try_emplace(key);
  if (isNew) kept->second = items_.zoneForKey(key);
  return kept->second;
}

const SeriesCache::Entry& SeriesCache::decoded(Entry& entry) {
  if (!entry.series) {
    auto select = database_.statement("SELECT data FROM series_event WHERE item = ?1");
    select->bind(1, entry.item);
    if (!select->executeStep()) throw Exception("the store is damaged: a repeating event is incomplete");
    entry.series = decoded(bytesOf(select->getColumn(0)));
  }
  return entry;
}

void SeriesCache::put(Entry entry) {
  const auto [place, isNew] = places_.try_emplace(entry.item, entries_.size());
  if (isNew) {
    entries_.push_back(std::move(entry));
    return;
  }
  Entry& known = entries_[place->second];
  const bool isSame = known.series && entry.series && *known.series == *entry.series;
  if (isSame) entry.series = known.series;
  known = std::move(entry);
}

void SeriesCache::drop(RowId item) {
  const auto place = places_.find(item);
  if (place == places_.end()) return;
  const std::size_t index = place->second;
  places_.erase(place);
  if (index + 1 != entries_.size()) {
    entries_[index] = std::move(entries_.back());
    places_[entries_[index].item] = index;
  }
  entries_.pop_back();
}

}  // namespace ek::embedded
