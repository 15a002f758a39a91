// The rows of items: one row holds one whole resource, a series with its overridden occurrences, as
// iCalendar text; index rows beside it follow from the text. All calls belong into a transaction.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "eventkit/embedded/storage/database.h"
#include "eventkit/embedded/storage/identifier.h"
#include "eventkit/embedded/storage/item_index.h"
#include "eventkit/types.h"

namespace ek::embedded {

struct ItemRow {
  RowId id = 0;
  RowId calendar = 0;
  EntityType kind = EntityType::event;
  std::string identifier;
  std::string uid;
  std::int64_t change = 0;
  Date stored;  // when it was made or last imported: stands in for dates that its text lacks
  std::optional<RowId> envelope;  // the imported VCALENDAR that it stands in
  std::string text;               // the components, one after the other
};

// Where an imported item stands: the places of its components in the VCALENDAR, as "3" or "3,17".
struct ItemPlaces {
  RowId envelope = 0;
  std::string places;
};

class ItemTable {
 public:
  explicit ItemTable(Database& database) : database_(database) {}

  std::optional<ItemRow> find(RowId id);
  std::optional<ItemRow> findByIdentifier(std::string_view identifier);
  // The oldest item of that UID.
  std::optional<ItemRow> findByUid(std::string_view uid);
  std::optional<ItemRow> findInCalendar(RowId calendar, std::string_view uid);

  // A new row with its index rows; the identifier is a new one when `identifier` is empty. The UID is the
  // index's, which must not be empty.
  RowId insert(RowId calendar, std::string_view identifier, std::string_view text, const ItemIndex& index,
               const ItemPlaces* places = nullptr);
  // Another text (and calendar) for a row that stays the same item. In another calendar it leaves its
  // envelope and takes the meaning of its time zones along.
  void replace(RowId id, RowId calendar, std::string_view text, const ItemIndex& index);
  // The same for an item that is imported again.
  void replaceImported(RowId id, RowId calendar, std::string_view text, const ItemIndex& index,
                       const ItemPlaces& places);
  // Leaves a mark behind (see removed_items.h).
  void erase(RowId id);

  // What an item's TZIDs mean: known names by themselves, else the VTIMEZONE of the VCALENDAR that it came
  // in, else one that its calendar knows. The finder must not outlive this. Answers are kept until something
  // changes.
  ZoneFinder zoneFinder(RowId calendar, std::optional<RowId> envelope = std::nullopt);
  ZoneFinder zoneFinder(const ItemRow& row) { return zoneFinder(row.calendar, row.envelope); }
  // Null for an empty key and for one that is not known (any more).
  std::shared_ptr<const foundation::TimeZone> zoneForKey(std::string_view key);

  // Whether the calendar itself has a VTIMEZONE of that TZID, whatever came with files.
  bool hasTimeZone(RowId calendar, std::string_view tzid);
  // Makes sure that items made here can name this zone: a calendar that has no VTIMEZONE of that TZID yet
  // gets this one, which exports then bring along.
  void ensureTimeZone(RowId calendar, std::string_view tzid, std::string_view vtimezone);
  // Before a part of the item becomes an item of that calendar: its TZIDs will mean the same there.
  void shareZones(RowId id, RowId calendar);
  // The row of a VTIMEZONE's text, made when there is none.
  RowId keepZone(std::string_view tzid, std::string_view vtimezone);

 private:
  using Zone = std::shared_ptr<const foundation::TimeZone>;

  void update(RowId id, RowId calendar, std::string_view text, const ItemIndex& index);
  void leaveEnvelope(RowId id);
  void linkZone(RowId calendar, RowId zone);
  const KeyedZone& findZone(RowId calendar, std::optional<RowId> envelope, std::string_view tzid);
  KeyedZone lookUpZone(RowId calendar, std::optional<RowId> envelope, std::string_view tzid);
  std::optional<RowId> zoneRow(RowId calendar, std::optional<RowId> envelope, std::string_view tzid);
  std::optional<RowId> ownZone(RowId calendar, std::string_view tzid);
  std::optional<RowId> lastZone(const char* sql, std::string_view tzid, RowId owner);
  Zone loadZone(RowId zone);
  void forgetRolledBackZones();

  Database& database_;
  std::map<RowId, Zone> zones_;
  // What TZIDs mean, by calendar and envelope (0 for none).
  std::map<std::pair<RowId, RowId>, std::map<std::string, KeyedZone, std::less<>>> found_;
  Database::Version foundAt_;
  std::uint64_t zonesSince_ = 0;  // Database::rollbacks() when these were last valid
};

}  // namespace ek::embedded
