#include "eventkit/embedded/store/changes.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <algorithm>

#include "eventkit/embedded/storage/removed_items.h"

namespace ek::embedded {

namespace {
constexpr std::size_t kMany = 256;
}  // namespace

std::optional<std::vector<RowId>> itemsChangedSince(Database& database, std::int64_t since,
                                                    std::int64_t now) {
  if (since < now - kRememberedChanges) return std::nullopt;
  auto select = database.statement(
      "SELECT id FROM item WHERE change > ?1 UNION ALL SELECT item FROM removed_item WHERE change > ?1");
  select->bind(1, since);
  std::vector<RowId> changed;
  while (select->executeStep()) {
    changed.push_back(select->getColumn(0).getInt64());
    if (changed.size() > kMany) return std::nullopt;
  }
  std::ranges::sort(changed);
  changed.erase(std::unique(changed.begin(), changed.end()), changed.end());
  return changed;
}

}  // namespace ek::embedded
