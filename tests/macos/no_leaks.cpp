// Every test of this program leaves no object of the stand-in's behind.
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

#include "tests/objc/stand_in.h"

namespace {

class NoLeaks final : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo& /*test*/) override { before_ = stand_in::liveObjects(); }

  void OnTestEnd(const testing::TestInfo& /*test*/) override {
    // A thread that delivered something may still be on its way out.
    for (int wait = 0; wait < 400 && stand_in::liveObjects() > before_; ++wait)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(stand_in::liveObjects(), before_) << "objects were leaked";
  }

  long before_ = 0;
};

const bool isListening = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new NoLeaks);
  return true;
}();

}  // namespace
