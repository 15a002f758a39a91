#include "eventkit/embedded/store/document_cache.h"

#include "tests/store/store_fixture.h"

namespace {

using ek::embedded::Document;
using ek::embedded::DocumentCache;
using ek::embedded::RowId;
using testing::ElementsAre;
using testing::IsEmpty;

class DocumentCacheTest : public zuno_test::StoreFixture {
 protected:
  // Of about a thousand bytes.
  std::shared_ptr<const Document> keep(RowId id) {
    ek::embedded::ItemRow row;
    row.id = id;
    row.text = "BEGIN:VEVENT\r\nUID:1\r\nDESCRIPTION:" + std::string(500, 'x') + "\r\nEND:VEVENT\r\n";
    cache_.keep(std::make_shared<Document>(std::move(row), items_));
    return cache_.find(id);
  }
  std::vector<RowId> kept() {
    std::vector<RowId> rows;
    for (RowId id = 1; id <= 9; ++id)
      if (cache_.find(id)) rows.push_back(id);
    return rows;
  }

  std::shared_ptr<ek::embedded::Database> database_ = ek::embedded::Database::shared(path());
  std::shared_ptr<ek::embedded::ItemTable> items_ = std::make_shared<ek::embedded::ItemTable>(*database_);
  DocumentCache cache_{6200};
};

TEST_F(DocumentCacheTest, ForgetsWhatWasNotAskedForTheLongest) {
  for (const RowId id : {1, 2, 3, 4, 5}) keep(id);
  cache_.find(1);
  keep(6);
  EXPECT_THAT(kept(), ElementsAre(1, 3, 4, 5, 6));
  const auto other = keep(3);
  EXPECT_EQ(cache_.find(3), other);
  cache_.forget(4);
  EXPECT_THAT(kept(), ElementsAre(1, 3, 5, 6));
  cache_.clear();
  EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(DocumentCacheTest, ParsedOnesTakeTheRoomOfSeveral) {
  for (const RowId id : {1, 2, 3, 4}) keep(id);
  keep(5)->components();  // grown after it was given out, which the next one shows
  keep(6);
  EXPECT_THAT(kept(), ElementsAre(5, 6));
  keep(7);
  EXPECT_THAT(kept(), ElementsAre(6, 7));
}

}  // namespace
