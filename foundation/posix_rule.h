// A POSIX TZ rule: standard time and, perhaps, summer time between two yearly dates.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace foundation {

class PosixRule {
 public:
  struct Phase {
    std::int32_t offset = 0;  // seconds east of UTC
    std::string letters;
  };
  struct Change {
    std::int64_t at = 0;  // seconds since 1970, UTC
    bool toSummer = false;
  };

  // "CET-1CEST,M3.5.0,M10.5.0/3"; names may be quoted ("<+03>-3"), the times of the changes may reach from
  // -167 to 167 hours. Nothing for any other text.
  static std::optional<PosixRule> parse(std::string_view text);

  const Phase& standard() const { return standard_; }
  const Phase& summer() const { return summer_; }
  bool hasSummer() const { return hasSummer_; }

  // The changes of the years first to last, ascending, each to the other phase. A rule that leaves summer
  // time and enters it in the same second, as summer all the year round is written, has only the first one.
  std::vector<Change> changes(int first, int last) const;

 private:
  enum class DayKind { julian, zeroBased, weekday };
  struct YearDay {
    DayKind kind = DayKind::weekday;
    int month = 0, week = 0, day = 0;  // of Mm.w.d; a day of the year is in `day` alone
    int time = 7200;                   // seconds after midnight
  };
  class Reader;

  static std::int64_t secondsAt(const YearDay& day, int year);

  Phase standard_, summer_;
  bool hasSummer_ = false;
  YearDay toSummer_, toStandard_;
};

}  // namespace foundation
