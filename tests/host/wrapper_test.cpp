// The library as a plug-in sees it: through the wrapper's classes alone.
#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "FMWrapper/FMXCalcEngine.h"
#include "host/wrapper/stand_in.h"

namespace fmhost {
namespace {

constexpr fmx::uint32 kEnd = fmx::Text::kSize_End;

class Wrapper : public testing::Test {
 protected:
  void TearDown() override {
    standIn_.cancelFailure();
    EXPECT_EQ(standIn_.describeLiveObjects(), "");
  }

  static void assign(fmx::Text& text, std::string_view utf8) {
    text.AssignWithLength(utf8.data(), static_cast<fmx::uint32>(utf8.size()), fmx::Text::kEncoding_UTF8);
  }
  static std::string bytesOf(const fmx::Text& text,
                             fmx::Text::Encoding encoding = fmx::Text::kEncoding_UTF8) {
    std::array<char, 200> buffer{};
    return {buffer.data(), text.GetBytesEx(buffer.data(), buffer.size(), 0, kEnd, encoding)};
  }

  StandIn& standIn_ = *FM_StandIn_Shared();
};

TEST_F(Wrapper, TextTakesEveryFormOfCharacters) {
  const fmx::TextUniquePtr text;
  text->Assign("caf\xC3\xA9");
  EXPECT_EQ(text->GetSize(), 4U);
  text->Assign("caf\x8E", fmx::Text::kEncoding_ASCII_Mac);
  EXPECT_EQ(bytesOf(*text), "café");
  text->AssignWithLength("caf\xE9 and more", 4, fmx::Text::kEncoding_ISO_8859_1);
  EXPECT_EQ(bytesOf(*text), "café");
  text->AssignWide(L"a😀");
  EXPECT_EQ(text->GetSize(), 3U);
  const fmx::uint16 units[] = {u'x', 0xD800, 0, u'y', 0};
  text->AssignUnicode(units);
  EXPECT_EQ(text->GetSize(), 2U);
  text->AssignUnicodeWithLength(units, 4);
  std::array<fmx::uint16, 5> read{9, 9, 9, 9, 9};
  text->GetUnicode(read.data(), 1, kEnd);
  EXPECT_EQ(read, (std::array<fmx::uint16, 5>{0xD800, 0, u'y', 9, 9}));
  EXPECT_THROW(text->Assign("\xFF", fmx::Text::kEncoding_ASCII_Windows), std::exception);
}

TEST_F(Wrapper, TextGivesBytesThatFitTheBuffer) {
  const fmx::TextUniquePtr text;
  assign(*text, "café ≠ 😀");
  std::array<char, 6> buffer{'#', '#', '#', '#', '#', '#'};
  text->GetBytes(buffer.data(), 4);
  EXPECT_STREQ(buffer.data(), "caf");
  EXPECT_EQ(buffer[4], '#');
  EXPECT_EQ(text->GetBytesEx(buffer.data(), 3, 1, 2), 2U);
  EXPECT_EQ(std::string(buffer.data(), 2), "af");
  EXPECT_EQ(bytesOf(*text, fmx::Text::kEncoding_ISO_8859_1), "caf\xE9 ? ??");
  EXPECT_EQ(bytesOf(*text, fmx::Text::kEncoding_ASCII_Mac), "caf\x8E \xAD ??");
  EXPECT_EQ(text->GetBytesEx(buffer.data(), 6, 50), 0U);
}

TEST_F(Wrapper, TextIsEditedAndSearchedByRange) {
  const fmx::TextUniquePtr text, other;
  assign(*other, "Name( a ; b )");
  text->SetText(*other, 0, 4);
  text->AppendText(*other, 4);
  EXPECT_TRUE(*text == *other);
  assign(*other, "(");
  text->DeleteText(text->Find(*other, 0));
  EXPECT_EQ(bytesOf(*text), "Name");
  EXPECT_EQ(text->Find(*other, 0), fmx::Text::kSize_Invalid);
  assign(*other, "->");
  text->InsertText(*other, 2);
  text->AppendText(*text);
  EXPECT_EQ(bytesOf(*text), "Na->meNa->me");
  assign(*other, "na");
  EXPECT_EQ(text->Find(*other, 0), fmx::Text::kSize_Invalid);
  EXPECT_EQ(text->FindIgnoringCase(*other, 1), 6U);
  EXPECT_EQ(text->FindPrevIgnoringCase(*other, 5), 0U);
  assign(*other, "Na");
  EXPECT_EQ(text->FindPrev(*other, 100), 6U);
  text->DeleteText(100, 1);
  EXPECT_EQ(text->GetSize(), 12U);
}

TEST_F(Wrapper, TextChangesCaseAndComparesRawValues) {
  const fmx::TextUniquePtr text, other;
  assign(*text, "short é я");
  text->Uppercase();
  EXPECT_EQ(bytesOf(*text), "SHORT É Я");
  text->Lowercase();
  assign(*other, "short é я");
  EXPECT_TRUE(*text == *other && *text <= *other && *text >= *other);
  assign(*other, "Short");
  EXPECT_TRUE(*text != *other && *other<*text&& * text> * other);
}

TEST_F(Wrapper, NumbersAreTruncatedToTheirWidth) {
  const fmx::FixPtUniquePtr number(7), other(0, *number);
  EXPECT_EQ(number->AsLong(), 7);
  number->AssignDouble(-2.99);
  EXPECT_EQ(number->AsLong(), -2);
  EXPECT_DOUBLE_EQ(number->AsFloat(), -2.99);
  number->AssignInt64(std::int64_t{1} << 40);
  EXPECT_EQ(number->AsLong64(), std::int64_t{1} << 40);
  EXPECT_EQ(number->AsLong(), std::numeric_limits<std::int32_t>::max());
  other->AssignFixPt(*number);
  EXPECT_TRUE(other->AsBool());
  EXPECT_THROW(number->AssignDouble(std::numeric_limits<double>::quiet_NaN()), std::exception);
}

TEST_F(Wrapper, DatesNormaliseInBothOrdersOfParts) {
  const fmx::DateTimeUniquePtr moment;
  EXPECT_EQ(moment->SetNormalizedDate(14, 0, 2026), 0);
  EXPECT_EQ(moment->SetNormalizedTime(26, 61, 5, 7), 0);
  EXPECT_EQ(moment->GetYear(), 2027);
  EXPECT_EQ(moment->GetMonth(), 1);
  EXPECT_EQ(moment->GetDay(), 31);
  EXPECT_EQ(moment->GetHour(), 27);
  EXPECT_EQ(moment->GetMinute(), 1);
  EXPECT_EQ(moment->GetSec(), 5);
  EXPECT_EQ(moment->GetUSec(), 7);
  const fmx::FixPtUniquePtr year(2026), month(2), day(4);
  EXPECT_EQ(moment->SetNormalizedDate(*year, *month, *day), 0);
  EXPECT_EQ(moment->SetNormalizedTime(*month, *day, *month), 0);
  EXPECT_EQ(moment->GetYear() * 10000 + moment->GetMonth() * 100 + moment->GetDay(), 20260204);
  EXPECT_EQ(moment->GetHour() * 10000 + moment->GetMinute() * 100 + moment->GetSec(), 20402);
  EXPECT_NE(moment->SetNormalizedDate(1, 1, 4001), 0);
  EXPECT_EQ(moment->GetYear(), 0);
}

TEST_F(Wrapper, ADataReadsAsEveryTypeAndKeepsWhatItLent) {
  const fmx::DataUniquePtr data;
  EXPECT_EQ(data->GetNativeType(), fmx::Data::kDTInvalid);
  EXPECT_EQ(data->GetAsText().GetSize(), 0U);
  const fmx::DateTimeUniquePtr moment;
  moment->SetNormalizedDate(2, 4, 2026);
  moment->SetNormalizedTime(25, 0, 0);
  data->SetAsTimeStamp(*moment);
  EXPECT_EQ(data->GetNativeType(), fmx::Data::kDTTimeStamp);
  const fmx::Text& text = data->GetAsText();
  EXPECT_EQ(data->GetAsDate().GetDay(), 5);
  EXPECT_EQ(data->GetAsTime().GetHour(), 1);
  EXPECT_EQ(data->GetAsNumber().AsLong64(), 739651LL * 86400 + 3600);
  EXPECT_EQ(bytesOf(text), "2/5/2026 1:00:00 AM");
  data->SetAsDate(*moment);
  EXPECT_EQ(bytesOf(data->GetAsText()), "2/4/2026");
  const fmx::TextUniquePtr typed;
  assign(*typed, "12 items");
  data->SetAsText(*typed, data->GetLocale(), fmx::Data::kDTNumber);
  EXPECT_EQ(data->GetNativeType(), fmx::Data::kDTNumber);
  EXPECT_EQ(bytesOf(data->GetAsText()), "12");
  EXPECT_TRUE(data->GetAsBoolean());
  assign(*typed, "never");
  data->SetAsText(*typed, data->GetLocale());
  EXPECT_EQ(data->GetAsTimeStamp().GetYear(), 0);
  EXPECT_THROW(data->SetAsText(*typed, data->GetLocale(), fmx::Data::kDTBinary), std::exception);
}

TEST_F(Wrapper, AVectorKeepsCopiesAndRefusesWhatIsPastItsEnd) {
  const fmx::DataVectUniquePtr arguments;
  {
    const fmx::DataUniquePtr data;
    const fmx::FixPtUniquePtr number(5);
    data->SetAsNumber(*number);
    arguments->PushBack(*data);
  }
  EXPECT_EQ(arguments->Size(), 1U);
  EXPECT_EQ(arguments->AtAsNumber(0).AsLong(), 5);
  EXPECT_TRUE(arguments->AtAsBoolean(0));
  EXPECT_THROW(arguments->AtAsText(1), std::exception);
  arguments->Clear();
  EXPECT_EQ(arguments->Size(), 0U);
}

TEST_F(Wrapper, CodesAndLocalesAreCopied) {
  const fmx::QuadCharUniquePtr code('Z', 'u', 'n', 'o');
  const fmx::QuadCharUniquePtr copy(*code);
  EXPECT_EQ((*copy)[3], 'o');
  EXPECT_EQ(copy->GetMacType(), 0x5A756E6FU);
  EXPECT_THROW((*copy)[4], std::exception);
  const fmx::LocaleUniquePtr locale, sameLocale(*locale);
  const fmx::ExprEnvUniquePtr environment;
  EXPECT_NE(environment->SessionID(), 0U);
}

TEST_F(Wrapper, LiveObjectsAreCountedByKind) {
  {
    const fmx::TextUniquePtr one, two;
    const fmx::FixPtUniquePtr number;
    EXPECT_EQ(standIn_.describeLiveObjects(), "2 Text, 1 FixPt");
  }
  EXPECT_EQ(standIn_.liveObjects(), 0);
}

TEST_F(Wrapper, TheCallThatIsAskedForFails) {
  const fmx::TextUniquePtr text;
  standIn_.failCall(2, fmx::_fmxcpt::kBadAlloc);
  text->Assign("one");
  EXPECT_THROW(text->Assign("two"), std::bad_alloc);
  EXPECT_FALSE(standIn_.failureIsPending());
  EXPECT_EQ(bytesOf(*text), "one");
  standIn_.failCall(1, fmx::_fmxcpt::kUnknown);
  EXPECT_THROW(fmx::FixPtUniquePtr(3), std::exception);
  standIn_.failCall(1, 7);
  EXPECT_EQ(text->GetSize(), 0U) << "an unknown code passes, with nothing done";
}

TEST_F(Wrapper, AFailureWhileDeletingStillDeletes) {
  fmx::TextUniquePtr text;
  standIn_.failCall(1, fmx::_fmxcpt::kBadAlloc);
  text.reset();
  EXPECT_FALSE(standIn_.failureIsPending());
  EXPECT_EQ(standIn_.liveObjects(), 0);
}

}  // namespace
}  // namespace fmhost
