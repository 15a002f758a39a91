// A calculation that has been read, ready to be evaluated as often as wanted.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "host/calc/lexer.h"
#include "host/wrapper/stand_in.h"
#include "host/wrapper/value.h"

namespace fmhost {

// What a calculation reaches outside itself.
class Surroundings {
 public:
  virtual ~Surroundings() = default;

  // Null when no plug-in has one of that name, in any letter case.
  virtual const Registration* externalFunction(std::u16string_view name) const = 0;
  virtual const Registration* externalStep(std::u16string_view name) const = 0;
  // Throws CalculationError when the function fails.
  virtual Value call(const Registration& function, const Arguments& arguments) = 0;
  // Names begin with $ or $$ and are in lower case. A variable that was never set is an empty text.
  virtual Value variable(const Text& name) const = 0;
  virtual void setVariable(const Text& name, Value value) = 0;
  virtual Value scriptParameter() const = 0;
};

// The names that Let and While define, innermost last.
class Scopes {
 public:
  // Names of one Let or While, gone with this object.
  class Inner {
   public:
    explicit Inner(Scopes& scopes) : scopes_(scopes), outerStart_(scopes.start_) {
      scopes_.start_ = scopes_.entries_.size();
    }
    ~Inner() {
      scopes_.entries_.resize(scopes_.start_);
      scopes_.start_ = outerStart_;
    }
    Inner(const Inner&) = delete;
    Inner& operator=(const Inner&) = delete;

   private:
    Scopes& scopes_;
    std::size_t outerStart_;
  };

  // Null for a name that no scope has.
  const Value* find(const Text& name) const;
  // In the innermost scope, whatever the outer ones have.
  void set(const Text& name, Value value);

 private:
  struct Entry {
    Text name;
    Value value;
  };
  std::vector<Entry> entries_;
  std::size_t start_ = 0;
};

struct Evaluation {
  Surroundings& surroundings;
  Scopes names;
};

class Expression {
 public:
  virtual ~Expression() = default;
  virtual Value evaluate(Evaluation& evaluation) const = 0;
};
using ExpressionPtr = std::unique_ptr<const Expression>;

class Calculation {
 public:
  // Looks names up in the surroundings. Throws CalculationError.
  Calculation(std::u16string_view text, const Surroundings& surroundings);

  // The surroundings are those that it was read with. Throws CalculationError.
  Value evaluate(Surroundings& surroundings) const;

 private:
  ExpressionPtr root_;
};

}  // namespace fmhost
