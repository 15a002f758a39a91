#include "plugin/backend/attribute_tables.h"
#include "plugin/backend/ical_ek_functions.h"

namespace zuno {

namespace {

// Scripts compare against these words, misspellings included.
constexpr std::string_view kStatuses[] = {"Unknown",  "Pendind",   "Accepted",  "Declined",
                                          "Tenative", "Delegated", "Completed", "In Process"};

Value statusWord(ek::ParticipantStatus status) {
  Value word = wordFor(kStatuses, status);
  return word.index() == 0 ? Value("Unknown") : word;
}

template <class Enumeration>
Value numberText(Enumeration value) {
  return std::to_string(static_cast<int>(value));
}

using ParticipantReader = Value (*)(const ek::Participant&, ek::AddressBook&);

Value address(const ek::Participant& participant, ek::AddressBook& book) {
  return valueOf(book.addressOf(participant));
}
Value commonName(const ek::Participant& participant, ek::AddressBook&) { return valueOf(participant.name); }

constexpr KeywordRow<ParticipantReader> kReaders[] = {
    {"address", address},
    {"commonname", commonName},
    {"status", [](const ek::Participant& it, ek::AddressBook&) { return statusWord(it.status); }},
};

constexpr KeywordRow<ParticipantReader> kNumberReaders[] = {
    {"address", address},
    {"commonname", commonName},
    {"status", [](const ek::Participant& it, ek::AddressBook&) { return numberText(it.status); }},
    {"role", [](const ek::Participant& it, ek::AddressBook&) { return numberText(it.role); }},
    {"type", [](const ek::Participant& it, ek::AddressBook&) { return numberText(it.type); }},
};

}  // namespace

Value iCalEKFunctions::getParticipantAttribute(const Keyword& keyword, std::int32_t /*at*/,
                                               TextArgument /*uid*/) {
  if (!m_ekParticipant) return noValue(kErrGetNeedsAttendee);
  if (keyword.isNone()) return noValue(kErrPropertyMissing);
  const ParticipantReader* read = find(kReaders, keyword);
  return read ? (*read)(*m_ekParticipant, *m_AddressBook) : noValue(kErrPropertyUnknown);
}

// The same with bare numbers for status, role and type.
Value iCalEKFunctions::getEventParticipantAttribute(const Keyword& keyword, std::int32_t /*atIndex*/) {
  if (!m_ekParticipant) return noValue(kErrGetNeedsAttendee);
  if (keyword.isNone()) return noValue(kErrPropertyMissing);
  const ParticipantReader* read = find(kNumberReaders, keyword);
  return read ? (*read)(*m_ekParticipant, *m_AddressBook) : noValue(kErrPropertyUnknown);
}

}  // namespace zuno
