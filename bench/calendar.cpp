#include "bench/calendar.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fmt/format.h>
#include <numeric>
#include <optional>
#include <random>
#include <string_view>

namespace bench {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::local_days;
using std::chrono::local_seconds;
using std::chrono::minutes;
using std::chrono::weeks;
using std::chrono::year_month_day;

constexpr std::string_view kWeekdays[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

// The standard library's distributions differ between its makers, its engines do not.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}
  // From low to high, both included.
  int between(int low, int high) {
    return low + static_cast<int>(engine_() % (std::uint64_t{1} + (high - low)));
  }
  bool percent(int chance) { return between(0, 99) < chance; }
  template <class Table>
  const auto& anyOf(const Table& table) {
    return table[static_cast<std::size_t>(between(0, static_cast<int>(std::size(table)) - 1))];
  }
  // An index, each as often as its weight says.
  template <std::size_t N>
  std::size_t weighted(const std::array<int, N>& weights) {
    int left = between(0, std::accumulate(weights.begin(), weights.end(), 0) - 1);
    std::size_t index = 0;
    while (left >= weights[index]) left -= weights[index++];
    return index;
  }

 private:
  std::mt19937_64 engine_;
};

struct Zone {
  std::string_view name;
  std::string_view standard, daylight;          // offsets; equal ones: no summer time
  std::string_view toDaylight, toStandard;      // rules
  std::string_view daylightFrom, standardFrom;  // first change, in wall-clock time before it
};
constexpr Zone kZones[] = {
    {"Europe/Berlin", "+0100", "+0200", "FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU",
     "FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU", "19960331T020000", "19961027T030000"},
    {"America/New_York", "-0500", "-0400", "FREQ=YEARLY;BYMONTH=3;BYDAY=2SU",
     "FREQ=YEARLY;BYMONTH=11;BYDAY=1SU", "20070311T020000", "20071104T020000"},
    {"Australia/Sydney", "+1000", "+1100", "FREQ=YEARLY;BYMONTH=10;BYDAY=1SU",
     "FREQ=YEARLY;BYMONTH=4;BYDAY=1SU", "20081005T020000", "20080406T030000"},
    {"Asia/Kolkata", "+0530", "+0530", "", "", "", "19700101T000000"},
    {"Asia/Tokyo", "+0900", "+0900", "", "", "", "19700101T000000"},
};
constexpr std::array<int, std::size(kZones)> kZoneWeights = {45, 25, 10, 12, 8};

void addLine(std::string& text, std::string_view line) {
  for (std::size_t room = 75; line.size() > room; room = 74) {
    while ((line[room] & 0xC0) == 0x80) --room;  // never within a character
    text.append(line.substr(0, room)).append("\r\n ");
    line.remove_prefix(room);
  }
  text.append(line).append("\r\n");
}

void addZonePart(std::string& text, std::string_view part, std::string_view from, std::string_view offsetFrom,
                 std::string_view offsetTo, std::string_view rule) {
  addLine(text, fmt::format("BEGIN:{}", part));
  addLine(text, fmt::format("DTSTART:{}", from));
  addLine(text, fmt::format("TZOFFSETFROM:{}", offsetFrom));
  addLine(text, fmt::format("TZOFFSETTO:{}", offsetTo));
  if (!rule.empty()) addLine(text, fmt::format("RRULE:{}", rule));
  addLine(text, fmt::format("END:{}", part));
}

std::string header() {
  std::string text;
  for (const std::string_view line : {"BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Zuno//bench//EN",
                                      "CALSCALE:GREGORIAN", "X-WR-CALNAME:Bench"})
    addLine(text, line);
  for (const Zone& zone : kZones) {
    addLine(text, "BEGIN:VTIMEZONE");
    addLine(text, fmt::format("TZID:{}", zone.name));
    if (!zone.toDaylight.empty())
      addZonePart(text, "DAYLIGHT", zone.daylightFrom, zone.standard, zone.daylight, zone.toDaylight);
    addZonePart(text, "STANDARD", zone.standardFrom, zone.daylight, zone.standard, zone.toStandard);
    addLine(text, "END:VTIMEZONE");
  }
  return text;
}

// How an item's times are written.
enum class Clock { zoned, utc, floating, allDay };

std::string_view parametersOf(Clock clock) { return clock == Clock::allDay ? ";VALUE=DATE" : ""; }

std::string dateText(local_days day) {
  const year_month_day date(day);
  return fmt::format("{:04}{:02}{:02}", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                     static_cast<unsigned>(date.day()));
}

std::string timeText(local_seconds time, Clock clock) {
  const auto day = std::chrono::floor<days>(time);
  if (clock == Clock::allDay) return dateText(day);
  const std::chrono::hh_mm_ss clockTime(time - day);
  return fmt::format("{}T{:02}{:02}{:02}{}", dateText(day), clockTime.hours().count(),
                     clockTime.minutes().count(), clockTime.seconds().count(),
                     clock == Clock::utc ? "Z" : "");
}

enum class Frequency { daily, weekly, monthly, yearly };

constexpr struct {
  std::string_view name;
  int leastPeriods, mostPeriods;
} kFrequencies[] = {{"DAILY", 5, 300}, {"WEEKLY", 5, 100}, {"MONTHLY", 3, 48}, {"YEARLY", 2, 9}};

struct Repetition {
  Frequency frequency{};
  int interval = 1;
  int periods = 0;           // how many the series lasts, unless it is endless
  std::string weekdays;      // BYDAY
  int weekdaysInPeriod = 1;  // how many occurrences a period has
  int ordinal = 0;           // monthly: which of its weekdays
};

class Maker {
 public:
  explicit Maker(std::uint64_t seed) : dice_(seed) {}

  std::string item(std::size_t number) {
    uid_ = fmt::format("{:08x}-{:04x}-4b3e-9d00-{:012x}@bench.example", dice_.between(0, 0x7fffffff),
                       dice_.between(0, 0xffff), number);
    title_ = words(dice_.between(2, 5));
    chooseTime();
    std::string text;
    if (!dice_.percent(20)) {
      addEvent(text, start_, {}, dice_.percent(50));
      return text;
    }
    const Repetition repetition = chooseRepetition();
    std::vector<std::string> lines = {ruleLine(repetition)};
    // Periods whose occurrence is left out or changed, in this order.
    int period = 0;
    const int excluded = dice_.percent(30) ? dice_.between(1, 4) : 0;
    for (int left = excluded; left > 0 && period + 3 < repetition.periods; --left)
      lines.push_back(timeLine("EXDATE", nth(repetition, period += dice_.between(1, 3))));
    addEvent(text, start_, lines, dice_.percent(50));
    const int changed = dice_.percent(15) ? dice_.between(1, 2) : 0;
    for (int left = changed; left > 0 && period + 1 < repetition.periods; --left)
      addOverride(text, repetition, ++period);
    return text;
  }

 private:
  std::string words(int count) {
    static constexpr std::string_view kWords[] = {
        "review",   "budget",   "team",     "quarter", "planning",  "customer",     "release",
        "design",   "weekly",   "sales",    "invoice", "project",   "status",       "lunch",
        "with",     "about",    "the",      "and",     "next",      "steps",        "open",
        "points",   "agenda",   "workshop", "travel",  "interview", "call",         "draft",
        "contract", "delivery", "school",   "dentist", "training",  "r\u00e9union", "Gespr\u00e4ch",
        "notes",    "from",     "last",     "meeting", "please",    "bring",        "figures"};
    std::string text;
    for (; count > 0; --count) {
      if (!text.empty()) text += ' ';
      text += dice_.anyOf(kWords);
    }
    return text;
  }

  void chooseTime() {
    constexpr local_days kFirst = std::chrono::local_days(std::chrono::year{2021} / 1 / 1);
    constexpr std::array<Clock, 4> kClocks = {Clock::zoned, Clock::utc, Clock::floating, Clock::allDay};
    clock_ = kClocks[dice_.weighted<4>({75, 10, 4, 11})];
    zone_ = kZones[dice_.weighted(kZoneWeights)].name;
    const local_days day = kFirst + days(dice_.between(0, 3651));
    if (clock_ == Clock::allDay) {
      start_ = day;
      length_ = days(dice_.percent(80) ? 1 : dice_.between(2, 10));
    } else {
      start_ = day + hours(dice_.between(7, 19)) + minutes(15 * dice_.between(0, 3));
      length_ = minutes(15 * dice_.between(1, 10));
    }
  }

  Repetition chooseRepetition() {
    Repetition repetition;
    const std::size_t frequency = dice_.weighted<4>({17, 48, 25, 10});
    repetition.frequency = static_cast<Frequency>(frequency);
    repetition.periods =
        dice_.between(kFrequencies[frequency].leastPeriods, kFrequencies[frequency].mostPeriods);
    const local_days day = std::chrono::floor<days>(start_);
    const unsigned weekday = std::chrono::weekday(day).c_encoding();
    const unsigned dayOfMonth = static_cast<unsigned>(year_month_day(day).day());
    switch (repetition.frequency) {
      case Frequency::daily:
        repetition.interval = dice_.percent(75) ? 1 : dice_.between(2, 5);
        break;
      case Frequency::weekly:
        repetition.interval = dice_.percent(75) ? 1 : 2;
        for (unsigned other = 0; other < 7; ++other)
          if (other == weekday || dice_.percent(24))
            repetition.weekdays.append(repetition.weekdays.empty() ? "" : ",").append(kWeekdays[other]);
        repetition.weekdaysInPeriod = static_cast<int>(repetition.weekdays.size() + 1) / 3;
        break;
      case Frequency::monthly:
        repetition.interval = dice_.percent(80) ? 1 : 3;
        // A fifth one does not exist in every month: from the 29th on it is the last.
        repetition.ordinal = dayOfMonth > 28 ? -1 : static_cast<int>((dayOfMonth - 1) / 7 + 1);
        repetition.weekdays = fmt::format("{}{}", repetition.ordinal, kWeekdays[weekday]);
        break;
      case Frequency::yearly:
        if (year_month_day(day).month() == std::chrono::February && dayOfMonth == 29) start_ -= days(1);
        break;
    }
    return repetition;
  }

  std::string ruleLine(const Repetition& repetition) {
    std::string line =
        fmt::format("RRULE:FREQ={}", kFrequencies[static_cast<std::size_t>(repetition.frequency)].name);
    if (repetition.interval > 1) line += fmt::format(";INTERVAL={}", repetition.interval);
    switch (dice_.weighted<3>({28, 28, 44})) {
      case 0:
        line += fmt::format(";COUNT={}", repetition.periods * repetition.weekdaysInPeriod);
        break;
      case 1:
        line += ";UNTIL=" + until(std::chrono::floor<days>(nth(repetition, repetition.periods)));
        break;
      default:
        break;  // without an end
    }
    if (!repetition.weekdays.empty()) line += ";BYDAY=" + repetition.weekdays;
    return line;
  }

  // In the form that belongs to the item's start: a date, a floating time, else UTC.
  std::string until(local_days day) const {
    const Clock form = clock_ == Clock::zoned ? Clock::utc : clock_;
    return timeText(day + hours(23) + minutes(59), form);
  }

  // A start that the rule names: the n-th step of its interval from the first.
  local_seconds nth(const Repetition& repetition, int n) const {
    const int steps = n * repetition.interval;
    const local_days day = std::chrono::floor<days>(start_);
    const auto time = start_ - day;
    const year_month_day date(day);
    switch (repetition.frequency) {
      case Frequency::daily:
        return start_ + days(steps);
      case Frequency::weekly:
        return start_ + weeks(steps);
      case Frequency::monthly: {
        const auto month = std::chrono::year_month(date.year(), date.month()) + std::chrono::months(steps);
        const std::chrono::weekday weekday(day);
        return repetition.ordinal < 0
                   ? local_days(month / weekday[std::chrono::last]) + time
                   : local_days(month / weekday[static_cast<unsigned>(repetition.ordinal)]) + time;
      }
      case Frequency::yearly:
        break;
    }
    return local_days(date + std::chrono::years(steps)) + time;
  }

  std::string timeLine(std::string_view name, local_seconds time) const {
    if (clock_ == Clock::zoned) return fmt::format("{};TZID={}:{}", name, zone_, timeText(time, clock_));
    return fmt::format("{}{}:{}", name, parametersOf(clock_), timeText(time, clock_));
  }

  void addOverride(std::string& text, const Repetition& repetition, int place) {
    const local_seconds original = nth(repetition, place);
    const auto shift =
        clock_ == Clock::allDay ? std::chrono::seconds(days(1)) : minutes(30) * dice_.between(1, 4);
    addEvent(text, original + shift, {timeLine("RECURRENCE-ID", original)}, false);
  }

  void addEvent(std::string& text, local_seconds start, const std::vector<std::string>& lines, bool isLong) {
    addLine(text, "BEGIN:VEVENT");
    addLine(text, "UID:" + uid_);
    addLine(text, "DTSTAMP:20260101T080000Z");
    addLine(text, timeLine("DTSTART", start));
    addLine(text, timeLine("DTEND", start + length_));
    for (const std::string& line : lines) addLine(text, line);
    addLine(text, "SUMMARY:" + title_);
    const std::string created = timeText(start_ - days(dice_.between(1, 90)), Clock::utc);
    addLine(text, "CREATED:" + created);
    addLine(text, "LAST-MODIFIED:" + created);
    addLine(text, fmt::format("SEQUENCE:{}", dice_.between(0, 3)));
    addLine(text, "STATUS:CONFIRMED");
    addLine(text, clock_ == Clock::allDay ? "TRANSP:TRANSPARENT" : "TRANSP:OPAQUE");
    if (dice_.percent(50))
      addLine(text, fmt::format("LOCATION:{}\\, room {}", words(2), dice_.between(1, 40)));
    if (dice_.percent(15)) addLine(text, "CATEGORIES:" + words(1));
    if (isLong) addLine(text, "DESCRIPTION:" + paragraphs());
    if (dice_.percent(25)) addPeople(text);
    if (dice_.percent(45)) addAlarm(text);
    addLine(text, "END:VEVENT");
  }

  std::string paragraphs() {
    std::string text = words(dice_.between(5, 30));
    for (int left = dice_.between(0, 2); left > 0; --left) text += "\\n" + words(dice_.between(5, 25));
    return text;
  }

  void addPeople(std::string& text) {
    static constexpr std::string_view kNames[] = {"Ada Brown",  "Ben Carter", "Carla Diaz", "Dev Patel",
                                                  "Emma Fisch", "Femi Ojo",   "Greta Lund", "Hugo Blanc"};
    static constexpr std::string_view kAnswers[] = {"ACCEPTED", "DECLINED", "TENTATIVE", "NEEDS-ACTION"};
    const auto address = [](std::string_view name) {
      std::string mail(name);
      std::ranges::replace(mail, ' ', '.');
      return mail + "@example.com";
    };
    const std::string_view organizer = dice_.anyOf(kNames);
    addLine(text, fmt::format("ORGANIZER;CN={}:mailto:{}", organizer, address(organizer)));
    for (int left = dice_.between(1, 5); left > 0; --left) {
      const std::string_view name = dice_.anyOf(kNames);
      addLine(text, fmt::format("ATTENDEE;CN={};ROLE=REQ-PARTICIPANT;PARTSTAT={};RSVP=TRUE:mailto:{}", name,
                                dice_.anyOf(kAnswers), address(name)));
    }
  }

  void addAlarm(std::string& text) {
    addLine(text, "BEGIN:VALARM");
    addLine(text, "ACTION:DISPLAY");
    addLine(text, "DESCRIPTION:" + title_);
    addLine(text, fmt::format("TRIGGER:-PT{}M", 5 * dice_.between(1, 12)));
    addLine(text, "END:VALARM");
  }

  Dice dice_;
  // Of the item at hand.
  std::string uid_, title_;
  Clock clock_ = Clock::zoned;
  std::string_view zone_;
  local_seconds start_{};
  std::chrono::seconds length_{};
};

}  // namespace

std::string Calendar::text() const {
  std::string text = header;
  for (const std::string& item : items) text += item;
  return text += footer;
}

Calendar makeCalendar(std::size_t items, std::uint64_t seed) {
  Calendar calendar{.header = header(), .items = {}, .footer = "END:VCALENDAR\r\n"};
  calendar.items.reserve(items);
  Maker maker(seed);
  for (std::size_t number = 1; number <= items; ++number) calendar.items.push_back(maker.item(number));
  return calendar;
}

}  // namespace bench
