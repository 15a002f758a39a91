#include "host/wrapper/date_time.h"

#include <gtest/gtest.h>
#include <string>

namespace fmhost {
namespace {

TEST(HostDate, CountsDaysFromTheFirstDayOfYearOne) {
  constexpr struct {
    int year, month, day;
    std::int64_t number;
  } cases[] = {{1, 1, 1, 1},
               {1970, 1, 1, 719163},
               {2000, 2, 29, 730179},
               {2026, 11, 21, 739941},
               {4000, 12, 31, 1460970}};
  for (const auto& [year, month, day, number] : cases) {
    const DateTime date = dateFromParts(year, month, day);
    EXPECT_EQ(date.day, number);
    const CalendarDay parts = calendarDay(dateFromDayNumber(number));
    EXPECT_EQ(std::tie(parts.year, parts.month, parts.day), std::tie(year, month, day));
  }
  EXPECT_EQ(dayOfWeek(dateFromParts(2026, 11, 21)), 7);
  EXPECT_EQ(dayOfWeek(dateFromParts(2026, 11, 22)), 1);
}

TEST(HostDate, MonthsAndDaysCarry) {
  constexpr struct {
    int year, month, day;
    const char* text;
  } cases[] = {{2026, 13, 1, "1/1/2027"},  {2026, 0, 1, "12/1/2025"},
               {2026, -11, 1, "1/1/2025"}, {2026, 3, 0, "2/28/2026"},
               {2024, 2, 30, "3/1/2024"},  {2026, 1, 366, "1/1/2027"},
               {4000, 12, 32, "?"},        {1, 1, 0, "?"},
               {99999999, 1, 1, "?"}};
  for (const auto& [year, month, day, text] : cases)
    EXPECT_EQ(dateText(dateFromParts(year, month, day)), text);
}

TEST(HostDate, IsReadMonthFirst) {
  constexpr struct {
    std::u16string_view typed;
    const char* iso;
  } cases[] = {{u"2/4/2026", "2026-02-04"},
               {u"02/04/2026", "2026-02-04"},
               {u" 2-4-2026 ", "2026-02-04"},
               {u"13/1/2026", "?"},
               {u"2/30/2026", "?"},
               {u"2026-02-04", "?"},
               {u"2/4/99", "1999-02-04"},
               {u"2/4/0099", "0099-02-04"},
               {u"", ""},
               {u"someday", "?"},
               {u"2/4/2026 x", "?"},
               {u"2/4/2026 3:00 PM", "2026-02-04"},
               {u"739941", "2026-11-21"},
               {u"999999999999999999999", "?"},
               {u"2//2026", "?"}};
  for (const auto& [typed, iso] : cases) EXPECT_EQ(isoDateText(parseDate(typed)), iso);
}

TEST(HostTime, IsReadWithAndWithoutHalvesOfTheDay) {
  constexpr struct {
    std::u16string_view typed;
    const char* iso;
  } cases[] = {{u"2:05", "02:05:00"},
               {u"14:05:06", "14:05:06"},
               {u"2:05:06 PM", "14:05:06"},
               {u"12:00 am", "00:00:00"},
               {u"12:00pm", "12:00:00"},
               {u"13:00 AM", "?"},
               {u"100:00:00", "100:00:00"},
               {u"-1:30:00", "-01:30:00"},
               {u"0:00:01.25", "00:00:01.25"},
               {u"1:75", "02:15:00"},
               {u"noon", "?"},
               {u"2:05 XM", "?"},
               {u"2/4/2026 2:05 PM", "14:05:00"},
               {u"", ""}};
  for (const auto& [typed, iso] : cases) EXPECT_EQ(isoTimeText(parseTime(typed)), iso);
}

TEST(HostTimestamp, IsReadAndShownWithUnitedStatesSettings) {
  constexpr struct {
    std::u16string_view typed;
    const char* shown;
  } cases[] = {{u"11/21/2026 2:05:06 PM", "11/21/2026 2:05:06 PM"},
               {u"11/21/2026 14:05", "11/21/2026 2:05:00 PM"},
               {u"11/21/2026", "11/21/2026 12:00:00 AM"},
               {u"11/21/2026 12:30 PM", "11/21/2026 12:30:00 PM"},
               {u"11/21/2026 24:00:00", "11/22/2026 12:00:00 AM"},
               {u"12/31/4000 24:00:00", "?"},
               {u"61997169000", "8/12/1965 7:50:00 PM"},
               {u"2026-11-21 14:05:00", "?"},
               {u"1/1/0001 0:00:00", "1/1/0001 12:00:00 AM"},
               {u"11/21/2026 noon", "?"}};
  for (const auto& [typed, shown] : cases) EXPECT_EQ(timestampText(parseTimestamp(typed)), shown);
}

TEST(HostTimestamp, CountsSecondsFromTheStartOfYearOne) {
  EXPECT_EQ(dateFromParts(1, 1, 1).secondsOfEra(), Decimal(0));
  EXPECT_EQ(parseTimestamp(u"11/21/2026 2:05:06 PM").secondsOfEra(), Decimal(739940LL * 86400 + 50706));
  EXPECT_EQ(isoTimestampText(timestampFromSeconds(*Decimal::fromText(u"63930866706.5"))),
            "2026-11-21 14:05:06.5");
  EXPECT_EQ(isoTimestampText(timestampFromSeconds(Decimal(-1))), "?");
  EXPECT_EQ(isoTimeText(timeFromSeconds(*Decimal::fromText(u"1e200"))), "?");
}

}  // namespace
}  // namespace fmhost
