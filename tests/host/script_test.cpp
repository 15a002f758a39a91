#include "host/script/script.h"

#include "host/script/script_runner.h"
#include "tests/host/plugin_fixture.h"

namespace fmhost {
namespace {

class Scripts : public WithPlugin {
 protected:
  // What the script shows, a dialog a line; at the end what it exits with, or why it stops.
  std::string run(std::string_view text, std::u16string parameter = u"") {
    std::string log;
    try {
      const Script script = readScript("test", foundation::utf16FromUtf8(text), session_);
      const Value result = runScript(
          script, session_, Value::ofText(std::move(parameter)),
          [&](const std::string& title, const std::string& message) { log += title + "=" + message + "\n"; });
      return log + "-> " + shown(result);
    } catch (const ScriptError& fault) {
      return log + fault.what();
    }
  }
};

TEST_F(Scripts, BranchesAndLoopsAreFollowed) {
  EXPECT_EQ(run(R"(# counts
Set Variable [ $i ; Value: 0 ]
Loop
  Set Variable [ $i ; Value: $i + 1 ]
  Exit Loop If [ $i > 5 ]
  If [ $i = 1 ]
    Show Custom Dialog [ "one" ; $i ]
  Else If [ $i = 2 ]
    Show Custom Dialog [ "two" ; $i ]
  Else
    // Show Custom Dialog [ "switched off" ; $i ]
    Loop
      Exit Loop If [ True ]
    End Loop
    If [ $i = 4 ]
      Show Custom Dialog [ "four" ; $i & "¶!" ]
    End If
  End If
End Loop
Exit Script [ Text Result: $i ]
Show Custom Dialog [ "never" ; "" ]
)"),
            "one=1\ntwo=2\nfour=4\n!\n-> 6");
}

TEST_F(Scripts, HaveVariablesAndAParameterOfTheirOwn) {
  evaluate("Let ( [ $x = \"outer\" ; $$x = \"global\" ] ; 0 )");
  EXPECT_EQ(
      run("Set Variable [ $seen ; Value: $x & $$x & Get ( ScriptParameter ) ]\n"
          "Set Variable [ $X ; Value: 1 ]\nSet Variable [ $$y ; Value: 2 ]\nExit Script [ Result: $seen ]",
          u"!"),
      "-> global!");
  EXPECT_EQ(evaluate("$x & $$y & Get ( ScriptParameter )"), "outer2");
}

TEST_F(Scripts, StepsTakeTheirParametersByLabelInAnyOrder) {
  constexpr struct {
    const char* step;
    const char* joined;
  } cases[] = {
      {"Test_Joined [ Results: $r ; First: \"a;]\" ]", "4|a;]|7||1"},
      {"test_joined [ Kind: short & SWEET ; first: 1 + 1 ; results: $r ]", "4|2|8||1"},
      {"Test_Joined [ Loud: Off ; First (Optional): \"2/4/2026\" ; Results: $r ]",
       "4||7|2/4/2026 12:00:00 AM|0"},
      {"Test_Joined [ First (Optional): Date ( 2 ; 4 ; 2026 ) ; First: ; Results: $r ]",
       "4||7|2/4/2026 12:00:00 AM|1"},
      {"Test_Joined [\n  First: Left ( // the start ]\n \"abc\" ; 2 ) ;\n  Results: $r\n]", "4|ab|7||1"}};
  for (const auto& [step, joined] : cases) {
    EXPECT_EQ(run(std::string(step) + "\nExit Script [ Text Result: $r ]"), std::string("-> ") + joined)
        << step;
  }
}

TEST_F(Scripts, AStepWithoutTargetLeavesNoResult) {
  EXPECT_EQ(run("Set Variable [ $r ; Value: 1 ]\nTest_Nothing\nTest_Joined [ First: 2 ]\n"
                "Exit Script [ Text Result: $r ]"),
            "-> 1");
  EXPECT_EQ(run("Test_Nothing [ Results: $r ]"), "test:1: Test_Nothing has no parameter for \"Results: $r\"");
}

TEST_F(Scripts, AreRefusedWithNameLineAndReason) {
  constexpr struct {
    const char* script;
    const char* reason;
  } cases[] = {{"\n# a\nNo_Such_Step [ ]", "test:3: there is no script step No_Such_Step"},
               {"Test_Typed [ ]", "test:1: there is no script step Test_Typed"},
               {"Test_Throwing [ ]", "test:1: the step cannot be used: its definition is no XML: "},
               {"Test_Joined [ Fist: 1 ]", "test:1: Test_Joined has no parameter for \"Fist: 1\""},
               {"Test_Joined [ Kind: Long ]", "test:1: Kind cannot be \"Long\""},
               {"Test_Joined [ Loud: maybe ]", "test:1: Loud cannot be \"maybe\""},
               {"Test_Joined [ Far: 1 ]", "test:1: Test_Joined has no parameter for \"Far: 1\""},
               {"Test_Joined [ First: 1 ; First: 2 ]", "test:1: First is given twice"},
               {"Test_Joined [ Results: r ]", "test:1: \"r\" is no variable"},
               {"Set Variable [ $x ; 1 ]", "test:1: Set Variable needs \"Value:\" before the value"},
               {"Set Variable [ $x ; Value: 1 + ]", "test:1: Character 4: the calculation ends too early"},
               {"If [ 1 ]\nLoop\nEnd If", "test:3: End If without an If"},
               {"If [ 1 ]\nElse\nElse\nEnd If", "test:3: Else after an Else"},
               {"If [ 1 ]\n", "test:1: this If has no End If"},
               {"\nLoop\n", "test:2: this Loop has no End Loop"},
               {"Exit Loop If [ 1 ]", "test:1: Exit Loop If outside a Loop"},
               {"Else", "test:1: Else without an If"},
               {"If", "test:1: If needs one calculation"},
               {"If [ 1", "test:1: the step has no closing bracket"},
               {"Exit Script [ 1 ]", "test:1: Exit Script needs \"Text Result:\" before the result"},
               {"Show Custom Dialog", "test:1: Show Custom Dialog takes a title and a message"}};
  for (const auto& [script, reason] : cases) {
    EXPECT_TRUE(run(script).starts_with(reason)) << script << "\n" << run(script);
  }
}

TEST_F(Scripts, StopWhereACalculationFails) {
  EXPECT_EQ(run("Show Custom Dialog [ \"before\" ; 1 ]\nSet Variable [ $x ; Value: Test_Failing ( 3 ) ]\n"
                "Show Custom Dialog [ \"after\" ; 2 ]"),
            "before=1\ntest:2: Test_Failing returned error 3");
  EXPECT_EQ(run("Show Custom Dialog [ \"shown\" ; 1 ]\nNo_Such_Step"),
            "test:2: there is no script step No_Such_Step")
      << "a script is read to its end before it begins";
}

}  // namespace
}  // namespace fmhost
