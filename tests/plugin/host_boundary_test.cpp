// Built with ZUNO_CATCH_AT_HOST, whatever the plug-in in hand is built with.
#include "plugin/shell/host_boundary.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace zuno {
namespace {

class HostBoundary : public testing::Test {
 protected:
  HostBoundary() { error = std::make_unique<zuno_PluginError>(); }
  ~HostBoundary() override {
    error.reset();
    g_llasterror = 0;
  }
};

TEST_F(HostBoundary, WhatIsRaisedIsRecorded) {
  bool told = false;
  atHostBoundary([] { throw std::bad_alloc(); }, [&] { told = true; });
  EXPECT_TRUE(told);
  EXPECT_EQ(g_llasterror, 9999);
  EXPECT_EQ(error->getError(), "Undefined Error.");
}

TEST_F(HostBoundary, AlsoWhenTellingFails) {
  atHostBoundary([] { throw 1; }, [] { throw std::runtime_error("again"); });
  EXPECT_EQ(g_llasterror, 9999);
}

TEST_F(HostBoundary, WhatSucceedsIsLeftAlone) {
  atHostBoundary([] { g_llasterror = 9001; }, [] { FAIL(); });
  EXPECT_EQ(g_llasterror, 9001);
}

}  // namespace
}  // namespace zuno
