#include "eventkit/embedded/storage/export_plan.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <utility>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/ical/content_lines.h"
#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/ical/zones.h"
#include "eventkit/embedded/storage/column_text.h"
#include "eventkit/embedded/storage/import_text.h"

namespace ek::embedded {
namespace {

// By TZID: the text of its VTIMEZONE, without regard to the kind of line breaks.
using Zones = std::map<std::string, std::string>;

struct Part {
  int place = 0;
  std::string text;
  bool isComponent = false;
  std::string tzid;  // of a VTIMEZONE
};

struct ImportedEnvelope {
  RowId row = 0;
  std::int64_t ordinal = 0;
  std::string title;
  std::string header;
  std::vector<Part> parts;
};

// A volume that is being put together.
struct Draft {
  ExportVolume volume;
  std::int64_t ordinal = 0;
  Zones zones;
  std::set<std::string> components;  // texts of the other parts
};

std::string plain(std::string_view text) { return withLineBreaks(text, "\n"); }

ical::Component calendarOf(const std::string& header) {
  return ical::parseComponents("BEGIN:VCALENDAR\r\n" + header + "END:VCALENDAR\r\n").front();
}

std::string linesOf(const ical::Component& calendar) {
  std::string lines;
  for (const ical::Line& line : calendar.lines()) lines += line.raw();
  return lines;
}

std::string madeHeader(const std::string& title) {
  ical::Component calendar("VCALENDAR");
  calendar.add(ical::Line::make("VERSION", "2.0"));
  calendar.add(ical::Line::make("PRODID", "-//Zuno//Zuno 3//EN"));
  calendar.add(ical::Line::make("X-WR-CALNAME", ical::encodeText(title)));
  return linesOf(calendar);
}

// As it was imported, except that a calendar's new title counts.
std::string headerOf(const ImportedEnvelope& envelope, const std::string& title) {
  if (envelope.header.empty()) return madeHeader(title);
  if (envelope.title == title) return envelope.header;
  ical::Component calendar = calendarOf(envelope.header);
  calendar.set(ical::Line::make("X-WR-CALNAME", ical::encodeText(title)));
  return linesOf(calendar);
}

// What a further file says of its calendar and the first one does not. A METHOD would change the meaning of
// everything.
void mergeHeader(ExportVolume& volume, const ImportedEnvelope& envelope) {
  ical::Component calendar = calendarOf(volume.header);
  const ical::Component further = calendarOf(envelope.header);
  for (const ical::Line& line : further.lines())
    if (!line.is("METHOD") && calendar.find(line.name()) == nullptr) calendar.add(line);
  volume.header = linesOf(calendar);
}

std::vector<Part> partsOf(Database& database, RowId envelope) {
  const auto select = database.statement(
      "SELECT position, part.text, zone.tzid FROM envelope_part AS part LEFT JOIN zone ON zone.id = "
      "part.zone "
      "WHERE envelope = ? ORDER BY position");
  select->bind(1, envelope);
  std::vector<Part> parts;
  while (select->executeStep()) {
    Part part{.place = select->getColumn(0).getInt(), .text = plain(select->getColumn(1).getString())};
    part.isComponent = ical::equalNames(std::string_view(part.text).substr(0, 6), "BEGIN:");
    part.tzid = select->getColumn(2).getString();
    parts.push_back(std::move(part));
  }
  return parts;
}

std::vector<ImportedEnvelope> envelopesOf(Database& database, const std::vector<RowId>& calendars) {
  std::map<RowId, ImportedEnvelope> byRow;
  for (const RowId calendar : calendars) {
    const auto select = database.statement(
        "SELECT id, ordinal, title, header FROM calendar_envelope JOIN envelope ON envelope.id = envelope "
        "WHERE calendar = ?");
    select->bind(1, calendar);
    while (select->executeStep()) {
      ImportedEnvelope& envelope = byRow[select->getColumn(0).getInt64()];
      envelope.row = select->getColumn(0).getInt64();
      envelope.ordinal = select->getColumn(1).getInt64();
      envelope.title = select->getColumn(2).getString();
      envelope.header = select->getColumn(3).getString();
    }
  }
  std::vector<ImportedEnvelope> envelopes;
  for (auto& [row, envelope] : byRow) {
    envelope.parts = partsOf(database, row);
    envelopes.push_back(std::move(envelope));
  }
  return envelopes;
}

bool clashes(const Zones& present, const std::string& tzid, const std::string& text) {
  const auto found = present.find(tzid);
  return found != present.end() && found->second != text;
}

bool fits(const Draft& draft, const ImportedEnvelope& envelope) {
  return std::ranges::none_of(envelope.parts, [&](const Part& part) {
    return !part.tzid.empty() && clashes(draft.zones, part.tzid, part.text);
  });
}

void add(Draft& draft, const ImportedEnvelope& envelope, const std::string& title) {
  const bool isFirst = draft.volume.envelopes.empty();
  if (isFirst)
    draft.volume.header = headerOf(envelope, title);
  else
    mergeHeader(draft.volume, envelope);
  ExportVolume::Envelope& placed = draft.volume.envelopes.emplace_back();
  placed.row = envelope.row;
  for (const Part& part : envelope.parts)
    if (!isFirst && (!part.isComponent || draft.components.contains(part.text)))
      placed.leftOut.insert(part.place);
  for (const Part& part : envelope.parts) {
    draft.components.insert(part.text);
    if (!part.tzid.empty()) draft.zones.emplace(part.tzid, part.text);
  }
}

// The n-th VCALENDARs of all files go together, as far as their zones allow.
void place(std::vector<Draft>& drafts, const ImportedEnvelope& envelope, const std::string& title) {
  const auto isPlace = [&](const Draft& draft) {
    return draft.ordinal == envelope.ordinal && fits(draft, envelope);
  };
  auto draft = std::ranges::find_if(drafts, isPlace);
  if (draft == drafts.end()) {
    drafts.push_back({.ordinal = envelope.ordinal});
    draft = drafts.end() - 1;
  }
  add(*draft, envelope, title);
}

// What items made here mean by their TZIDs. Many items name few zones.
class ZoneTexts {
 public:
  ZoneTexts(Database& database, RowId calendar) : database_(database), calendar_(calendar) {}

  Zones of(std::string_view item) {
    Zones zones;
    for (const std::string& tzid : ical::timeZonesIn(item))
      if (const std::string& text = textOfZone(tzid); !text.empty()) zones.emplace(tzid, text);
    return zones;
  }

 private:
  const std::string& textOfZone(const std::string& tzid) {
    const auto [known, isNew] = texts_.try_emplace(tzid);
    if (isNew) known->second = plain(find(tzid));
    return known->second;
  }

  std::string find(const std::string& tzid) {
    const auto given = database_.statement(
        "SELECT text FROM calendar_zone JOIN zone ON zone.id = zone WHERE calendar = ? AND tzid = ? "
        "ORDER BY zone.id DESC LIMIT 1");
    given->bind(1, calendar_);
    given->bind(2, ical::decodeText(tzid));
    if (given->executeStep()) return given->getColumn(0).getString();
    const auto known = ical::zoneNamed(tzid);
    return known ? ical::vtimezoneFor(*known, tzid).text() : std::string();
  }

  Database& database_;
  RowId calendar_;
  Zones texts_;
};

// Of a name that the zone database has, any VTIMEZONE will do.
bool fits(const Draft& draft, const Zones& needed) {
  return std::ranges::none_of(needed, [&](const auto& zone) {
    return clashes(draft.zones, zone.first, zone.second) && !ical::zoneNamed(zone.first);
  });
}

void addZones(Draft& draft, const Zones& needed) {
  for (const auto& [tzid, text] : needed)
    if (draft.zones.emplace(tzid, text).second) draft.volume.zones.push_back(text);
}

void placeItem(std::vector<Draft>& drafts, RowId item, const Zones& needed, const std::string& title) {
  auto draft = std::ranges::find_if(drafts, [&](const Draft& candidate) { return fits(candidate, needed); });
  if (draft == drafts.end()) {
    drafts.push_back({.volume = {.header = madeHeader(title)}});
    draft = drafts.end() - 1;
  }
  draft->volume.items.push_back(item);
  addZones(*draft, needed);
}

void placeItemsMadeHere(Database& database, std::vector<Draft>& drafts, const std::vector<RowId>& calendars,
                        const std::string& title) {
  for (const RowId calendar : calendars) {
    ZoneTexts zones(database, calendar);
    const auto select =
        database.statement("SELECT id, text FROM item WHERE calendar = ? AND envelope IS NULL ORDER BY id");
    select->bind(1, calendar);
    while (select->executeStep())
      placeItem(drafts, select->getColumn(0).getInt64(), zones.of(textOf(select->getColumn(1))), title);
  }
}

// Zones that imported items did not bring along: somebody edited one.
void addZonesOfEditedItems(Database& database, std::vector<Draft>& drafts,
                           const std::vector<RowId>& calendars) {
  for (const RowId calendar : calendars) {
    const auto select = database.statement(
        "SELECT DISTINCT envelope, tzid, zone.text FROM calendar_zone JOIN zone ON zone.id = zone "
        "JOIN item ON item.calendar = calendar_zone.calendar AND envelope IS NOT NULL "
        "WHERE calendar_zone.calendar = ? AND instr(item.text, tzid) > 0");
    select->bind(1, calendar);
    while (select->executeStep()) {
      const RowId envelope = select->getColumn(0).getInt64();
      const auto holds = [&](const Draft& draft) {
        return std::ranges::find(draft.volume.envelopes, envelope, &ExportVolume::Envelope::row) !=
               draft.volume.envelopes.end();
      };
      if (const auto draft = std::ranges::find_if(drafts, holds); draft != drafts.end())
        addZones(*draft, {{select->getColumn(1).getString(), plain(select->getColumn(2).getString())}});
    }
  }
}

}  // namespace

std::vector<ExportVolume> planExport(Database& database, const std::string& title,
                                     const std::vector<RowId>& calendars) {
  std::vector<Draft> drafts;
  for (const ImportedEnvelope& envelope : envelopesOf(database, calendars)) place(drafts, envelope, title);
  if (drafts.empty()) drafts.push_back({.volume = {.header = madeHeader(title)}});
  addZonesOfEditedItems(database, drafts, calendars);
  placeItemsMadeHere(database, drafts, calendars, title);
  std::vector<ExportVolume> volumes;
  volumes.reserve(drafts.size());
  for (Draft& draft : drafts) volumes.push_back(std::move(draft.volume));
  return volumes;
}

}  // namespace ek::embedded
