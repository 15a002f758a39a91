// Time zones from the system's zone files (TZif, RFC 8536, in $TZDIR or the usual folder), from POSIX TZ
// rules, and from transitions worked out elsewhere (VTIMEZONE).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/date.h"

namespace foundation {

class PosixRule;
struct ZoneTable;

// Immutable and shared: safe to use from several threads at once.
class TimeZone {
 public:
  ~TimeZone();
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

  // From `at` on, local time is `offset` east of UTC.
  struct Transition {
    Date at;
    std::chrono::seconds offset;
    std::string abbreviation;
  };

  // The process's zone. TZ is looked at on each call; what a value of it means is found out once. Without a
  // usable TZ: /etc/localtime, else UTC.
  static const std::shared_ptr<const TimeZone>& defaultZone();
  // Null when the system has no zone of that name (names that would leave the zone folder included).
  static std::shared_ptr<const TimeZone> named(std::string_view name);
  // Null when the text is no POSIX TZ rule such as "CET-1CEST,M3.5.0,M10.5.0/3".
  static std::shared_ptr<const TimeZone> fromPosixRule(std::string_view rule);
  static std::shared_ptr<const TimeZone> fixed(std::chrono::seconds eastOfUtc);
  static std::shared_ptr<const TimeZone> utc();
  // `transitions` ascending; before the first one `before` holds.
  static std::shared_ptr<const TimeZone> fromTransitions(std::string name, std::chrono::seconds before,
                                                         std::vector<Transition> transitions);

  // The zone database's name ("Europe/Berlin"), "UTC", or empty for a bare rule or offset.
  const std::string& name() const { return name_; }
  // The POSIX rule of a zone made from one, else empty.
  const std::string& posixRule() const { return posixRule_; }

  std::chrono::seconds offsetAt(Date date) const;
  WallTime wallTimeOf(Date date) const { return WallTime(date.time_since_epoch() + offsetAt(date)); }
  // A wall-clock time that a change of clock skips is moved forward by the gap; of one that occurs twice
  // the first is meant (RFC 5545 3.3.5).
  Date instantOf(WallTime wall) const;

  // The zone's own letters at that date ("CET").
  std::string letters(Date date) const;
  // As an English (US) system shows it: EST/EDT and the like for America's zones that it has names for,
  // else GMT, GMT+1, GMT+5:30.
  std::string abbreviation(Date date) const;

  // The changes of clock in [from, to), ascending; what a VTIMEZONE is written from.
  std::vector<Transition> transitionsBetween(Date from, Date to) const;

 private:
  friend class ZoneFiles;

  // A table without entries follows its rule at all times, another one from the last entry on.
  TimeZone(std::string name, ZoneTable table);

  struct Segment {
    std::int64_t offset;
    const std::string* letters;
  };
  // The index of the segment that holds at an instant of the table.
  std::size_t segmentAt(std::int64_t instant) const;
  bool isRuled(std::int64_t instant) const;
  Segment ruledSegment(std::int64_t instant) const;
  std::int64_t ruledInstantOf(std::int64_t wall) const;
  Segment segmentOf(Date date) const;
  void buildIndex();

  std::string name_;
  std::string posixRule_;
  // Segment i reaches from at_[i - 1] (or the beginning) to at_[i] (or the end).
  std::vector<std::int64_t> at_;
  std::vector<std::int32_t> offset_;
  std::vector<std::uint32_t> letterOf_;
  std::vector<std::string> letters_;
  // For each stretch of 2^indexShift_ seconds from at_.front() on, the segment at its beginning.
  std::vector<std::uint32_t> index_;
  unsigned indexShift_ = 0;
  std::int32_t widestOffset_ = 0;
  // Beyond the table; before ruledBefore_ and from ruledFrom_ on.
  std::unique_ptr<const PosixRule> rule_;
  std::int64_t ruledBefore_ = 0;
  std::int64_t ruledFrom_ = 0;
};

}  // namespace foundation
