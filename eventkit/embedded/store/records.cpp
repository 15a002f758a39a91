#include "eventkit/embedded/store/records.h"

#include <utility>

namespace ek::embedded {

namespace {

// Enough for every series of a busy calendar to keep its text parsed during a walk over its occurrences.
constexpr std::size_t kMaxDocuments = 4096;

constexpr auto kLookAgainAfter = std::chrono::milliseconds(100);

}  // namespace

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
  const Database::Version version = open_->database->version();
  const auto kept = documents_.find(id);
  if (kept != documents_.end() && kept->second.version == version) return kept->second.document;

  std::optional<ItemRow> row = open_->items.find(id);
  if (!row) return nullptr;
  if (kept != documents_.end() && kept->second.document->row().change == row->change) {
    kept->second.version = version;
    return kept->second.document;
  }
  auto read = document(std::move(*row));
  if (documents_.size() >= kMaxDocuments) documents_.clear();
  documents_.insert_or_assign(id, Kept{read, version});
  return read;
}

std::shared_ptr<const Document> Records::document(ItemRow row) {
  return std::make_shared<Document>(std::move(row), std::shared_ptr<ItemTable>(open_, &open_->items));
}

}  // namespace ek::embedded
