#include "foundation/run_loop.h"

#include <thread>

namespace foundation {

void runLoopFor(std::chrono::milliseconds duration) { std::this_thread::sleep_for(duration); }

AutoreleasePool::AutoreleasePool() : pool_(nullptr) {}
AutoreleasePool::~AutoreleasePool() = default;

}  // namespace foundation
