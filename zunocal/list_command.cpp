#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fmt/format.h>

#include "eventkit/embedded/storage/calendar_table.h"
#include "foundation/text.h"
#include "zunocal/commands.h"
#include "zunocal/json.h"
#include "zunocal/plain.h"

namespace zunocal {
namespace {

using ek::embedded::CalendarRow;
using ek::embedded::CalendarTable;

struct Listed {
  CalendarRow calendar;
  std::int64_t items = 0;
};

constexpr std::array<const char*, 2> kKinds = {"events", "reminders"};
constexpr std::array<const char*, 5> kTypes = {"local", "caldav", "exchange", "subscription", "birthday"};

const char* kindOf(const CalendarRow& row) { return kKinds[static_cast<std::size_t>(row.kind)]; }
const char* typeOf(const CalendarRow& row) { return kTypes[static_cast<std::size_t>(row.type)]; }

std::vector<Listed> listed(Database& database) {
  return ek::embedded::guarded([&] {
    const Database::Transaction reading(database, Database::Transaction::Kind::reading);
    std::vector<Listed> all;
    for (CalendarRow& row : CalendarTable(database).all()) {
      const auto count = database.statement("SELECT count(*) FROM item WHERE calendar = ?");
      count->bind(1, row.id);
      count->executeStep();
      all.push_back({.calendar = std::move(row), .items = count->getColumn(0).getInt64()});
    }
    return all;
  });
}

void printJson(const std::vector<Listed>& all) {
  std::string json;
  for (const auto& [calendar, items] : all)
    json += fmt::format(
        "{}{{\"title\":{},\"kind\":\"{}\",\"type\":\"{}\",\"identifier\":{},\"items\":{},\"default\":{},"
        "\"subscribed\":{},\"immutable\":{},\"modifiable\":{}}}",
        json.empty() ? "" : ",", jsonText(calendar.title), kindOf(calendar), typeOf(calendar),
        jsonText(calendar.identifier), items, calendar.isDefault, calendar.isSubscribed, calendar.isImmutable,
        calendar.allowsModification);
  fmt::print("[{}]\n", json);
}

std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (byte & 0xc0) != 0x80; }));
}

std::string padded(std::string text, std::size_t width) {
  const std::size_t own = widthOf(text);
  return own < width ? text.append(width - own, ' ') : text;
}

void printTable(const std::vector<Listed>& all) {
  constexpr std::size_t kColumns = 5;
  std::vector<std::array<std::string, kColumns>> rows = {{"TITLE", "KIND", "TYPE", "IDENTIFIER", "ITEMS"}};
  for (const auto& [calendar, items] : all)
    rows.push_back({plain(calendar.title), kindOf(calendar),
                    std::string(typeOf(calendar)) + (calendar.allowsModification ? "" : ", read-only"),
                    calendar.identifier, std::to_string(items)});
  std::array<std::size_t, kColumns> widths{};
  for (const auto& row : rows)
    for (std::size_t i = 0; i < kColumns; ++i) widths[i] = std::max(widths[i], widthOf(row[i]));
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i + 1 < kColumns; ++i) line += padded(row[i], widths[i]) + "  ";
    fmt::print("{}{:>{}}\n", line, row.back(), widths.back());
  }
}

}  // namespace

int listCalendars(Database& database, bool asJson) {
  const std::vector<Listed> all = listed(database);
  if (asJson)
    printJson(all);
  else
    printTable(all);
  return 0;
}

}  // namespace zunocal
