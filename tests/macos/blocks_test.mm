// The blocks that the bridge hands to frameworks keep and release what they captured.
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <memory>

namespace {

TEST(Blocks, HoldAndReleaseWhatTheyCapture) {
  const auto captured = std::make_shared<int>(7);
  @autoreleasepool {
    const auto literal = ^{
      return *captured;
    };
    EXPECT_EQ(captured.use_count(), 2);
    int (^kept)() = [literal copy];
    EXPECT_EQ(captured.use_count(), 3);
    int (^shared)() = [kept retain];
    [kept release];
    EXPECT_EQ(captured.use_count(), 3);
    EXPECT_EQ(shared(), 7);
    [shared release];
    EXPECT_EQ(captured.use_count(), 2);
  }
  EXPECT_EQ(captured.use_count(), 1);
}

TEST(Blocks, ShareTheVariablesThatTheyChange) {
  @autoreleasepool {
    __block int calls = 0;
    void (^count)() = [^{
      ++calls;
    } copy];
    count();
    count();
    [count release];
    EXPECT_EQ(calls, 2);
  }
}

}  // namespace
