// The bridge keeps the contract of the calendar stores, on a stand-in for EventKit.
#include "tests/contract/store_contract.h"
#include "tests/objc/stand_in.h"

namespace ek::contract {
namespace {

class StandInDatabase final : public Database {
 public:
  std::shared_ptr<EventStore> open() override {
    database_.choose();
    return makeEventStore(kEntityMaskEvent | kEntityMaskReminder);
  }

 private:
  stand_in::Database database_;
};

std::unique_ptr<Database> makeStandIn() {
  stand_in::setLocalTimeZone("Europe/Berlin");
  return std::make_unique<StandInDatabase>();
}

INSTANTIATE_TEST_SUITE_P(EventKit, StoreContract, testing::Values(StoreKind{"EventKit", makeStandIn}),
                         kindName);

}  // namespace
}  // namespace ek::contract
