#include <thread>

#include "host/wrapper/encoding.h"
#include "tests/host/plugin_fixture.h"

namespace fmhost {
namespace {

std::string refusal(const char* file, int version = kCurrentExtnVersion) {
  try {
    const Plugin plugin(file, version);
    return "";
  } catch (const PluginError& fault) {
    return fault.what();
  }
}

class PluginOfVersion : public testing::TestWithParam<int> {};

TEST_P(PluginOfVersion, RegistersWhatThatInterfaceHas) {
  const Plugin plugin(WHIMS_FILE, GetParam());
  ASSERT_EQ(plugin.functions().size(), 12U);
  EXPECT_EQ(plugin.functions().front().description, GetParam() < 56 ? u"" : u"test|what it does");
  EXPECT_EQ(plugin.steps().size(), GetParam() < 57 ? 0U : 3U);
  for (const Registration& function : plugin.functions()) EXPECT_LT(function.id, 90) << "has to be refused";
  const Registration& joined = plugin.functions()[1];
  EXPECT_EQ(joined.name, u"Test_Joined");
  EXPECT_EQ(joined.prototype, u"Test_Joined( values )");
  EXPECT_EQ(joined.mostArguments, -1);
  EXPECT_EQ(plugin.function(u"test_JOINED"), &joined);
  EXPECT_EQ(plugin.function(u"Test_Refused"), nullptr);
}
INSTANTIATE_TEST_SUITE_P(Interfaces, PluginOfVersion, testing::Values(50, 55, 56, 57, 65, 255));

TEST(PluginLoading, SaysWhyAPluginCannotBeUsed) {
  EXPECT_EQ(refusal(WHIMS_FILE, 49), "the plug-in refuses to be initialised by a host of version 49");
  EXPECT_EQ(refusal(WHIMS_FILE, 256), "the plug-in refuses to be initialised by a host of version 256");
  EXPECT_EQ(refusal(MISNAMED_FILE),
            "the plug-in's option string \"Web11nnYnnn\" has an ID that the host keeps for itself");
  EXPECT_EQ(refusal(ASLEEP_FILE), "the plug-in does not ask to be initialised");
  EXPECT_NE(refusal("no/such/file.fmx").find("cannot be loaded"), std::string::npos);
  EXPECT_EQ(Plugin::standIn().liveObjects(), 0);
}

TEST(PluginLoading, ShutDownTakesEveryFunctionBack) {
  Plugin plugin(WHIMS_FILE);
  EXPECT_EQ(plugin.name(), u"Whims");
  plugin.shutDown();
  EXPECT_TRUE(plugin.functions().empty());
  EXPECT_TRUE(plugin.steps().empty());
}

TEST(PluginLoading, StringsAreAskedForWithABufferThatTheyFit) {
  Plugin plugin(WHIMS_FILE);
  EXPECT_EQ(plugin.string(kFMXT_NameStr, 6), u"Whims");
  EXPECT_EQ(plugin.string(kFMXT_NameStr, 5), std::nullopt);
  EXPECT_EQ(plugin.string(kFMXT_HelpURLStr), std::nullopt);
}

using PluginCalls = WithPlugin;

TEST_F(PluginCalls, ValuesGoInAndComeOutAsTheirTypes) {
  constexpr struct {
    const char* calculation;
    const char* shown;
  } cases[] = {{"Test_Joined", "0"},
               {"Test_Joined ( )", "0"},
               {"Test_Joined ( 1 ; \"x\" ; Date ( 1 ; 2 ; 2026 ) ; .5 ; \"\" )", "5|1|x|1/2/2026|.5|"},
               {"Test_Typed ( 1 ; \"x\" ; Date ( 1 ; 2 ; 2026 ) ; Get ( CurrentTimestamp ) )", "2135"},
               {"Test_Truncated ( -2.9 )", "-2"},
               {"Test_Truncated ( \"no number\" )", "0"},
               {"Test_Truncated ( 12e3 )", "12000"},
               {"Test_Truncated ( 9223372036854775808 )", "2147483647"},
               {"Test_Truncated ( -1e300 )", "-2147483648"},
               {"Test_Echoed ( \"2/4/2026\" ; \"date\" ) + 1", "2/5/2026"},
               {"Test_Echoed ( 3600 ; \"time\" )", "1:00:00"},
               {"Test_Echoed ( \"2/4/2026 2:05 PM\" ; \"timestamp\" ) + 60", "2/4/2026 2:06:00 PM"},
               {"Test_Echoed ( \"12 items\" ; \"number\" )", "12"},
               {"Test_Echoed ( \"no date\" ; \"date\" )", "?"},
               {"Test_PartsOfTimestamp ( \"11/21/2026 2:05:06 PM\" )", "2026 11 21 14 5 6"},
               {"Test_PartsOfTimestamp ( Date ( 11 ; 21 ; 2026 ) )", "2026 11 21 0 0 0"},
               {"Test_PartsOfTimestamp ( \"2026-11-21\" )", "0 0 0 0 0 0"},
               {"Test_Normalised ( 13 ; 32 ; 2026 ; 25 ; 61 ; 61 )", "2/2/2027 2:02:01 AM"},
               {"Test_Throwing ( \"memory\" )", "error: Test_Throwing ran out of memory (std::bad_alloc)"},
               {"Test_Throwing ( \"\" )", "error: Test_Throwing threw an exception (std::exception)"},
               {"Test_Failing ( 1552 )", "error: Test_Failing returned error 1552"},
               {"Test_PastTheEnd", "error: Test_PastTheEnd threw an exception (std::exception)"}};
  for (const auto& [calculation, expected] : cases) EXPECT_EQ(evaluate(calculation), expected) << calculation;
}

TEST_F(PluginCalls, TextArrivesUnitByUnit) {
  EXPECT_EQ(session_.evaluate(u"Test_Echoed ( \"a\" & Char ( 55357 ) & \"b\" ; \"text\" )").asText(),
            Text({u'a', 0xD83D, u'b'}));
  EXPECT_EQ(session_.evaluate(u"Test_Echoed ( \"a¶b\" & Char ( 128512 ) ; \"text\" )").asText(), u"a\rb😀");
}

TEST_F(PluginCalls, EveryHostFailureInACallComesOutAndNothingLeaks) {
  StandIn& standIn = Plugin::standIn();
  for (const std::int32_t code : {fmx::_fmxcpt::kBadAlloc, fmx::_fmxcpt::kUnknown}) {
    int failures = 0;
    for (int n = 1;; ++n) {
      standIn.failCall(n, code);
      const std::string shown = evaluate("Test_Joined ( 1 ; \"a text that is long enough\" )");
      if (standIn.failureIsPending()) break;
      failures += shown.starts_with("error:") ? 1 : 0;
      EXPECT_EQ(standIn.describeLiveObjects(), "") << "failure of call " << n;
    }
    standIn.cancelFailure();
    EXPECT_GE(failures, 8);
  }
}

TEST_F(PluginCalls, ALeakIsCounted) {
  evaluate("Test_Leaking & Test_Leaking");
  EXPECT_EQ(Plugin::standIn().describeLiveObjects(), "2 Text");
  Plugin::standIn().deleted(ObjectKind::text);
  Plugin::standIn().deleted(ObjectKind::text);
}

TEST_F(PluginCalls, SessionsRunOnThreadsOfTheirOwn) {
  constexpr int kThreads = 4;
  std::array<std::string, kThreads> answers;
  {
    std::vector<std::jthread> threads;
    for (std::string& answer : answers) {
      threads.emplace_back([this, &answer] {
        Session session(plugin_);
        session.evaluate(u"Let ( $$own = Test_Session ; \"\" )");
        const Value value = session.evaluate(
            u"While ( [ i = 0 ; s = \"\" ] ; i < 500 ; [ i = i + 1 ; s = Test_Joined ( s ; i ) ] ; "
            u"($$own = Test_Session) & Right ( s ; 3 ) )");
        answer = shown(value);
      });
    }
  }
  for (const std::string& answer : answers) EXPECT_EQ(answer, "1500");
}

TEST_F(PluginCalls, PreparedValuesNeedNoCalculation) {
  const Registration& typed = *plugin_.function(u"Test_Typed");
  const Arguments arguments = {Value::ofNumber(Decimal(1)), Value::ofText(u"x")};
  Value result;
  Plugin::call(typed, {.session = 77}, arguments, result);
  EXPECT_EQ(result.asText(), u"21");
  Plugin::call(*plugin_.function(u"Test_Session"), {.session = 77}, {}, result);
  EXPECT_EQ(result.asNumber().value, Decimal(77));
}

}  // namespace
}  // namespace fmhost
