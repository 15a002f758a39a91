#include "eventkit/embedded/storage/export_writer.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>
#include <tuple>

#include "eventkit/embedded/ical/stream.h"
#include "eventkit/embedded/storage/column_text.h"
#include "eventkit/embedded/storage/import_text.h"

namespace ek::embedded {
namespace {

constexpr std::string_view kReturnAndFeed = "\r\n";

// What stands at one place of an imported VCALENDAR: a part, or a component of an item.
struct Slot {
  int place = 0;
  RowId item = 0;  // 0: the part of that place
  std::size_t component = 0;
  bool isLast = true;  // with what the item has beyond its places
};

bool hasLineBreaks(std::string_view text, std::string_view wanted) {
  if (wanted != kReturnAndFeed) return text.find('\r') == std::string_view::npos;
  for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1))
    if (at == 0 || text[at - 1] != '\r') return false;
  return true;
}

std::string_view firstLineBreakOf(std::string_view header) {
  const std::size_t at = header.find('\n');
  const bool isBare = at != std::string_view::npos && (at == 0 || header[at - 1] != '\r');
  return isBare ? "\n" : kReturnAndFeed;
}

std::vector<int> placesFrom(std::string_view text) {
  std::vector<int> places;
  const char* end = text.data() + text.size();
  for (const char* at = text.data(); at < end;) {
    int place = 0;
    at = std::from_chars(at, end, place).ptr + 1;
    places.push_back(place);
  }
  return places;
}

std::vector<std::string_view> componentsOf(std::string_view text) {
  std::vector<std::string_view> components;
  ical::walkStream(text, {.piece = [&](const ical::Piece& piece) { components.push_back(piece.text); }});
  return components;
}

class VolumeWriter {
 public:
  VolumeWriter(Database& database, const std::vector<RowId>& calendars, const ExportVolume& volume,
               const std::function<void(std::string_view)>& sink)
      : database_(database),
        calendars_(calendars),
        volume_(volume),
        sink_(sink),
        lineBreak_(firstLineBreakOf(volume.header)) {}

  void write() {
    put("BEGIN:VCALENDAR\n");
    put(volume_.header);
    for (const ExportVolume::Envelope& envelope : volume_.envelopes)
      for (const Slot& slot : slotsOf(envelope)) putSlot(envelope.row, slot);
    for (const std::string& zone : volume_.zones) put(zone);
    for (const RowId item : volume_.items) putItem(item);
    put("END:VCALENDAR\n");
  }

 private:
  void put(std::string_view text) {
    if (text.empty()) return;
    if (hasLineBreaks(text, lineBreak_))
      sink_(text);
    else
      sink_(withLineBreaks(text, lineBreak_));
    if (!text.ends_with('\n')) sink_(lineBreak_);
  }

  std::vector<Slot> slotsOf(const ExportVolume::Envelope& envelope) {
    std::vector<Slot> slots;
    const auto parts = database_.statement("SELECT position FROM envelope_part WHERE envelope = ?");
    parts->bind(1, envelope.row);
    while (parts->executeStep())
      if (const int place = parts->getColumn(0).getInt(); !envelope.leftOut.contains(place))
        slots.push_back({.place = place});
    const auto items = database_.statement("SELECT id, places, calendar FROM item WHERE envelope = ?");
    items->bind(1, envelope.row);
    while (items->executeStep())
      if (std::ranges::find(calendars_, items->getColumn(2).getInt64()) != calendars_.end())
        addSlots(items->getColumn(0).getInt64(), textOf(items->getColumn(1)), slots);
    std::ranges::sort(slots, {},
                      [](const Slot& slot) { return std::tuple(slot.place, slot.item, slot.component); });
    return slots;
  }

  static void addSlots(RowId item, std::string_view text, std::vector<Slot>& slots) {
    const std::vector<int> places = placesFrom(text);
    for (std::size_t i = 0; i < places.size(); ++i)
      slots.push_back({.place = places[i], .item = item, .component = i, .isLast = i + 1 == places.size()});
  }

  void putSlot(RowId envelope, const Slot& slot) {
    if (slot.item == 0) return putPart(envelope, slot.place);
    if (slot.component == 0 && slot.isLast) return putItem(slot.item);
    const auto select = database_.statement("SELECT text FROM item WHERE id = ?");
    select->bind(1, slot.item);
    if (!select->executeStep()) return;
    const auto components = componentsOf(textOf(select->getColumn(0)));
    const std::size_t end = slot.isLast ? components.size() : std::min(slot.component + 1, components.size());
    for (std::size_t i = slot.component; i < end; ++i) put(components[i]);
  }

  void putPart(RowId envelope, int place) {
    const auto select =
        database_.statement("SELECT text FROM envelope_part WHERE envelope = ? AND position = ?");
    select->bind(1, envelope);
    select->bind(2, place);
    if (select->executeStep()) put(textOf(select->getColumn(0)));
  }

  void putItem(RowId item) {
    const auto select = database_.statement("SELECT text FROM item WHERE id = ?");
    select->bind(1, item);
    if (select->executeStep()) put(textOf(select->getColumn(0)));
  }

  Database& database_;
  const std::vector<RowId>& calendars_;
  const ExportVolume& volume_;
  const std::function<void(std::string_view)>& sink_;
  std::string_view lineBreak_;
};

}  // namespace

void writeVolume(Database& database, const std::vector<RowId>& calendars, const ExportVolume& volume,
                 const std::function<void(std::string_view)>& sink) {
  VolumeWriter(database, calendars, volume, sink).write();
}

}  // namespace ek::embedded
