// The test plug-in, loaded; and what it must have given back when the test ends.
#pragma once

#include <gtest/gtest.h>
#include <string>

#include "foundation/text.h"
#include "host/output.h"
#include "host/session.h"

namespace fmhost {

class WithPlugin : public testing::Test {
 protected:
  explicit WithPlugin(int extensionVersion = kCurrentExtnVersion) : plugin_(WHIMS_FILE, extensionVersion) {}

  void TearDown() override { EXPECT_EQ(Plugin::standIn().describeLiveObjects(), ""); }

  // The value as FileMaker shows it, or the reason why there is none.
  std::string evaluate(std::string_view calculation) {
    try {
      return shown(session_.evaluate(foundation::utf16FromUtf8(calculation)));
    } catch (const CalculationError& fault) {
      return std::string("error: ") + fault.what();
    }
  }
  std::string evaluateAsJson(std::string_view calculation) {
    return asJson(session_.evaluate(foundation::utf16FromUtf8(calculation)));
  }

  Plugin plugin_;
  Session session_{plugin_};
};

}  // namespace fmhost
