// Our plug-in on a store of ours, as one of the contenders.
#include "bench/contender.h"
#include "bench/plugin.h"

namespace bench {
namespace {

class Ours : public Contender {
 public:
  explicit Ours(const std::string& store)
      : count_((loadPlugin(store), function("Zuno_GetItemCountForType")), {"event"}) {}

  std::size_t count(Window window) override {
    Call(function("Zuno_EventsFetch"), {Timestamp{window.from}, Timestamp{window.to}, "", ""})();
    count_();
    return static_cast<std::size_t>(count_.number());
  }

 private:
  Call count_;
};

}  // namespace

std::unique_ptr<Contender> openOurs(const std::string& store) { return std::make_unique<Ours>(store); }

}  // namespace bench
