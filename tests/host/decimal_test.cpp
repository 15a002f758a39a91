#include "host/wrapper/decimal.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace fmhost {
namespace {

std::string written(const std::optional<Decimal>& number) { return number ? number->toString() : "none"; }

Decimal number(std::u16string_view text) { return Decimal::fromText(text).value(); }

TEST(Decimal, ReadsTheDigitsOfAnyText) {
  constexpr struct {
    std::u16string_view text;
    const char* number;
  } cases[] = {
      {u"", "none"},
      {u"abc", "none"},
      {u"-", "none"},
      {u"FY98", "98"},
      {u"$1,254.50", "1254.5"},
      {u"2 + 2", "22"},
      {u"abc-5", "-5"},
      {u"5-3", "53"},
      {u"1.2.3", "1.23"},
      {u".5", ".5"},
      {u"-0.50", "-.5"},
      {u"007", "7"},
      {u"1e3", "1000"},
      {u"1.5E-3", ".0015"},
      {u"12 east", "12"},
      {u"3e", "3"},
      {u"0", "0"},
      {u"-0", "0"},
      {u"!!ERROR!!", "none"},
      {u"5€", "5"},
      {u"12345678901234567890123456789012345678901234", "12345678901234567890123456789012345670000000"}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(written(Decimal::fromText(text)), expected) << testing::PrintToString(std::u16string(text));
  }
}

TEST(Decimal, CalculatesWithoutBinaryFractions) {
  EXPECT_EQ(number(u".1") + number(u".2"), number(u".3"));
  EXPECT_EQ(number(u"1e30") + number(u"1") - number(u"1e30"), Decimal(1));
  EXPECT_EQ(number(u"1e60") + number(u"1"), number(u"1e60"));
  EXPECT_EQ(written(number(u"-7.5") + number(u"7.25")), "-.25");
  EXPECT_EQ(written(number(u"99999999999999999999") * number(u"99999999999999999999")),
            "9999999999999999999800000000000000000000");
  EXPECT_EQ(written(number(u"123456789012345678901234567") * number(u"100000000001")),
            "12345678901358024679135802378901234570");
  EXPECT_EQ(written(number(u".00000000000000000001") * number(u".00000000000000000001")),
            ".0000000000000000000000000000000000000001");
}

TEST(Decimal, RoundsQuotientsToSixteenPlaces) {
  constexpr struct {
    std::u16string_view dividend, divisor;
    const char* quotient;
  } cases[] = {{u"1", u"3", ".3333333333333333"},
               {u"2", u"3", ".6666666666666667"},
               {u"100", u"3", "33.3333333333333333"},
               {u"-7", u"2", "-3.5"},
               {u"1", u"8e20", ".00000000000000000000125"},
               {u"5", u"0", "none"},
               {u"1e30", u"1e-5", "100000000000000000000000000000000000"},
               {u"0", u"5", "0"}};
  for (const auto& [dividend, divisor, quotient] : cases) {
    EXPECT_EQ(written(Decimal::quotient(number(dividend), number(divisor))), quotient);
  }
}

TEST(Decimal, ModuloTakesTheSignOfTheDivisor) {
  constexpr struct {
    std::u16string_view a, b;
    const char* rest;
  } cases[] = {{u"7", u"3", "1"}, {u"-7", u"3", "2"},    {u"7", u"-3", "-2"},  {u"-7", u"-3", "-1"},
               {u"6", u"3", "0"}, {u"7.5", u"2", "1.5"}, {u"1", u"0", "none"}, {u"738000", u"7", "4"}};
  for (const auto& [a, b, rest] : cases) EXPECT_EQ(written(Decimal::modulo(number(a), number(b))), rest);
}

TEST(Decimal, RoundsHalvesAwayFromZeroAndFloorsDown) {
  constexpr struct {
    std::u16string_view value;
    int places;
    const char* rounded;
  } cases[] = {{u"2.5", 0, "3"},      {u"-2.5", 0, "-3"}, {u"2.345", 2, "2.35"}, {u"1250", -2, "1300"},
               {u"1249", -2, "1200"}, {u"4", -1, "0"},    {u"5", -1, "10"},      {u"1.5", 5, "1.5"}};
  for (const auto& [value, places, rounded] : cases) {
    EXPECT_EQ(number(value).rounded(places).toString(), rounded);
  }
  EXPECT_EQ(number(u"-1.5").floor(), Decimal(-2));
  EXPECT_EQ(number(u"1.5").floor(), Decimal(1));
  EXPECT_EQ(number(u"-1e-60").floor(), Decimal(-1));
}

TEST(Decimal, TruncatesTowardZeroAndStopsAtTheLimits) {
  using Limits = std::numeric_limits<std::int64_t>;
  EXPECT_EQ(number(u"2.9").truncated(), 2);
  EXPECT_EQ(number(u"-2.9").truncated(), -2);
  EXPECT_EQ(number(u"12e3").truncated(), 12000);
  EXPECT_EQ(number(u"9223372036854775807").truncated(), Limits::max());
  EXPECT_EQ(number(u"9223372036854775808").truncated(), Limits::max());
  EXPECT_EQ(number(u"-1e300").truncated(), Limits::min());
  EXPECT_EQ(Decimal(Limits::min()).toString(), "-9223372036854775808");
}

TEST(Decimal, ComparesAcrossScales) {
  EXPECT_LT(number(u"-1"), number(u"0"));
  EXPECT_GT(number(u"10"), number(u"9.999"));
  EXPECT_EQ(number(u"1.50"), number(u"1.5"));
  EXPECT_LT(number(u"1e-30"), number(u"1"));
  EXPECT_EQ(number(u"-0"), number(u"0"));
}

TEST(Decimal, PowersAndBinaryFloatingPoint) {
  EXPECT_EQ(written(Decimal::power(Decimal(2), Decimal(10))), "1024");
  EXPECT_EQ(written(Decimal::power(Decimal(2), Decimal(-2))), ".25");
  EXPECT_EQ(written(Decimal::power(Decimal(9), number(u".5"))), "3");
  EXPECT_EQ(written(Decimal::power(Decimal(-1), number(u".5"))), "none");
  EXPECT_EQ(written(Decimal::power(Decimal(0), Decimal(-1))), "none");
  EXPECT_EQ(written(Decimal::fromDouble(0.1)), ".1");
  EXPECT_EQ(written(Decimal::fromDouble(-1e21)), "-1000000000000000000000");
  EXPECT_EQ(written(Decimal::fromDouble(std::numeric_limits<double>::infinity())), "none");
  EXPECT_DOUBLE_EQ(number(u"-12.375").toDouble(), -12.375);
}

}  // namespace
}  // namespace fmhost
