#include "eventkit/embedded/storage/exporter.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>

#include "eventkit/embedded/storage/export_plan.h"
#include "eventkit/embedded/storage/export_writer.h"

namespace ek::embedded {

std::vector<std::string> Exporter::write(const std::vector<std::string>& titles, const Sink& sink) {
  return guarded([&] {
    const Database::Transaction reading(database_, Database::Transaction::Kind::reading);
    std::vector<TitleGroup> all = groups();
    std::vector<std::string> unknown;
    for (const std::string& title : titles)
      if (std::ranges::find(all, title, &TitleGroup::title) == all.end()) unknown.push_back(title);
    if (!unknown.empty()) return unknown;
    const auto isUnwanted = [&](const TitleGroup& group) {
      return !titles.empty() && std::ranges::find(titles, group.title) == titles.end();
    };
    std::erase_if(all, isUnwanted);
    if (!std::ranges::all_of(all, &TitleGroup::isEmpty))
      std::erase_if(all, [](const auto& group) { return group.isEmpty; });
    for (const TitleGroup& group : all)
      for (const ExportVolume& volume : planExport(database_, group.title, group.calendars))
        writeVolume(database_, group.calendars, volume, sink);
    return unknown;
  });
}

std::vector<Exporter::TitleGroup> Exporter::groups() {
  std::vector<TitleGroup> groups;
  for (const CalendarRow& row : CalendarTable(database_).all()) {
    auto group = std::ranges::find(groups, row.title, &TitleGroup::title);
    if (group == groups.end()) group = groups.insert(group, {.title = row.title, .calendars = {}});
    group->calendars.push_back(row.id);
    const auto select = database_.statement("SELECT EXISTS (SELECT 1 FROM item WHERE calendar = ?)");
    select->bind(1, row.id);
    select->executeStep();
    if (select->getColumn(0).getInt() != 0) group->isEmpty = false;
  }
  return groups;
}

}  // namespace ek::embedded
