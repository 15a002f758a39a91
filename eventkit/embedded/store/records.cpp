#include "eventkit/embedded/store/records.h"

#include <optional>
#include <utility>

#include "eventkit/embedded/store/changes.h"

namespace ek::embedded {

namespace {

// Room for 50,000 usual items, or 10,000 that were parsed. Walking a year of 100,000 items comes back to the
// 13,000 that repeat in it again and again.
constexpr std::size_t kMostDocumentBytes = std::size_t{64} << 20;

constexpr auto kLookAgainAfter = std::chrono::milliseconds(100);

}  // namespace

Records::Records(std::string path) : path_(std::move(path)), documents_(kMostDocumentBytes) {}

Database* Records::database() {
  const bool isFresh = open_ && std::chrono::steady_clock::now() - lookedAt_ < kLookAgainAfter;
  return isFresh ? open_->database.get() : databaseForWriting();
}

Database* Records::databaseForWriting() {
  std::shared_ptr<Database> current = Database::shared(path_);
  lookedAt_ = std::chrono::steady_clock::now();
  const bool isSame = open_ ? open_->database == current : current == nullptr;
  if (!isSame) {
    documents_.clear();
    open_ = current ? std::make_shared<Open>(std::move(current)) : nullptr;
    ++generation_;
  }
  return open_ ? open_->database.get() : nullptr;
}

std::shared_ptr<const Document> Records::document(RowId id) {
  bringDocumentsUpToDate();
  if (auto kept = documents_.find(id)) return kept;
  std::optional<ItemRow> row = open_->items.find(id);
  if (!row) return nullptr;
  auto read = document(std::move(*row));
  documents_.keep(read);
  return read;
}

void Records::bringDocumentsUpToDate() {
  Database& database = *open_->database;
  if (documentsVersion_ == database.version()) return;
  const Database::Transaction reading(database, Database::Transaction::Kind::reading);
  const Database::Version version = database.version();
  const std::int64_t change = database.change();
  if (const auto changed = itemsChangedSince(database, documentsChange_, change)) {
    for (const RowId item : *changed) documents_.forget(item);
  } else {
    documents_.clear();
  }
  documentsVersion_ = version;
  documentsChange_ = change;
}

std::shared_ptr<const Document> Records::document(ItemRow row) {
  return std::make_shared<Document>(std::move(row), std::shared_ptr<ItemTable>(open_, &open_->items));
}

}  // namespace ek::embedded
