#include "eventkit/embedded/storage/item_table.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <vector>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/ical/zones.h"
#include "eventkit/embedded/storage/index_rows.h"
#include "eventkit/embedded/storage/removed_items.h"

namespace ek::embedded {
namespace {

constexpr std::string_view kZonePrefix = "vtimezone:";
constexpr std::size_t kMostZoneOwners = 4096;

#define ZUNO_ITEM_COLUMNS \
  "SELECT id, calendar, kind, identifier, uid, change, stored, envelope, text FROM item "

std::optional<ItemRow> firstRow(SQLite::Statement& select) {
  if (!select.executeStep()) return std::nullopt;
  ItemRow row;
  row.id = select.getColumn(0).getInt64();
  row.calendar = select.getColumn(1).getInt64();
  row.kind = static_cast<EntityType>(select.getColumn(2).getInt());
  row.identifier = select.getColumn(3).getString();
  row.uid = select.getColumn(4).getString();
  row.change = select.getColumn(5).getInt64();
  row.stored = Date(std::chrono::seconds(select.getColumn(6).getInt64()));
  if (!select.isColumnNull(7)) row.envelope = select.getColumn(7).getInt64();
  row.text = select.getColumn(8).getString();
  return row;
}

// Known names mean themselves; what has no name in the zone database ("GMT+01:00") is found again by the
// TZID that named it.
KeyedZone knownZone(std::string_view tzid) {
  auto zone = ical::zoneNamed(tzid);
  if (!zone) return {};
  std::string key = zone->name().empty() ? std::string(tzid) : zone->name();
  return {.zone = std::move(zone), .key = std::move(key)};
}

// A reminder whose text does not say when it was made was made when it was first imported.
void keepCreation(const IndexRow& before, IndexRow& row) {
  const auto* known = std::get_if<ReminderRow>(&before);
  auto* reminder = std::get_if<ReminderRow>(&row);
  if (known != nullptr && reminder != nullptr && !reminder->created) reminder->created = known->created;
}

}  // namespace

std::optional<ItemRow> ItemTable::find(RowId id) {
  const auto select = database_.statement(ZUNO_ITEM_COLUMNS "WHERE id = ?");
  select->bind(1, id);
  return firstRow(*select);
}

std::optional<ItemRow> ItemTable::findByIdentifier(std::string_view identifier) {
  const auto select = database_.statement(ZUNO_ITEM_COLUMNS "WHERE identifier = ?");
  select->bind(1, std::string(identifier));
  return firstRow(*select);
}

std::optional<ItemRow> ItemTable::findByUid(std::string_view uid) {
  const auto select =
      database_.statement(ZUNO_ITEM_COLUMNS "WHERE id = (SELECT min(id) FROM item WHERE uid = ?)");
  select->bind(1, std::string(uid));
  return firstRow(*select);
}

std::optional<ItemRow> ItemTable::findInCalendar(RowId calendar, std::string_view uid) {
  const auto select = database_.statement(ZUNO_ITEM_COLUMNS "WHERE uid = ? AND calendar = ?");
  select->bind(1, std::string(uid));
  select->bind(2, calendar);
  return firstRow(*select);
}

RowId ItemTable::insert(RowId calendar, std::string_view identifier, std::string_view text,
                        const ItemIndex& index, const ItemPlaces* places) {
  const auto insert = database_.statement(
      "INSERT INTO item (calendar, kind, identifier, uid, change, stored, envelope, places, text) "
      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  insert->bind(1, calendar);
  insert->bind(2, static_cast<int>(index.kind));
  insert->bind(3, identifier.empty() ? newIdentifier() : std::string(identifier));
  insert->bindNoCopy(4, index.uid);
  insert->bind(5, database_.nextChange());
  insert->bind(6, foundation::now().time_since_epoch().count());
  if (places != nullptr) {
    insert->bind(7, places->envelope);
    insert->bindNoCopy(8, places->places);
  }
  const std::string kept(text);
  insert->bindNoCopy(9, kept);
  insert->exec();
  const RowId id = database_.lastInsertedRow();
  insertIndexRow(database_, id, {.calendar = calendar, .row = indexRowOf(index)});
  return id;
}

void ItemTable::replace(RowId id, RowId calendar, std::string_view text, const ItemIndex& index) {
  const auto select = database_.statement("SELECT calendar FROM item WHERE id = ?");
  select->bind(1, id);
  if (!select->executeStep()) return;
  if (select->getColumn(0).getInt64() != calendar) {
    shareZones(id, calendar);
    leaveEnvelope(id);
  }
  update(id, calendar, text, index);
}

void ItemTable::replaceImported(RowId id, RowId calendar, std::string_view text, const ItemIndex& index,
                                const ItemPlaces& places) {
  update(id, calendar, text, index);
  const auto move = database_.statement("UPDATE item SET envelope = ?, places = ?, stored = ? WHERE id = ?");
  move->bind(1, places.envelope);
  move->bindNoCopy(2, places.places);
  move->bind(3, foundation::now().time_since_epoch().count());
  move->bind(4, id);
  move->exec();
}

// What stays as it is is not written again, so that a save of another text touches few pages.
void ItemTable::update(RowId id, RowId calendar, std::string_view text, const ItemIndex& index) {
  const auto update = database_.statement("UPDATE item SET change = ?, text = ? WHERE id = ?");
  update->bind(1, database_.nextChange());
  const std::string kept(text);
  update->bindNoCopy(2, kept);
  update->bind(3, id);
  update->exec();
  const auto place = database_.statement(
      "UPDATE item SET calendar = ?1, kind = ?2, uid = ?3 WHERE id = ?4 AND (calendar <> ?1 OR kind <> ?2 OR "
      "uid <> ?3)");
  place->bind(1, calendar);
  place->bind(2, static_cast<int>(index.kind));
  place->bindNoCopy(3, index.uid);
  place->bind(4, id);
  place->exec();

  const std::vector<StoredIndexRow> before = storedIndexRows(database_, id);
  StoredIndexRow row{.calendar = calendar, .row = indexRowOf(index)};
  if (before.size() == 1) keepCreation(before.front().row, row.row);
  if (before.size() == 1 && before.front() == row) return;
  eraseIndexRows(database_, id);
  insertIndexRow(database_, id, row);
}

void ItemTable::erase(RowId id) {
  markRemoved(database_, id);
  eraseIndexRows(database_, id);
  const auto remove = database_.statement("DELETE FROM item WHERE id = ?");
  remove->bind(1, id);
  remove->exec();
}

void ItemTable::shareZones(RowId id, RowId calendar) {
  const std::optional<ItemRow> row = find(id);
  if (!row) return;
  for (const std::string& tzid : ical::timeZonesIn(row->text))
    if (const auto zone = zoneRow(row->calendar, row->envelope, tzid)) linkZone(calendar, *zone);
}

void ItemTable::leaveEnvelope(RowId id) {
  const auto leave = database_.statement("UPDATE item SET envelope = NULL, places = NULL WHERE id = ?");
  leave->bind(1, id);
  leave->exec();
}

ZoneFinder ItemTable::zoneFinder(RowId calendar, std::optional<RowId> envelope) {
  return [this, calendar, envelope](std::string_view tzid) { return findZone(calendar, envelope, tzid); };
}

const KeyedZone& ItemTable::findZone(RowId calendar, std::optional<RowId> envelope, std::string_view tzid) {
  forgetRolledBackZones();
  const Database::Version version = database_.version();
  if (foundAt_ != version || found_.size() >= kMostZoneOwners) found_.clear();
  foundAt_ = version;
  auto& known = found_[{calendar, envelope.value_or(0)}];
  if (const auto found = known.find(tzid); found != known.end()) return found->second;
  return known.emplace(tzid, lookUpZone(calendar, envelope, tzid)).first->second;
}

KeyedZone ItemTable::lookUpZone(RowId calendar, std::optional<RowId> envelope, std::string_view tzid) {
  if (KeyedZone known = knownZone(tzid); known.zone) return known;
  const auto row = zoneRow(calendar, envelope, tzid);
  Zone zone = row ? loadZone(*row) : nullptr;
  if (!zone) return {};
  return {.zone = std::move(zone), .key = std::string(kZonePrefix) + std::to_string(*row)};
}

std::shared_ptr<const foundation::TimeZone> ItemTable::zoneForKey(std::string_view key) {
  if (key.empty()) return nullptr;
  if (!key.starts_with(kZonePrefix)) return ical::zoneNamed(key);
  const std::string_view number = key.substr(kZonePrefix.size());
  RowId row = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), row);
  if (error != std::errc() || end != number.data() + number.size()) return nullptr;
  return loadZone(row);
}

// From the nearest to the furthest. The last of two equal TZIDs is what an import of a newer file meant.
std::optional<RowId> ItemTable::zoneRow(RowId calendar, std::optional<RowId> envelope,
                                        std::string_view tzid) {
  std::optional<RowId> row;
  if (envelope)
    row = lastZone(
        "SELECT max(id) FROM zone WHERE tzid = ? AND EXISTS "
        "(SELECT 1 FROM envelope_part WHERE envelope = ? AND zone = zone.id)",
        tzid, *envelope);
  if (!row) row = ownZone(calendar, tzid);
  if (!row && !envelope)
    row = lastZone(
        "SELECT max(id) FROM zone WHERE tzid = ? AND EXISTS "
        "(SELECT 1 FROM calendar_envelope JOIN envelope_part USING (envelope) WHERE calendar = ? AND zone = "
        "zone.id)",
        tzid, calendar);
  return row;
}

std::optional<RowId> ItemTable::ownZone(RowId calendar, std::string_view tzid) {
  return lastZone(
      "SELECT max(id) FROM zone WHERE tzid = ? AND EXISTS "
      "(SELECT 1 FROM calendar_zone WHERE calendar = ? AND zone = zone.id)",
      tzid, calendar);
}

// `sql` asks by a TZID and a row.
std::optional<RowId> ItemTable::lastZone(const char* sql, std::string_view tzid, RowId owner) {
  // Some programs escape a parameter as they do the VTIMEZONE's TZID, which is a TEXT.
  const std::string name = ical::decodeText(tzid);
  const auto select = database_.statement(sql);
  select->bindNoCopy(1, name);
  select->bind(2, owner);
  if (!select->executeStep() || select->isColumnNull(0)) return std::nullopt;
  return select->getColumn(0).getInt64();
}

ItemTable::Zone ItemTable::loadZone(RowId zone) {
  forgetRolledBackZones();
  if (const auto known = zones_.find(zone); known != zones_.end()) return known->second;
  const auto select = database_.statement("SELECT text FROM zone WHERE id = ?");
  select->bind(1, zone);
  if (!select->executeStep()) return nullptr;
  const std::vector<ical::Component> parsed = ical::parseComponents(select->getColumn(0).getString());
  return zones_[zone] = parsed.empty() ? nullptr : ical::zoneOf(parsed.front());
}

void ItemTable::forgetRolledBackZones() {
  if (zonesSince_ == database_.rollbacks()) return;
  zonesSince_ = database_.rollbacks();
  zones_.clear();
  found_.clear();
}

bool ItemTable::hasTimeZone(RowId calendar, std::string_view tzid) {
  return ownZone(calendar, tzid).has_value();
}

// What the calendar means by the TZID now is written down, so that no later import gives it another meaning.
void ItemTable::ensureTimeZone(RowId calendar, std::string_view tzid, std::string_view vtimezone) {
  const auto known = zoneRow(calendar, std::nullopt, tzid);
  linkZone(calendar, known ? *known : keepZone(tzid, vtimezone));
}

void ItemTable::linkZone(RowId calendar, RowId zone) {
  const auto link = database_.statement("INSERT OR IGNORE INTO calendar_zone VALUES (?, ?)");
  link->bind(1, calendar);
  link->bind(2, zone);
  link->exec();
  found_.clear();
}

RowId ItemTable::keepZone(std::string_view tzid, std::string_view vtimezone) {
  found_.clear();
  const std::string name(tzid);
  const std::string text(vtimezone);
  const auto insert = database_.statement("INSERT OR IGNORE INTO zone (tzid, text) VALUES (?, ?)");
  insert->bindNoCopy(1, name);
  insert->bindNoCopy(2, text);
  insert->exec();
  const auto select = database_.statement("SELECT id FROM zone WHERE tzid = ? AND text = ?");
  select->bindNoCopy(1, name);
  select->bindNoCopy(2, text);
  select->executeStep();
  return select->getColumn(0).getInt64();
}

}  // namespace ek::embedded
