#include "host/session.h"

#include <atomic>
#include <utility>

namespace fmhost {
namespace {

std::uint64_t nextSessionId() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

bool isGlobal(const Text& name) { return name.starts_with(u"$$"); }

}  // namespace

Session::Session(const Plugin& plugin) : plugin_(plugin), environment_{nextSessionId(), 1} {}

Value Session::evaluate(std::u16string_view calculation) { return evaluate(Calculation(calculation, *this)); }

const Registration* Session::externalFunction(std::u16string_view name) const {
  return plugin_.function(name);
}

const Registration* Session::externalStep(std::u16string_view name) const { return plugin_.step(name); }

Value Session::call(const Registration& function, const Arguments& arguments) {
  Value result;
  try {
    Plugin::call(function, environment_, arguments, result);
  } catch (const CallError& failure) {
    throw CalculationError(failure.what());
  }
  return result;
}

Value Session::variable(const Text& name) const {
  const Variables& variables = isGlobal(name) ? global_ : local_;
  const auto found = variables.find(name);
  return found == variables.end() ? Value::ofText({}) : found->second;
}

void Session::setVariable(const Text& name, Value value) {
  (isGlobal(name) ? global_ : local_).insert_or_assign(name, std::move(value));
}

Session::Script::Script(Session& session, Value parameter)
    : session_(session),
      outerVariables_(std::exchange(session.local_, {})),
      outerParameter_(std::exchange(session.parameter_, std::move(parameter))) {}

Session::Script::~Script() {
  session_.local_ = std::move(outerVariables_);
  session_.parameter_ = std::move(outerParameter_);
}

}  // namespace fmhost
