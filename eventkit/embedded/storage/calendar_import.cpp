#include "eventkit/embedded/storage/calendar_import.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <cstddef>
#include <utility>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/ical/content_lines.h"
#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/storage/identifier.h"
#include "eventkit/embedded/storage/import_text.h"

namespace ek::embedded {
namespace {

constexpr std::size_t kProgressStep = 512;

struct KnownItem {
  RowId id = 0;
  std::optional<RowId> envelope;
};

std::optional<KnownItem> findKnown(Database& database, RowId calendar, const std::string& uid) {
  const auto select = database.statement("SELECT id, envelope FROM item WHERE uid = ? AND calendar = ?");
  select->bindNoCopy(1, uid);
  select->bind(2, calendar);
  if (!select->executeStep()) return std::nullopt;
  KnownItem item{.id = select->getColumn(0).getInt64()};
  if (!select->isColumnNull(1)) item.envelope = select->getColumn(1).getInt64();
  return item;
}

std::string tzidOf(std::string_view vtimezone) {
  const auto parsed = ical::parseComponents(vtimezone);
  return parsed.empty() ? std::string() : ical::decodeText(parsed.front().value("TZID").value_or(""));
}

std::string placesOf(const ReadItem& item) {
  std::string places;
  for (const ImportPlan::Source* source : item.sources) {
    if (!places.empty()) places += ',';
    // What came in another VCALENDAR of the file stays beside what it belongs to.
    const bool isHere = source->envelope == item.sources.front()->envelope;
    places += std::to_string(isHere ? source->place : item.sources.front()->place);
  }
  return places;
}

}  // namespace

CalendarImport::CalendarImport(Database& database, const ImportOptions& options, std::string stem,
                               ImportReport& report, SkipPart skip)
    : database_(database),
      options_(options),
      stem_(std::move(stem)),
      report_(report),
      skip_(std::move(skip)),
      calendars_(database),
      items_(database) {}

void CalendarImport::plan(std::string_view text) {
  if (!hasUniformLineBreaks(text)) {
    uniformText_ = withLineBreaks(text, "\r\n");
    text = uniformText_;
  }
  plan_ = planImport(text, options_.title, stem_, skip_);
}

void CalendarImport::store() {
  for (const ImportPlan::Envelope& envelope : plan_.envelopes) storeEnvelope(envelope);
  for (std::size_t i = 0; i < plan_.groups.size(); ++i) {
    if (options_.progress && i % kProgressStep == 0) options_.progress(i, plan_.groups.size());
    storeGroup(plan_.groups[i]);
  }
  if (options_.progress) options_.progress(plan_.groups.size(), plan_.groups.size());
  reportLonelyParts();
  removeUnused();
}

void CalendarImport::storeEnvelope(const ImportPlan::Envelope& planned) {
  Envelope& envelope = envelopes_.emplace_back();
  if (!planned.hasItems) return;
  const auto insert = database_.statement("INSERT INTO envelope (ordinal, title, header) VALUES (?, ?, ?)");
  insert->bind(1, static_cast<std::int64_t>(planned.ordinal));
  insert->bindNoCopy(2, plan_.titles[planned.title]);
  insert->bindNoCopy(3, planned.header);
  insert->exec();
  envelope.row = database_.lastInsertedRow();
  for (const ImportPlan::Part& part : planned.parts)
    storePart(envelope.row, part.place, part.name, part.text);
}

void CalendarImport::storePart(RowId envelope, std::uint32_t place, std::string_view name,
                               std::string_view text) {
  const auto insert = database_.statement("INSERT INTO envelope_part VALUES (?, ?, ?, ?, ?)");
  insert->bind(1, envelope);
  insert->bind(2, static_cast<std::int64_t>(place));
  insert->bind(3, std::string(name));
  insert->bind(4, std::string(text));
  if (ical::equalNames(name, "VTIMEZONE"))
    if (const std::string tzid = tzidOf(text); !tzid.empty()) insert->bind(5, items_.keepZone(tzid, text));
  insert->exec();
}

void CalendarImport::storeGroup(const ImportPlan::Group& group) {
  const auto leave = [&](const ImportPlan::Source& source, const std::string& reason) {
    leaveOut(source, reason);
  };
  const auto remark = [&](const ImportPlan::Source& source, const std::string& reason) {
    skip_(source.line, reason);
  };
  const ZoneFinder& zones = zonesFor(plan_.sources[group.first]);
  if (const auto item = readItem(plan_, group, zones, leave, remark)) storeItem(group, *item);
}

void CalendarImport::storeItem(const ImportPlan::Group& group, const ReadItem& item) {
  const ImportPlan::Source& source = *item.sources.front();
  const RowId calendar = calendarFor(source);
  const ItemPlaces places{.envelope = envelopes_[source.envelope].row, .places = placesOf(item)};
  std::optional<KnownItem> known;
  if (!target(source).isNew || item.index.uid != group.uid)
    known = findKnown(database_, calendar, item.index.uid);
  if (known) {
    items_.replaceImported(known->id, calendar, item.text, item.index, places);
    if (known->envelope) leftEnvelopes_.insert(*known->envelope);
  } else {
    items_.insert(calendar, nextIdentifier(), item.text, item.index, &places);
  }
  ++(source.kind == EntityType::event ? report_.events : report_.reminders);
}

const std::string& CalendarImport::nextIdentifier() {
  if (identifiers_.empty()) identifiers_ = newIdentifiers(plan_.groups.size());
  return identifiers_[usedIdentifiers_++];
}

// It is kept in its place, so that an export gives the whole file back.
void CalendarImport::leaveOut(const ImportPlan::Source& source, const std::string& reason) {
  skip_(source.line, reason);
  storePart(envelopes_[source.envelope].row, source.place,
            source.kind == EntityType::event ? "VEVENT" : "VTODO", source.text);
}

CalendarImport::Target& CalendarImport::target(const ImportPlan::Source& source) {
  const std::uint32_t title = plan_.envelopes[source.envelope].title;
  const auto [entry, isFirst] = targets_.try_emplace(2 * title + static_cast<std::uint32_t>(source.kind));
  if (isFirst) entry->second.calendar = calendars_.findByTitle(plan_.titles[title], source.kind);
  return entry->second;
}

RowId CalendarImport::calendarFor(const ImportPlan::Source& source) {
  const ImportPlan::Envelope& planned = plan_.envelopes[source.envelope];
  Target& wanted = target(source);
  if (!wanted.calendar) {
    CalendarRow row{.kind = source.kind, .title = plan_.titles[planned.title], .color = planned.color};
    if (options_.isSubscribed) row.type = CalendarType::subscription;
    row.isSubscribed = options_.isSubscribed;
    row.allowsModification = !options_.isReadOnly && !options_.isSubscribed;
    calendars_.insert(row);
    wanted = {.calendar = std::move(row), .isNew = true};
  }
  Envelope& envelope = envelopes_[source.envelope];
  bool& isLinked = envelope.isLinked[static_cast<std::size_t>(source.kind)];
  if (!std::exchange(isLinked, true)) {
    const auto link = database_.statement("INSERT INTO calendar_envelope VALUES (?, ?)");
    link->bind(1, wanted.calendar->id);
    link->bind(2, envelope.row);
    link->exec();
  }
  return wanted.calendar->id;
}

const ZoneFinder& CalendarImport::zonesFor(const ImportPlan::Source& source) {
  Envelope& envelope = envelopes_[source.envelope];
  ZoneFinder& zones = envelope.zones[static_cast<std::size_t>(source.kind)];
  if (!zones) {
    const Target& wanted = target(source);
    zones = items_.zoneFinder(wanted.calendar ? wanted.calendar->id : 0, envelope.row);
  }
  return zones;
}

// Time zones, journals and the like are kept beside events and to-dos; alone they have no calendar.
void CalendarImport::reportLonelyParts() {
  for (std::size_t i = 0; i < envelopes_.size(); ++i) {
    if (envelopes_[i].isLinked[0] || envelopes_[i].isLinked[1]) continue;
    for (const ImportPlan::Part& part : plan_.envelopes[i].parts)
      if (part.isComponent)
        skip_(part.line, std::string(part.name) + " without an event or a to-do beside it");
  }
}

// VCALENDARs without an item: of this file, and of earlier ones that this one took the place of.
void CalendarImport::removeUnused() {
  for (const Envelope& envelope : envelopes_) {
    if (envelope.row == 0 || envelope.isLinked[0] || envelope.isLinked[1]) continue;
    const auto remove = database_.statement("DELETE FROM envelope WHERE id = ?");
    remove->bind(1, envelope.row);
    remove->exec();
  }
  for (const RowId left : leftEnvelopes_) {
    const auto remove = database_.statement(
        "DELETE FROM envelope WHERE id = ?1 AND NOT EXISTS (SELECT 1 FROM item WHERE envelope = ?1) AND NOT "
        "EXISTS "
        "(SELECT 1 FROM envelope_part AS part WHERE part.envelope = ?1 AND part.zone IS NULL AND NOT EXISTS "
        "(SELECT 1 FROM envelope_part AS newer WHERE newer.envelope > ?1 AND newer.text = part.text))");
    remove->bind(1, left);
    remove->exec();
  }
}

}  // namespace ek::embedded
