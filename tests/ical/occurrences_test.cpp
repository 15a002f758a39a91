// Calendars as programs wrote them, from their text to their occurrences. Their number and the first one are
// what three other programs agree on.
#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <map>

#include "eventkit/embedded/ical/stream.h"
#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/ical/zones.h"
#include "eventkit/embedded/storage/item_index.h"

namespace ek::embedded {
namespace {

using foundation::TimeZone;

// One file's items by UID, and its time zones.
class CalendarFile {
 public:
  explicit CalendarFile(const std::string& name) {
    std::ifstream file(std::string(ZUNO_TEST_DATA) + "/ics/" + name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    text_ = {std::istreambuf_iterator<char>(file), {}};
    ical::walkStream(text_, {.piece = [&](const ical::Piece& piece) {
                       if (piece.isComponent) take(ical::parseComponents(piece.text).at(0));
                     }});
  }

  // In order, written in UTC; floating ones as if in UTC.
  std::vector<std::string> startsBetween(std::string_view from, std::string_view to) const {
    std::vector<std::string> starts;
    const recurrence::Window window{instant(from), instant(to)};
    for (const auto& [uid, components] : items_) {
      std::string why;
      const auto item = indexItem(
          components, [&](std::string_view tzid) { return find(tzid); }, why);
      if (item) std::visit([&](const auto& entry) { append(entry, window, starts); }, item->entry);
    }
    std::ranges::sort(starts);
    return starts;
  }

 private:
  static Date instant(std::string_view text) {
    return Date(ical::parseDateTime(text).value().wall.time_since_epoch());
  }

  void take(ical::Component component) {
    const std::string name(component.value(component.is("VTIMEZONE") ? "TZID" : "UID").value_or(""));
    if (component.is("VTIMEZONE")) {
      zones_[name] = ical::zoneOf(component);
    } else if (component.is("VEVENT")) {
      items_[name.empty() ? std::to_string(items_.size()) : name].push_back(std::move(component));
    }
  }

  KeyedZone find(std::string_view tzid) const {
    if (auto known = ical::zoneNamed(tzid)) return {known, std::string(tzid)};
    const auto own = zones_.find(std::string(tzid));
    return own == zones_.end() ? KeyedZone() : KeyedZone{own->second, own->first};
  }

  static void append(const SingleEvent& event, const recurrence::Window& window,
                     std::vector<std::string>& starts) {
    const Date start = instantOf(event.start, *TimeZone::utc()), end = instantOf(event.end, *TimeZone::utc());
    if (start < window.end && (end > window.start || start == window.start)) append(start, starts);
  }
  static void append(const SeriesEvent& event, const recurrence::Window& window,
                     std::vector<std::string>& starts) {
    std::vector<recurrence::Occurrence> occurrences;
    recurrence::occurrencesIn(event.series, window, *TimeZone::utc(), occurrences);
    for (const auto& occurrence : occurrences) append(occurrence.start, starts);
  }
  static void append(const ReminderEntry&, const recurrence::Window&, std::vector<std::string>&) {}
  static void append(Date start, std::vector<std::string>& starts) {
    starts.push_back(
        ical::formatDateTime({.wall = foundation::WallTime(start.time_since_epoch()), .isUtc = true}));
  }

  std::string text_;
  std::map<std::string, std::vector<ical::Component>> items_;
  std::map<std::string, std::shared_ptr<const TimeZone>> zones_;
};

TEST(CalendarFiles, HaveTheOccurrencesThatOtherProgramsSee) {
  const struct {
    const char *file, *from, *to;
    std::size_t count;
    const char *first, *last;
  } cases[] = {
      {"ical--apple_ical.ics", "20220101T000000Z", "20260101T000000Z", 1212, "20220912T160000Z",
       "20251231T170000Z"},
      {"ical--google_calendar_public_holidays.ics", "20210101T000000Z", "20250101T000000Z", 111,
       "20210101T000000Z", "20231231T000000Z"},
      {"ical--recurring_with_single_change.ics", "20260101T000000Z", "20300101T000000Z", 3,
       "20260201T150000Z", "20260203T150000Z"},
      {"ical--unknown_value_proton_mail.ics", "20240101T000000Z", "20280101T000000Z", 1, "20240201T100000Z",
       "20240201T100000Z"},
      {"ical.net--Google1.ics", "20060101T000000Z", "20100101T000000Z", 1117, "20061211T060000Z",
       "20091231T060000Z"},
      {"ical4j--EXDATE.ics", "20060101T000000Z", "20100101T000000Z", 5, "20060101T020000Z",
       "20060107T020000Z"},
      {"ical4j--rfc5545-sec3.6.1.ics", "19970101T000000Z", "20010101T000000Z", 6, "19970401T163000Z",
       "20001102T000000Z"},
      {"khal--event_rrule_recuid.ics", "20140101T000000Z", "20180101T000000Z", 6, "20140630T050000Z",
       "20140804T050000Z"},
      {"node-ical--tentative-apple-calendar.ics", "20220101T000000Z", "20260101T000000Z", 4,
       "20220704T230000Z", "20220707T160000Z"},
  };
  for (const auto& [file, from, to, count, first, last] : cases) {
    SCOPED_TRACE(file);
    const std::vector<std::string> starts = CalendarFile(file).startsBetween(from, to);
    ASSERT_EQ(starts.size(), count);
    EXPECT_EQ(starts.front(), first);
    EXPECT_EQ(starts.back(), last);
  }
}

TEST(CalendarFiles, BrokenOnesHaveWhatCanBeUnderstood) {
  constexpr const char *kBegin = "19000101T000000Z", *kEnd = "21000101T000000Z";
  const struct {
    const char *why, *file;
    std::vector<std::string> starts;
  } cases[] = {
      {"a zone by its Windows name, in quotes", "biweekly--outlook-2010.ics", {"20130610T160000Z"}},
      {"an empty parameter", "icalendar--broken_ical.ics", {"20140409T093000Z"}},
      {"a line that is none", "icalendar--issue_104_broken_calendar.ics", {"20140401T000000Z"}},
      {"an occurrence without its series", "khal--event_dt_recuid_no_master.ics", {"20170329T160000Z"}},
      {"a rule that ends at a time, of an event of days",
       "khal--event_dt_rrule_invalid_until.ics",
       {"20071201T000000Z", "20080101T000000Z", "20080201T000000Z"}},
      {"an offset that no clock has", "khal--invalid_tzoffset.ics", {"20121202T070000Z"}},
  };
  for (const auto& [why, file, starts] : cases)
    EXPECT_EQ(CalendarFile(file).startsBetween(kBegin, kEnd), starts) << why;
}

}  // namespace
}  // namespace ek::embedded
