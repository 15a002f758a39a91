#include "eventkit/embedded/store/calendar_directory.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>

namespace ek::embedded {

void CalendarDirectory::bringUpToDate() {
  const Database::Version version = database_.version();
  if (version_ == version) return;
  Database::Transaction reading(database_, Database::Transaction::Kind::reading);
  rows_ = CalendarTable(database_).all();
  sources_.clear();
  const auto select = database_.statement("SELECT id, identifier, type, title FROM source");
  while (select->executeStep())
    sources_[select->getColumn(0).getInt64()] = {
        .identifier = select->getColumn(1).getString(),
        .type = static_cast<SourceType>(select->getColumn(2).getInt()),
        .title = select->getColumn(3).getString()};
  version_ = version;
}

const std::vector<CalendarRow>& CalendarDirectory::all() {
  bringUpToDate();
  return rows_;
}

template <class Predicate>
const CalendarRow* CalendarDirectory::first(Predicate predicate) {
  const auto& rows = all();
  const auto row = std::ranges::find_if(rows, predicate);
  return row == rows.end() ? nullptr : &*row;
}

const CalendarRow* CalendarDirectory::find(RowId id) {
  return first([id](const CalendarRow& row) { return row.id == id; });
}

const CalendarRow* CalendarDirectory::findByIdentifier(std::string_view identifier) {
  return first([identifier](const CalendarRow& row) { return row.identifier == identifier; });
}

const CalendarRow* CalendarDirectory::defaultFor(EntityType kind) {
  return first([kind](const CalendarRow& row) { return row.kind == kind && row.isDefault; });
}

std::optional<Source> CalendarDirectory::sourceOf(const CalendarRow& row) const {
  const auto source = sources_.find(row.source);
  return source == sources_.end() ? std::nullopt : std::optional(source->second);
}

std::optional<RowId> CalendarDirectory::sourceRow(std::string_view identifier) {
  bringUpToDate();
  const auto source = std::ranges::find_if(
      sources_, [identifier](const auto& each) { return each.second.identifier == identifier; });
  return source == sources_.end() ? std::nullopt : std::optional(source->first);
}

std::vector<std::string> CalendarDirectory::ownerAddresses(RowId source) {
  const auto select = database_.statement("SELECT address FROM owner_address WHERE source = ?1");
  select->bind(1, source);
  std::vector<std::string> addresses;
  while (select->executeStep()) addresses.push_back(select->getColumn(0).getString());
  return addresses;
}

}  // namespace ek::embedded
