#pragma once

#include <cstdlib>
#include <optional>
#include <string>

// Sets an environment variable, or removes it; what was there comes back at the end.
class ScopedVariable {
 public:
  ScopedVariable(std::string name, std::optional<std::string> value) : name_(std::move(name)) {
    if (const char* before = std::getenv(name_.c_str())) before_ = before;
    set(value);
  }
  ~ScopedVariable() { set(before_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

  void set(const std::optional<std::string>& value) {
    if (value)
      setenv(name_.c_str(), value->c_str(), 1);
    else
      unsetenv(name_.c_str());
  }

 private:
  std::string name_;
  std::optional<std::string> before_;
};
