// Documents by their rows: those that were asked for last, as many as a bound of memory holds.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <unordered_map>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/store/document.h"

namespace ek::embedded {

class DocumentCache {
 public:
  explicit DocumentCache(std::size_t mostBytes) : mostBytes_(mostBytes) {}

  // Null when it is not kept.
  std::shared_ptr<const Document> find(RowId id);
  // In place of the one that was kept for that row; those that were not asked for the longest go.
  void keep(std::shared_ptr<const Document> document);
  void forget(RowId id);
  void clear();

 private:
  struct Kept {
    std::shared_ptr<const Document> document;
    std::size_t bytes = 0;  // as last counted
  };
  using Place = std::list<Kept>::iterator;

  void countLast();

  std::size_t mostBytes_;
  std::size_t bytes_ = 0;
  std::list<Kept> kept_;  // the last one asked for first
  std::unordered_map<RowId, Place> places_;
};

}  // namespace ek::embedded
