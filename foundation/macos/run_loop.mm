#include "foundation/run_loop.h"

#import <Foundation/Foundation.h>
#include <thread>

namespace foundation {

void runLoopFor(std::chrono::milliseconds duration) {
  const auto end = std::chrono::steady_clock::now() + duration;
  const AutoreleasePool pool;
  [[NSRunLoop currentRunLoop]
      runUntilDate:[NSDate dateWithTimeIntervalSinceNow:std::chrono::duration<double>(duration).count()]];
  // A loop that has nothing to watch returns at once; callers wait in slices and would spin.
  std::this_thread::sleep_until(end);
}

AutoreleasePool::AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}
AutoreleasePool::~AutoreleasePool() { [static_cast<NSAutoreleasePool*>(pool_) drain]; }

}  // namespace foundation
