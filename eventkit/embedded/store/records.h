// What all objects of one store share: its database, and what was read from it and is kept while it is true.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/item_table.h"
#include "eventkit/embedded/store/calendar_directory.h"
#include "eventkit/embedded/store/document.h"
#include "eventkit/embedded/store/document_cache.h"
#include "eventkit/embedded/store/series_cache.h"

namespace ek::embedded {

class Records {
 public:
  explicit Records(std::string path);

  // Null as long as the file cannot be opened. Another object than before when another file was put in its
  // place; that is looked for now and then here, and always before something is written.
  Database* database();
  Database* databaseForWriting();

  // Grows when the database becomes another one: row numbers from before mean nothing then.
  std::uint64_t generation() const { return generation_; }

  // The rest only where database() was not null.
  ItemTable& items() { return open_->items; }
  SeriesCache& series() { return open_->series; }
  CalendarDirectory& calendars() { return open_->calendars; }

  // The item's row as it is now; null when there is none. An unchanged item gives the same document again, so
  // that the occurrences of a series share the reading of its text.
  std::shared_ptr<const Document> document(RowId id);
  std::shared_ptr<const Document> document(ItemRow row);

 private:
  struct Open {
    explicit Open(std::shared_ptr<Database> opened)
        : database(std::move(opened)), items(*database), series(*database, items), calendars(*database) {}
    std::shared_ptr<Database> database;
    ItemTable items;
    SeriesCache series;
    CalendarDirectory calendars;
  };

  void bringDocumentsUpToDate();

  std::string path_;
  std::shared_ptr<Open> open_;
  DocumentCache documents_;  // not in Open, which every document keeps alive
  // What the documents are of: as long as the first is the same, so is the second.
  Database::Version documentsVersion_;
  std::int64_t documentsChange_ = 0;
  std::uint64_t generation_ = 0;
  std::chrono::steady_clock::time_point lookedAt_;
};

}  // namespace ek::embedded
