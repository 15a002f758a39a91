#include "tests/host/plugin_fixture.h"

namespace fmhost {
namespace {

struct Example {
  const char* calculation;
  const char* shown;
};

class Calculations : public WithPlugin {
 protected:
  template <std::size_t N>
  void expectAll(const Example (&examples)[N]) {
    for (const auto& [calculation, shown] : examples) EXPECT_EQ(evaluate(calculation), shown) << calculation;
  }
};

TEST_F(Calculations, OperatorsBindAsInFileMaker) {
  constexpr Example examples[] = {{"1 + 2 * 3", "7"},
                                  {"(1 + 2) * 3", "9"},
                                  {"2 ^ 3 ^ 2", "64"},
                                  {"10 - 2 - 3", "5"},
                                  {"7 / 2", "3.5"},
                                  {"1 / 0", "?"},
                                  {"\"a\" & 1 + 2", "a3"},
                                  {"\"a\" & \"b\" = \"ab\"", "1"},
                                  {"- 2 + 5", "3"},
                                  {"-\"3 apples\"", "-3"},
                                  {"1 < 2 and 2 < 3", "1"},
                                  {"1 or 0 and 0", "1"},
                                  {"0 or 1 xor 1", "0"},
                                  {"0 and 1 and 1", "0"},
                                  {"not 0 and not \"\"", "1"},
                                  {"not 1 = 0", "1"},
                                  {"NOT True", "0"},
                                  {"2 × 3 ÷ 4", "1.5"}};
  expectAll(examples);
}

TEST_F(Calculations, ComparisonsIgnoreCaseAndTakeNumbersForNumbers) {
  constexpr Example examples[] = {{"\"ABC\" = \"abc\"", "1"},
                                  {"\"É\" = \"é\"", "1"},
                                  {"\"a\" <> \"b\"", "1"},
                                  {"\"a\" ≠ \"A\"", "0"},
                                  {"\"10\" < \"9\"", "1"},
                                  {"\"10\" > 9", "1"},
                                  {"10 >= 10", "1"},
                                  {"9 ≤ 8", "0"},
                                  {"0 = \"!!ERROR!!\"", "0"},
                                  {"0 = \"\"", "0"},
                                  {"\"\" = \"\"", "1"},
                                  {"\"1.50\" = 1.5", "1"},
                                  {"Date ( 1 ; 2 ; 2026 ) = \"1/2/2026\"", "1"},
                                  {"Date ( 1 ; 2 ; 2026 ) < Date ( 10 ; 1 ; 2026 )", "1"},
                                  {"Time ( 1 ; 0 ; 0 ) = 3600", "1"},
                                  {"Date ( 1 ; 2 ; 2026 ) = Timestamp ( Date ( 1 ; 2 ; 2026 ) ; 0 )", "1"},
                                  {"Timestamp ( Date ( 1 ; 2 ; 2026 ) ; 1 ) > Date ( 1 ; 2 ; 2026 )", "1"},
                                  {"Date ( 1 ; 2 ; 2026 ) = \"someday\"", "0"}};
  expectAll(examples);
}

TEST_F(Calculations, TextLiteralsCommentsAndBlanks) {
  constexpr Example examples[] = {{R"("say \"hi\" \\ \¶")", "say \"hi\" \\ ¶"},
                                  {R"("C:\dir")", "C:\\dir"},
                                  {"\"a¶b\"", "a\nb"},
                                  {"\"a\" & ¶ & \"b\"", "a\nb"},
                                  {"1 + // one more\n 2", "3"},
                                  {"1 /* \" ) */ + 2", "3"},
                                  {"\t1\r\n+\xC2\xA0"
                                   "1",
                                   "2"},
                                  {".5 + 1.", "1.5"},
                                  {"1e3 + 1", "1001"},
                                  {"\"// no comment\"", "// no comment"}};
  expectAll(examples);
}

TEST_F(Calculations, LetIfCaseWhile) {
  constexpr Example examples[] = {
      {"Let ( x = 2 ; x * x )", "4"},
      {"Let ( [ a = 1 ; b = a + 1 ; a = 10 ] ; a + b )", "12"},
      {"Let ( [ a = 1 ] ; Let ( [ a = 2 ] ; a ) & a )", "21"},
      {"Let ( [ Day = 5 ; t = Day ( \"1/9/2026\" ) ] ; day & t )", "59"},
      {"Let ( [ ] ; 3 )", "3"},
      {"If ( 1 ; \"y\" ; \"n\" )", "y"},
      {"If ( \"\" ; \"y\" )", ""},
      {"If ( True ; 1 ; 1 / Nope )", "error: Character 21: nothing has the name Nope"},
      {"Case ( 0 ; \"a\" ; 0 ; \"b\" ; \"c\" )", "c"},
      {"Case ( 0 ; \"a\" ; 1 ; \"b\" ; \"c\" )", "b"},
      {"Case ( 0 ; \"a\" )", ""},
      {"While ( [ i = 0 ; s = \"\" ] ; i < 4 ; [ i = i + 1 ; s = s & i ] ; s )", "1234"},
      {"While ( i = 0 ; i < 3 ; i = i + 1 ; i )", "3"},
      {"Let ( n = 1 ; While ( i = 0 ; i < 3 ; [ i = i + 1 ; n = n * 2 ] ; n ) & \" \" & n )", "8 1"},
      {"Let ( [ $A = 1 ; $$b = 2 ] ; $a & $$B )", "12"},
      {"$a & $$b & $never", "12"}};
  expectAll(examples);
}

TEST_F(Calculations, OnlyTheBranchThatCountsIsEvaluated) {
  EXPECT_EQ(evaluate("If ( 0 ; Test_Throwing ( \"x\" ) ; \"safe\" )"), "safe");
  EXPECT_EQ(evaluate("0 and Test_Throwing ( \"x\" )"), "0");
  EXPECT_EQ(evaluate("1 or Test_Throwing ( \"x\" )"), "1");
  EXPECT_EQ(evaluate("Case ( 1 ; \"first\" ; Test_Throwing ( \"x\" ) ; 2 )"), "first");
}

TEST_F(Calculations, TextFunctions) {
  constexpr Example examples[] = {
      {"Length ( \"añ😀\" )", "4"},
      {"Left ( \"abc\" ; 2 ) & Left ( \"abc\" ; -1 ) & Left ( \"abc\" ; 9 )", "ababc"},
      {"Right ( \"abc\" ; 2 ) & Right ( \"abc\" ; 9 )", "bcabc"},
      {"Middle ( \"abcdef\" ; 2 ; 3 ) & Middle ( \"abc\" ; 9 ; 1 )", "bcd"},
      {"Position ( \"Mississippi\" ; \"ISS\" ; 1 ; 2 )", "5"},
      {"Position ( \"Mississippi\" ; \"i\" ; 3 ; 1 )", "5"},
      {"Position ( \"Mississippi\" ; \"s\" ; 11 ; -2 )", "6"},
      {"Position ( \"abc\" ; \"x\" ; 1 ; 1 )", "0"},
      {"Position ( \"abab\" ; \"a\" ; 4 ; -3 )", "0"},
      {"Substitute ( \"aAa\" ; \"a\" ; \"bb\" )", "bbAbb"},
      {"Substitute ( \"abc\" ; [ \"a\" ; \"b\" ] ; [ \"b\" ; \"x\" ] )", "xxc"},
      {"Upper ( \"straße é\" ) & Lower ( \"ÀB\" )", "STRAßE Éàb"},
      {"\"<\" & Trim ( \"  a b  \" ) & Trim ( \"  \" ) & \">\"", "<a b>"},
      {"Code ( \"A\" ) & \" \" & Code ( \"ab\" ) & \" \" & Code ( \"😀\" )", "65 9800097 128512"},
      {"Char ( 65 ) & Char ( 9800097 ) & Char ( 128512 ) & Char ( 0 )", "Aab😀"},
      {"Length ( Char ( 128512 ) ) & Length ( Char ( 55296 ) )", "21"},
      {"List ( \"a\" ; \"\" ; 1 )", "a\n1"},
      {"GetValue ( \"a¶b¶c\" ; 2 ) & GetValue ( \"a\" ; 2 ) & GetValue ( \"a\" ; 0 )", "b"},
      {"ValueCount ( \"a¶b\" ) & ValueCount ( \"a¶\" ) & ValueCount ( \"¶\" ) & "
       "ValueCount ( \"\" )",
       "2110"},
      {"IsEmpty ( \"\" ) & IsEmpty ( 0 ) & IsEmpty ( GetAsNumber ( \"x\" ) )", "101"}};
  expectAll(examples);
}

TEST_F(Calculations, NumberFunctions) {
  constexpr Example examples[] = {{"Abs ( -3.5 )", "3.5"},
                                  {"Int ( -1.5 )", "-1"},
                                  {"Int ( 2.9 )", "2"},
                                  {"Mod ( -7 ; 3 )", "2"},
                                  {"Mod ( 1 ; 0 )", "?"},
                                  {"Round ( 123.456 ; 2 )", "123.46"},
                                  {"Round ( 1250 ; -2 )", "1300"},
                                  {"Round ( \"\" ; 2 )", ""},
                                  {"GetAsNumber ( \"FY98\" )", "98"},
                                  {"GetAsNumber ( Date ( 1 ; 1 ; 1 ) )", "1"},
                                  {"GetAsNumber ( \"x\" ) + 1", "1"},
                                  {"0.1 * 3", ".3"}};
  expectAll(examples);
}

TEST_F(Calculations, NumbersAreTheDigitsOfATextToFortyPlaces) {
  constexpr Example examples[] = {{"GetAsNumber ( \"-\" )", ""},
                                  {"GetAsNumber ( \"$1,254.50\" )", "1254.5"},
                                  {"GetAsNumber ( \"2 + 2\" )", "22"},
                                  {"GetAsNumber ( \"abc-5\" )", "-5"},
                                  {"GetAsNumber ( \"5-3\" )", "53"},
                                  {"GetAsNumber ( \"1.2.3\" )", "1.23"},
                                  {"GetAsNumber ( \"-0.50\" )", "-.5"},
                                  {"GetAsNumber ( \"007\" )", "7"},
                                  {"GetAsNumber ( \"1.5E-3\" )", ".0015"},
                                  {"GetAsNumber ( \"12 east\" )", "12"},
                                  {"GetAsNumber ( \"3e\" )", "3"},
                                  {"GetAsNumber ( \"-0\" )", "0"},
                                  {"GetAsNumber ( \"!!ERROR!!\" )", ""},
                                  {"GetAsNumber ( \"5€\" )", "5"},
                                  {"GetAsNumber ( \"12345678901234567890123456789012345678901234\" )",
                                   "12345678901234567890123456789012345670000000"}};
  expectAll(examples);
}

TEST_F(Calculations, NumbersHaveNoBinaryFractions) {
  constexpr Example examples[] = {
      {".1 + .2 = .3", "1"},
      {"1e30 + 1 - 1e30", "1"},
      {"1e60 + 1 = 1e60", "1"},
      {"-7.5 + 7.25", "-.25"},
      {"99999999999999999999 * 99999999999999999999", "9999999999999999999800000000000000000000"},
      {"123456789012345678901234567 * 100000000001", "12345678901358024679135802378901234570"},
      {".00000000000000000001 * .00000000000000000001", ".0000000000000000000000000000000000000001"},
      {"1 / 3", ".3333333333333333"},
      {"2 / 3", ".6666666666666667"},
      {"100 / 3", "33.3333333333333333"},
      {"-7 / 2", "-3.5"},
      {"1 / 8e20", ".00000000000000000000125"},
      {"1e30 / 1e-5", "100000000000000000000000000000000000"},
      {"0 / 5", "0"},
      {"2 ^ 10", "1024"},
      {"2 ^ -2", ".25"},
      {"9 ^ .5", "3"},
      {"(-1) ^ .5", "?"},
      {"0 ^ -1", "?"},
      {"10 ^ 400.5", "?"},
      {"Mod ( 7 ; -3 )", "-2"},
      {"Mod ( -7 ; -3 )", "-1"},
      {"Mod ( 7.5 ; 2 )", "1.5"},
      {"Round ( -2.5 ; 0 )", "-3"},
      {"Round ( 2.345 ; 2 )", "2.35"},
      {"Round ( 1249 ; -2 )", "1200"},
      {"Round ( 4 ; -1 )", "0"},
      {"Round ( 5 ; -1 )", "10"},
      {"Round ( 1.5 ; 5 )", "1.5"},
      {"-1 < 0 and 10 > 9.999 and 1e-30 < 1 and -0 = 0 and 1.50 = 1.5", "1"}};
  expectAll(examples);
}

TEST_F(Calculations, DatesAndTimesAreReadWithUnitedStatesSettings) {
  constexpr Example examples[] = {
      {"GetAsDate ( \" 02-04-2026 \" )", "2/4/2026"},
      {"GetAsDate ( \"13/1/2026\" )", "?"},
      {"GetAsDate ( \"2026-02-04\" )", "?"},
      {"GetAsDate ( \"2/4/99\" )", "2/4/1999"},
      {"GetAsDate ( \"2/4/0099\" )", "2/4/0099"},
      {"GetAsDate ( \"\" )", ""},
      {"GetAsDate ( \"2/4/2026 x\" )", "?"},
      {"GetAsDate ( \"2/4/2026 3:00 PM\" )", "2/4/2026"},
      {"GetAsDate ( \"739941\" )", "11/21/2026"},
      {"GetAsDate ( \"999999999999999999999\" )", "?"},
      {"GetAsDate ( \"2//2026\" )", "?"},
      {"GetAsTime ( \"2:05\" )", "2:05:00"},
      {"GetAsTime ( \"2:05:06 PM\" )", "14:05:06"},
      {"GetAsTime ( \"12:00 am\" )", "0:00:00"},
      {"GetAsTime ( \"12:00pm\" )", "12:00:00"},
      {"GetAsTime ( \"13:00 AM\" )", "?"},
      {"GetAsTime ( \"100:00:00\" )", "100:00:00"},
      {"GetAsTime ( \"-1:30:00\" )", "-1:30:00"},
      {"GetAsTime ( \"0:00:01.25\" )", "0:00:01.25"},
      {"GetAsTime ( \"1:75\" )", "2:15:00"},
      {"GetAsTime ( \"noon\" )", "?"},
      {"GetAsTime ( \"2:05 XM\" )", "?"},
      {"GetAsTime ( \"2/4/2026 2:05 PM\" )", "14:05:00"},
      {"GetAsTime ( \"1e200\" )", "?"},
      {"GetAsTimestamp ( \"11/21/2026 2:05:06 PM\" )", "11/21/2026 2:05:06 PM"},
      {"GetAsTimestamp ( \"11/21/2026 12:30 PM\" )", "11/21/2026 12:30:00 PM"},
      {"GetAsTimestamp ( \"11/21/2026 24:00:00\" )", "11/22/2026 12:00:00 AM"},
      {"GetAsTimestamp ( \"12/31/4000 24:00:00\" )", "?"},
      {"GetAsTimestamp ( \"61997169000\" )", "8/12/1965 7:50:00 PM"},
      {"GetAsTimestamp ( \"2026-11-21 14:05:00\" )", "?"},
      {"GetAsTimestamp ( \"1/1/0001 0:00:00\" )", "1/1/0001 12:00:00 AM"},
      {"GetAsTimestamp ( \"11/21/2026 noon\" )", "?"},
      {"GetAsTimestamp ( \"-1\" )", "?"},
      {"GetAsNumber ( Timestamp ( Date ( 11 ; 21 ; 2026 ) ; 50706.5 ) )", "63930866706.5"},
      {"GetAsNumber ( Date ( 12 ; 31 ; 4000 ) )", "1460970"},
      {"DayOfWeek ( Date ( 11 ; 22 ; 2026 ) )", "1"},
      {"Date ( 0 ; 1 ; 2026 )", "12/1/2025"},
      {"Date ( -11 ; 1 ; 2026 )", "1/1/2025"},
      {"Date ( 3 ; 0 ; 2026 )", "2/28/2026"},
      {"Date ( 2 ; 30 ; 2024 )", "3/1/2024"},
      {"Date ( 1 ; 366 ; 2026 )", "1/1/2027"},
      {"Date ( 12 ; 32 ; 4000 )", "?"},
      {"Date ( 1 ; 0 ; 1 )", "?"},
      {"Date ( 1 ; 1 ; 99999999 )", "?"}};
  expectAll(examples);
}

TEST_F(Calculations, DatesTimesAndTimestamps) {
  constexpr Example examples[] = {
      {"Date ( 14 ; 1 ; 2026 )", "2/1/2027"},
      {"Date ( 2 ; 4 ; 2026 ) + 1", "2/5/2026"},
      {"1 + Date ( 2 ; 4 ; 2026 )", "2/5/2026"},
      {"Date ( 3 ; 1 ; 2026 ) - Date ( 2 ; 1 ; 2026 )", "28"},
      {"Date ( 3 ; 1 ; 2026 ) - 1", "2/28/2026"},
      {"Time ( 1 ; 90 ; 61 )", "2:31:01"},
      {"Time ( 2 ; 0 ; 0 ) - Time ( 0 ; 30 ; 0 )", "1:30:00"},
      {"Timestamp ( Date ( 2 ; 4 ; 2026 ) ; Time ( 14 ; 5 ; 0 ) )", "2/4/2026 2:05:00 PM"},
      {"Timestamp ( \"2/4/2026\" ; \"2:05 PM\" )", "2/4/2026 2:05:00 PM"},
      {"Timestamp ( Date ( 2 ; 4 ; 2026 ) ; 86400 )", "2/5/2026 12:00:00 AM"},
      {"Timestamp ( Date ( 2 ; 4 ; 2026 ) ; 0 ) + 3600", "2/4/2026 1:00:00 AM"},
      {"Timestamp ( Date ( 2 ; 4 ; 2026 ) ; 0 ) - 1", "2/3/2026 11:59:59 PM"},
      {"Timestamp ( Date ( 2 ; 4 ; 2026 ) ; 60 ) - Timestamp ( Date ( 2 ; 3 ; 2026 ) ; 0 )", "86460"},
      {"GetAsTimestamp ( Date ( 2 ; 4 ; 2026 ) )", "2/4/2026 12:00:00 AM"},
      {"GetAsDate ( Timestamp ( Date ( 2 ; 4 ; 2026 ) ; 3600 ) )", "2/4/2026"},
      {"GetAsTime ( Timestamp ( Date ( 2 ; 4 ; 2026 ) ; 3600 ) )", "1:00:00"},
      {"GetAsText ( Date ( 2 ; 4 ; 2026 ) ) & \"!\"", "2/4/2026!"},
      {"GetAsDate ( \"2/30/2026\" )", "?"},
      {"Year ( \"2/4/2026\" ) & Month ( \"2/4/2026\" ) & Day ( \"2/4/2026\" )", "202624"},
      {"Hour ( \"2/4/2026 2:05:06 PM\" ) & \" \" & Minute ( \"14:05:06\" ) & \" \" & Seconds ( 5.25 )",
       "14 5 5.25"},
      {"DayOfWeek ( Date ( 11 ; 21 ; 2026 ) )", "7"},
      {"Year ( \"\" )", ""},
      {"Year ( \"never\" )", "?"},
      {"Get ( CurrentDate ) = GetAsDate ( Get ( CurrentTimestamp ) )", "1"},
      {"Get ( ScriptParameter )", ""}};
  expectAll(examples);
}

TEST_F(Calculations, AreRefusedWithAPlaceAndAReason) {
  constexpr Example examples[] = {
      {"", "error: There is nothing to calculate"},
      {"// nothing", "error: There is nothing to calculate"},
      {"1 +", "error: Character 4: the calculation ends too early"},
      {"1 2", "error: Character 3: this is out of place"},
      {"( 1", "error: Character 4: ) is missing at the end"},
      {"Left ( \"a\" )", "error: Character 1: Left takes 2 arguments, not 1"},
      {"Substitute ( 1 ; 2 ; 3 ; 4 )", "error: Substitute lacks what takes the last text's place"},
      {"If ( 1 )", "error: Character 1: If takes 2 to 3 arguments, not 1"},
      {"Test_Typed ( 1 ; 2 ; 3 ; 4 ; 5 )", "error: Character 1: Test_Typed takes 1 to 4 arguments, not 5"},
      {"Test_Truncated", "error: Character 1: Test_Truncated takes 1 argument, not 0"},
      {"1 +\n  Nope ( 2 )", "error: Line 2, character 3: there is no function Nope"},
      {"\"open", "error: Character 1: the text has no closing quotation mark"},
      {"1 /* open", "error: Character 3: the comment has no end"},
      {"Get ( Nothing )", "error: Character 7: Get ( ) does not know this"},
      {"1 % 2", "error: Character 3: this character means nothing here"},
      {"$ = 1", "error: Character 1: a variable has no name"},
      {"Let ( 1 = 2 ; 3 )", "error: Character 7: this is out of place"},
      {"Let ( a = 1 ; 2 ) & a", "error: Character 21: nothing has the name a"}};
  expectAll(examples);
  EXPECT_EQ(evaluate(std::string(5000, '(')), "error: Character 201: this is nested too deeply");
}

TEST_F(Calculations, MayBeAsLongAsTheyLike) {
  constexpr int kTerms = 30'000;
  const auto chain = [](std::string first, std::string_view next) {
    for (int i = 0; i < kTerms; ++i) first += next;
    return first;
  };
  EXPECT_EQ(evaluate(chain("1", " + 1")), std::to_string(kTerms + 1));
  EXPECT_EQ(evaluate(chain("1", " and 1") + " and 0"), "0");
}

TEST_F(Calculations, AreShownAsJsonWithTheirType) {
  constexpr Example examples[] = {
      {"Date ( 2 ; 4 ; 2026 )", R"({"type":"date","value":"2026-02-04"})"},
      {"Time ( 1 ; 2 ; 3 )", R"({"type":"time","value":"01:02:03"})"},
      {"Timestamp ( Date ( 2 ; 4 ; 2026 ) ; 50706 )",
       R"({"type":"timestamp","value":"2026-02-04 14:05:06"})"},
      {"-1.5", R"({"type":"number","value":"-1.5"})"},
      {"\"\"", R"({"type":"text","value":""})"},
      {"Test_Nothing", R"({"type":"empty","value":""})"},
      {R"("a¶\"\\" & Char ( 10 ) & Char ( 9 ) & Char ( 1 ) & "é😀")",
       R"({"type":"text","value":"a\r\"\\\n\t\u0001é😀"})"},
      {"Char ( 55357 ) & \"x\" & Char ( 56832 )", R"({"type":"text","value":"\ud83dx\ude00"})"},
      {"GetAsDate ( \"x\" )", R"({"type":"date","value":"?"})"}};
  for (const auto& [calculation, json] : examples) EXPECT_EQ(evaluateAsJson(calculation), json);
  EXPECT_EQ(errorAsJson("no \"x\""), R"({"type":"error","value":"no \"x\""})");
}

}  // namespace
}  // namespace fmhost
