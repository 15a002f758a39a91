#include <memory>

#include "eventkit/embedded/store/embedded_store.h"
#include "tests/contract/store_contract.h"
#include "tests/storage/temporary_folder.h"

namespace ek::contract {
namespace {

class EmbeddedDatabase final : public Database {
 public:
  std::shared_ptr<EventStore> open() override {
    return std::make_shared<embedded::EmbeddedStore>(folder_.file("calendars.sqlite"));
  }

 private:
  zuno_test::TemporaryFolder folder_;
};

std::unique_ptr<Database> makeEmbedded() { return std::make_unique<EmbeddedDatabase>(); }

INSTANTIATE_TEST_SUITE_P(Embedded, StoreContract, testing::Values(StoreKind{"embedded", makeEmbedded}),
                         kindName);

}  // namespace
}  // namespace ek::contract
