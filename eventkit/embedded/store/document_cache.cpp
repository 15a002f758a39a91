#include "eventkit/embedded/store/document_cache.h"

#include <utility>

namespace ek::embedded {

std::shared_ptr<const Document> DocumentCache::find(RowId id) {
  countLast();
  const auto place = places_.find(id);
  if (place == places_.end()) return nullptr;
  kept_.splice(kept_.begin(), kept_, place->second);
  return kept_.front().document;
}

void DocumentCache::keep(std::shared_ptr<const Document> document) {
  countLast();
  const RowId id = document->row().id;
  forget(id);
  kept_.push_front({.document = std::move(document)});
  places_.emplace(id, kept_.begin());
  countLast();
  while (bytes_ > mostBytes_ && kept_.size() > 1) forget(kept_.back().document->row().id);
}

void DocumentCache::forget(RowId id) {
  const auto place = places_.find(id);
  if (place == places_.end()) return;
  bytes_ -= place->second->bytes;
  kept_.erase(place->second);
  places_.erase(place);
}

void DocumentCache::clear() {
  kept_.clear();
  places_.clear();
  bytes_ = 0;
}

// A document grows when it is read, which is after it was given out.
void DocumentCache::countLast() {
  if (kept_.empty()) return;
  Kept& last = kept_.front();
  bytes_ -= last.bytes;
  last.bytes = last.document->bytes();
  bytes_ += last.bytes;
}

}  // namespace ek::embedded
