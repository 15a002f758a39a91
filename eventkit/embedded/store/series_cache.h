// The repeating events of the store, decoded once and kept: what a query over any range starts from.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "eventkit/embedded/recurrence/series.h"
#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/item_table.h"

namespace ek::embedded {

using recurrence::Series;

class SeriesCache {
 public:
  SeriesCache(Database& database, ItemTable& items) : database_(database), items_(items) {}

  struct Entry {
    RowId item = 0;
    RowId calendar = 0;
    std::int64_t lo = 0, hi = 0;           // everything of the series lies between these instants
    std::shared_ptr<const Series> series;  // null until it is needed; the same object while it says the same
    bool isEndless() const { return hi == std::numeric_limits<std::int64_t>::max(); }
  };

  // Both within a transaction, so that what is kept is of one moment. Calls visit for each series that may
  // touch the range; its `series` is decoded.
  void visit(std::int64_t start, std::int64_t end, const std::function<void(const Entry&)>& visit);
  // Null when that item does not repeat.
  const Entry* find(RowId item);

 private:
  void bringUpToDate();
  void load(std::int64_t start, std::int64_t end);
  void refresh(RowId item);
  void put(Entry entry);
  void drop(RowId item);
  std::shared_ptr<const Series> decoded(std::string_view data);
  const Entry& decoded(Entry& entry);

  std::shared_ptr<const foundation::TimeZone> zoneOf(const std::string& key);

  Database& database_;
  ItemTable& items_;
  std::unordered_map<std::string, std::shared_ptr<const foundation::TimeZone>> zones_;
  std::vector<Entry> entries_;
  std::unordered_map<RowId, std::size_t> places_;
  std::int64_t seen_ = 0;  // the change number that entries_ are of
  // Series that end after this are all there; none before the first load.
  std::int64_t loadedAfter_ = std::numeric_limits<std::int64_t>::max();
};

}  // namespace ek::embedded
