// One user's session: its variables, and calculations in it.
#pragma once

#include <string_view>
#include <unordered_map>

#include "host/calc/expression.h"
#include "host/plugin.h"

namespace fmhost {

// Used from one thread; several may share a plug-in, which outlives them.
class Session : public Surroundings {
 public:
  explicit Session(const Plugin& plugin);

  // Throws CalculationError.
  Value evaluate(std::u16string_view calculation);
  Value evaluate(const Calculation& calculation) { return calculation.evaluate(*this); }

  const Plugin& plugin() const { return plugin_; }
  const Environment& environment() const { return environment_; }

  // A script's own $ variables and parameter, until this goes.
  class Script {
   public:
    Script(Session& session, Value parameter);
    ~Script();
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

   private:
    Session& session_;
    std::unordered_map<Text, Value> outerVariables_;
    Value outerParameter_;
  };

  const Registration* externalFunction(std::u16string_view name) const override;
  const Registration* externalStep(std::u16string_view name) const override;
  Value call(const Registration& function, const Arguments& arguments) override;
  Value variable(const Text& name) const override;
  void setVariable(const Text& name, Value value) override;
  Value scriptParameter() const override { return parameter_; }

 private:
  using Variables = std::unordered_map<Text, Value>;

  const Plugin& plugin_;
  Environment environment_;
  Variables global_;  // $$
  Variables local_;   // $
  Value parameter_ = Value::ofText({});
};

}  // namespace fmhost
