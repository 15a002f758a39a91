// Waiting lets the run loop work, and takes its time also when the loop has nothing to do.
#include "foundation/run_loop.h"

#import <Foundation/Foundation.h>
#include <chrono>
#include <gtest/gtest.h>

@interface RunLoopProbe : NSObject {
 @public
  int fired;
}
- (void)fire:(NSTimer*)timer;
@end

@implementation RunLoopProbe
- (void)fire:(NSTimer*)timer {
  (void)timer;
  ++fired;
}
@end

namespace {

using std::chrono::milliseconds;

TEST(RunLoop, WaitingWithoutAnythingToWatchTakesAsLongAsWasAsked) {
  const auto start = std::chrono::steady_clock::now();
  foundation::runLoopFor(milliseconds(20));
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(20));
}

TEST(RunLoop, TimersFireWhileWaiting) {
  const foundation::AutoreleasePool pool;
  RunLoopProbe* probe = [[[RunLoopProbe alloc] init] autorelease];
  [NSTimer scheduledTimerWithTimeInterval:0.01
                                   target:probe
                                 selector:@selector(fire:)
                                 userInfo:nil
                                  repeats:NO];
  for (int slice = 0; slice < 100 && probe->fired == 0; ++slice) foundation::runLoopFor(milliseconds(10));
  EXPECT_EQ(probe->fired, 1);
}

}  // namespace
