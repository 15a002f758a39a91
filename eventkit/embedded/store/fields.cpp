#include "eventkit/embedded/store/fields.h"

#include <algorithm>
#include <charconv>

#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/store/rules.h"

namespace ek::embedded {

namespace {

constexpr std::string_view kMailto = "mailto:";

template <class Value>
struct Word {
  std::string_view word;
  Value value;
};

constexpr Word<ParticipantStatus> kStatuses[] = {
    {"", ParticipantStatus::pending},
    {"NEEDS-ACTION", ParticipantStatus::pending},
    {"ACCEPTED", ParticipantStatus::accepted},
    {"DECLINED", ParticipantStatus::declined},
    {"TENTATIVE", ParticipantStatus::tentative},
    {"DELEGATED", ParticipantStatus::delegated},
    {"COMPLETED", ParticipantStatus::completed},
    {"IN-PROCESS", ParticipantStatus::inProcess},
};
constexpr Word<ParticipantRole> kRoles[] = {
    {"", ParticipantRole::required},
    {"REQ-PARTICIPANT", ParticipantRole::required},
    {"OPT-PARTICIPANT", ParticipantRole::optional},
    {"CHAIR", ParticipantRole::chair},
    {"NON-PARTICIPANT", ParticipantRole::nonParticipant},
};
constexpr Word<ParticipantType> kTypes[] = {
    {"", ParticipantType::person},     {"INDIVIDUAL", ParticipantType::person},
    {"ROOM", ParticipantType::room},   {"RESOURCE", ParticipantType::resource},
    {"GROUP", ParticipantType::group},
};

// The first value of each table is for a parameter that is absent; an unknown word is `unknown`.
template <class Value, std::size_t size>
Value wordIn(const Word<Value> (&table)[size], const std::optional<std::string>& word) {
  const auto* entry = std::ranges::find_if(
      table, [&word](const auto& each) { return equalsIgnoringCase(each.word, word.value_or("")); });
  return entry == std::end(table) ? Value::unknown : entry->value;
}

Participant readParticipant(const ical::Line& line) {
  const std::optional<std::string> name = line.parameter("CN");
  return {
      .url = std::string(line.value()),
      .name = name ? std::optional(ical::decodeBytes(*name)) : std::nullopt,
      .status = wordIn(kStatuses, line.parameter("PARTSTAT")),
      .role = wordIn(kRoles, line.parameter("ROLE")),
      .type = wordIn(kTypes, line.parameter("CUTYPE")),
      .native =
          std::make_shared<const std::string>(line.parameter("EMAIL").value_or(addressIn(line.value()))),
  };
}

std::optional<std::string> readText(const ical::Component& component, std::string_view name) {
  const auto value = component.value(name);
  return value ? std::optional(ical::decodeText(*value)) : std::nullopt;
}

int readNumber(const ical::Component& component, std::string_view name) {
  std::string_view value = ical::trimmed(component.value(name).value_or(""));
  if (value.starts_with('+')) value.remove_prefix(1);
  int number = 0;
  std::from_chars(value.data(), value.data() + value.size(), number);
  return number;
}

std::int64_t secondsBetween(const ZonedTime& from, const ZonedTime& to) {
  const auto zone = foundation::TimeZone::defaultZone();
  return (instantOf(momentOf(to), *zone) - instantOf(momentOf(from), *zone)).count();
}

void readReminder(const ical::Component& component, const ZoneFinder& zones, Fields& fields) {
  fields.due = readEnd(component, zones);
  fields.completion = readStamp(component, "COMPLETED", zones);
  fields.isCompleted = fields.completion || hasStatus(component, "COMPLETED");
  fields.priority = readNumber(component, "PRIORITY");
}

}  // namespace

Fields readFields(const ical::Component& component, const ZoneFinder& zones) {
  Fields fields;
  fields.title = readText(component, "SUMMARY");
  fields.location = readText(component, "LOCATION");
  fields.notes = readText(component, "DESCRIPTION");
  if (const auto url = component.value("URL")) fields.url = std::string(*url);
  fields.created = readStamp(component, "CREATED", zones);
  fields.lastModified = readStamp(component, "LAST-MODIFIED", zones);
  if (const auto organizer = component.value("ORGANIZER")) fields.organizer = std::string(*organizer);
  if (const ical::Line* start = component.find("DTSTART")) fields.start = readTime(*start, zones);
  if (component.is("VTODO")) readReminder(component, zones, fields);
  for (const ical::Line* attendee : component.all("ATTENDEE"))
    fields.attendees.push_back(readParticipant(*attendee));
  for (const ical::Line* rule : component.all("RRULE"))
    if (const auto parsed = recurrence::parseRule(rule->value()))
      fields.rules.push_back({fromRule(*parsed, fields.start), *rule});

  const AlarmAnchor anchor = anchorOf(component, zones);
  for (const ical::Component& inner : component.components())
    if (inner.is("VALARM")) fields.alarms.push_back({readAlarm(inner, anchor, zones), inner});
  return fields;
}

std::optional<Date> readInstant(const ical::Component& component, std::string_view name,
                                const ZoneFinder& zones) {
  const ical::Line* line = component.find(name);
  const std::optional<ZonedTime> time = line == nullptr ? std::nullopt : readTime(*line, zones);
  if (!time) return std::nullopt;
  return instantOf(momentOf(*time), *foundation::TimeZone::defaultZone());
}

std::optional<ZonedTime> readEnd(const ical::Component& component, const ZoneFinder& zones) {
  const ical::Line* line = component.find(component.is("VTODO") ? "DUE" : "DTEND");
  if (line != nullptr) return readTime(*line, zones);
  const ical::Line* start = component.find("DTSTART");
  const auto duration = ical::parseDuration(component.value("DURATION").value_or(""));
  std::optional<ZonedTime> end = start == nullptr ? std::nullopt : readTime(*start, zones);
  if (!end || !duration) return std::nullopt;
  // Days follow the wall clock, the rest is exact.
  end->wall += std::chrono::days(duration->days);
  const auto exact = std::chrono::seconds(duration->seconds);
  const auto& zone = end->zone.zone;
  end->wall = zone && !end->isDate ? zone->wallTimeOf(zone->instantOf(end->wall) + exact) : end->wall + exact;
  return end;
}

AlarmAnchor anchorOf(const ical::Component& component, const ZoneFinder& zones) {
  const ical::Line* line = component.find("DTSTART");
  const std::optional<ZonedTime> start = line == nullptr ? std::nullopt : readTime(*line, zones);
  const std::optional<ZonedTime> end = readEnd(component, zones);
  if (!end) return {};
  if (component.is("VTODO"))
    return {.startShift = start ? secondsBetween(*end, *start) : 0, .endShift = 0, .countsFromEnd = true};
  return {.startShift = 0, .endShift = start ? secondsBetween(*start, *end) : 0, .countsFromEnd = false};
}

std::string addressIn(std::string_view calendarAddress) {
  if (!equalsIgnoringCase(calendarAddress.substr(0, kMailto.size()), kMailto))
    return std::string(calendarAddress);
  std::string_view encoded = calendarAddress.substr(kMailto.size());
  encoded = encoded.substr(0, encoded.find('?'));
  std::string address;
  for (std::size_t at = 0; at < encoded.size(); ++at) {
    const auto byte = encoded[at] == '%' ? ical::hexByte(encoded.substr(at + 1, 2)) : std::nullopt;
    address += byte.value_or(encoded[at]);
    if (byte) at += 2;
  }
  return address;
}

std::string calendarAddressOf(std::string_view address) {
  std::string encoded(kMailto);
  for (const char c : address) {
    if (c == '%')
      encoded += "%25";
    else if (c == '?')
      encoded += "%3F";
    else
      encoded += c;
  }
  return encoded;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::ranges::equal(a, b, {}, lower, lower);
}

}  // namespace ek::embedded
