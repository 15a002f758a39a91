// Plain values of the calendar store's interface. Numbers of enumerations are EventKit's.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/date.h"
#include "foundation/time_zone.h"

namespace ek {

using foundation::Date;

enum class EntityType { event = 0, reminder = 1 };
enum EntityMask : unsigned { kEntityMaskEvent = 1, kEntityMaskReminder = 2 };
enum class Span { thisEvent = 0, futureEvents = 1 };
enum class CalendarType { local = 0, calDAV = 1, exchange = 2, subscription = 3, birthday = 4 };
enum class SourceType { local = 0, exchange = 1, calDAV = 2, mobileMe = 3, subscribed = 4, birthdays = 5 };
enum class AlarmType { display = 0, audio = 1, procedure = 2, email = 3 };
// Beyond yearly: what RFC 5545 has and EventKit does not; it occurs in imported rules only.
enum class RecurrenceFrequency {
  daily = 0,
  weekly = 1,
  monthly = 2,
  yearly = 3,
  hourly = 4,
  minutely = 5,
  secondly = 6
};
enum class ParticipantStatus {
  unknown = 0,
  pending = 1,
  accepted = 2,
  declined = 3,
  tentative = 4,
  delegated = 5,
  completed = 6,
  inProcess = 7
};
enum class ParticipantRole { unknown = 0, required = 1, optional = 2, chair = 3, nonParticipant = 4 };
enum class ParticipantType { unknown = 0, person = 1, room = 2, resource = 3, group = 4 };

// Why a store refused: a code of EventKit's error domain and a text for people.
enum class ErrorCode {
  eventNotMutable = 0,
  noCalendar = 1,
  noStartDate = 2,
  noEndDate = 3,
  datesInverted = 4,
  internalFailure = 5,
  calendarReadOnly = 6,
  durationGreaterThanRecurrence = 7,
  startDateTooFarInFuture = 9,
  startDateCollidesWithOtherOccurrence = 10,
  objectBelongsToDifferentStore = 11,
  invalidSpan = 13,
  calendarHasNoSource = 14,
  calendarSourceCannotBeModified = 15,
  calendarIsImmutable = 16,
  sourceDoesNotAllowCalendarAddDelete = 17,
  recurringReminderRequiresDueDate = 18,
  calendarDoesNotAllowEvents = 22,
  calendarDoesNotAllowReminders = 23,
  sourceDoesNotAllowReminders = 24,
  sourceDoesNotAllowEvents = 25,
  priorityIsInvalid = 26,
  procedureAlarmsNotMutable = 28,
  eventStoreNotAuthorized = 29,
  reminderAlarmContainsEmailOrUrl = 36,
};
struct Error {
  ErrorCode code = ErrorCode::internalFailure;
  std::string text;
};

// What EventKit raises as an exception: misuse, or a store that opened and then cannot be read or written.
class Exception : public std::exception {
 public:
  explicit Exception(std::string reason) : reason_(std::move(reason)) {}
  const std::string& reason() const noexcept { return reason_; }
  const char* what() const noexcept override { return reason_.c_str(); }

 private:
  std::string reason_;
};
// For sources that cannot hold a C++ throw (Objective-C++).
[[noreturn]] void throwException(const std::string& reason);

// Calibrated RGB, each component 0 to 1.
struct Color {
  double red = 0, green = 0, blue = 0, alpha = 1;
  bool operator==(const Color&) const = default;
};
// Components beyond 0..1 count as the nearer limit, as the platform's colour class has it.
Color calibratedColor(double red, double green, double blue, double alpha);

// An account that calendars belong to.
struct Source {
  std::string identifier;
  SourceType type = SourceType::local;
  std::string title;
  bool operator==(const Source&) const = default;
};

// A date as people enter it: wall-clock time, floating when the zone is null.
struct DateComponents {
  foundation::WallTime wall{};
  bool isDateOnly = false;
  std::shared_ptr<const foundation::TimeZone> zone;
};

struct Participant {
  std::optional<std::string> url;   // normally mailto:
  std::optional<std::string> name;  // display name
  ParticipantStatus status = ParticipantStatus::unknown;
  ParticipantRole role = ParticipantRole::unknown;
  ParticipantType type = ParticipantType::unknown;
  std::shared_ptr<const void> native;  // whatever the store needs to find the person again; may be null
};

struct DayOfWeek {
  int dayOfTheWeek = 1;  // 1 Sunday to 7 Saturday
  int weekNumber = 0;    // 0: every week; negative counts from the end
  // Throws ek::Exception outside 1..7.
  static DayOfWeek dayOfWeek(int dayOfTheWeek);
  bool operator==(const DayOfWeek&) const = default;
};

// Either a last date (inclusive) or a count of occurrences, the first included.
struct RecurrenceEnd {
  std::optional<Date> endDate;
  std::int64_t occurrenceCount = 0;
  // Throws ek::Exception for no date, and for a count below 1.
  static RecurrenceEnd withEndDate(std::optional<Date> endDate);
  static RecurrenceEnd withOccurrenceCount(std::int64_t count);
  bool operator==(const RecurrenceEnd&) const = default;
};

// An empty list is EventKit's nil.
struct RecurrenceRule {
  RecurrenceFrequency frequency = RecurrenceFrequency::daily;
  std::int64_t interval = 1;
  int firstDayOfTheWeek = 0;
  std::vector<DayOfWeek> daysOfTheWeek;
  std::vector<int> daysOfTheMonth;
  std::vector<int> monthsOfTheYear;
  std::vector<int> weeksOfTheYear;
  std::vector<int> daysOfTheYear;
  std::vector<int> setPositions;
  std::optional<RecurrenceEnd> end;
  bool operator==(const RecurrenceRule&) const = default;
};

// What a store made of a query's conditions. Only the store that made it understands it.
class Predicate {
 public:
  virtual ~Predicate() = default;
};

// One answer to a query, in the store's own order, which positions in scripts count. It knows its size and
// makes a fresh item for a position: nothing is built that nobody opens. An answer stays as it was when it
// was given; at() of an item that has since gone gives null.
template <class Item>
class List {
 public:
  virtual ~List() = default;
  virtual std::size_t size() const = 0;
  virtual std::shared_ptr<Item> at(std::size_t index) const = 0;
};

}  // namespace ek
