#include "foundation/posix_rule.h"

#include <gtest/gtest.h>

#include "foundation/time_zone.h"
#include "tests/foundation/c_library.h"

namespace foundation {
namespace {

TEST(PosixRule, RefusesWhatIsNoRule) {
  for (const char* text : {"C1", "CE1", "CET", "CET-", "CET-25", "CET-1:60", "CET-1CE", "<+03-3", "<+0>-3",
                           "+03-3", "Europe/Berlin", ""}) {
    EXPECT_FALSE(PosixRule::parse(text)) << text;
    EXPECT_EQ(TimeZone::fromPosixRule(text), nullptr) << text;
  }
  for (const std::string dates :
       {",M3.5.0", ",M3.5.0,", ",M3.5.0,M10.5.0/3x", ",M13.5.0,M10.5.0", ",M3.6.0,M10.5.0", ",M3.5.7,M10.5.0",
        ",J0,J300", ",J366,J300", ",366,300", ",M3.5.0/168,M10.5.0", " M3.5.0 M10.5.0"})
    EXPECT_FALSE(PosixRule::parse("CET-1CEST" + dates)) << dates;
}

// The C library reads the same rules; it is asked about random instants of three centuries. (It does not
// follow rules back beyond 1970, nor a change across the end of a year.)
TEST(PosixRule, AgreesWithTheSystemAboutEveryForm) {
  for (const char* text :
       {"CET-1CEST,M3.5.0,M10.5.0/3", "EST5EDT,M3.2.0,M11.1.0", "AEST-10AEDT,M10.1.0,M4.1.0/3",
        "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", "<-03>3<-02>,M3.5.0/-2,M10.5.0/-1", "IST-5:30", "<+03>-3",
        "IST-1GMT0,M10.5.0,M3.5.0/1", "AAA3BBB,J60/0,J300/2", "AAA3BBB,59/0,299/2", "AAA3BBB,J59/24,J365/1",
        "IST-2IDT,M3.4.4/26,M10.5.0", "EET-2EEST,M3.5.5/0,M10.5.5/0", "<-00>0", "AAA12:34:56",
        "AAA-24BBB,M2.1.1/3:04:05,M12.1.6/167"}) {
    SCOPED_TRACE(text);
    const auto zone = TimeZone::fromPosixRule(text);
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->posixRule(), text);
    EXPECT_EQ(zone->name(), "");
    expectAgreesWithCLibrary(*zone, text, 31'536'000, 10'413'792'000);
  }
}

TEST(PosixRule, SummerTimeAllTheYearRoundHasNoHoles) {
  const auto zone = TimeZone::fromPosixRule("XXX3EDT4,0/0,J365/23");
  ASSERT_TRUE(zone);
  for (std::int64_t day = -50000; day < 100000; ++day)
    ASSERT_EQ(zone->offsetAt(Date(std::chrono::days(day))), std::chrono::hours(-4)) << day;
  EXPECT_TRUE(zone->transitionsBetween(Date(), Date(std::chrono::days(100000))).empty());
}

}  // namespace
}  // namespace foundation
