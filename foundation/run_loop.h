// The parts of the platform's event handling that portable code has to name. Empty where there is none.
#pragma once

#include <chrono>

namespace foundation {

// Lets the calling thread's run loop work for that long (elsewhere: sleeps).
void runLoopFor(std::chrono::milliseconds duration);

// Objects that the platform releases later are released when this goes out of scope.
class AutoreleasePool {
 public:
  AutoreleasePool();
  ~AutoreleasePool();  // NOLINT(performance-trivially-destructible): on a Mac it is not trivial
  AutoreleasePool(const AutoreleasePool&) = delete;
  AutoreleasePool& operator=(const AutoreleasePool&) = delete;

 private:
  [[maybe_unused]] void* pool_;
};

}  // namespace foundation
