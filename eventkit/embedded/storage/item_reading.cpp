#include "eventkit/embedded/storage/item_reading.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <tuple>
#include <utility>

namespace ek::embedded {
namespace {

using Report = std::function<void(const ImportPlan::Source&, const std::string&)>;

struct Reading {
  const ImportPlan::Source* source;
  ical::Component component;
};

std::int64_t sequenceOf(const ical::Component& component) {
  const std::string_view text = component.value("SEQUENCE").value_or("0");
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// Which of two components that mean the same occurrence is the later one (RFC 5546 2.1.5).
bool isNewer(const Reading& left, const Reading& right) {
  const auto age = [](const Reading& reading) {
    return std::tuple(sequenceOf(reading.component), reading.component.value("DTSTAMP").value_or(""));
  };
  return age(left) >= age(right);
}

std::string occurrenceOf(const Reading& reading) {
  return std::string(reading.component.value("RECURRENCE-ID").value_or(""));
}

// Of two components for the same occurrence, or two masters, the newer one counts.
std::vector<Reading> withoutDoubles(std::vector<Reading> readings, const Report& leaveOut) {
  std::vector<Reading> kept;
  std::map<std::string, std::size_t> byOccurrence;
  for (Reading& reading : readings) {
    const auto [known, isFirst] = byOccurrence.try_emplace(occurrenceOf(reading), kept.size());
    if (isFirst) {
      kept.push_back(std::move(reading));
      continue;
    }
    Reading& same = kept[known->second];
    if (isNewer(reading, same)) std::swap(reading, same);
    leaveOut(*reading.source,
             "line " + std::to_string(same.source->line) + " has a newer one of the same UID");
  }
  const auto byPlace = [](const Reading& reading) {
    return std::pair(reading.source->envelope, reading.source->place);
  };
  std::ranges::sort(kept, {}, byPlace);
  return kept;
}

std::optional<ItemIndex> indexAll(const std::vector<Reading>& readings, const ZoneFinder& zones,
                                  std::string& why) {
  std::vector<ical::Component> components;
  components.reserve(readings.size());
  for (const Reading& reading : readings) components.push_back(reading.component);
  why.clear();
  return indexItem(components, zones, why);
}

// When the components cannot be placed in time together, those that cannot be by themselves are at fault.
std::optional<ItemIndex> indexReadable(std::vector<Reading>& readings, const ZoneFinder& zones,
                                       const Report& leaveOut, std::string& why) {
  if (auto index = indexAll(readings, zones, why)) return index;
  const std::string wholeReason = why;
  std::vector<Reading> readable;
  for (Reading& reading : readings) {
    std::vector<Reading> alone;
    alone.push_back(std::move(reading));
    if (indexAll(alone, zones, why))
      readable.push_back(std::move(alone.front()));
    else
      leaveOut(*alone.front().source, why);
  }
  readings = std::move(readable);
  if (readings.empty()) return std::nullopt;
  auto index = indexAll(readings, zones, why);
  if (!index)
    for (const Reading& reading : readings) leaveOut(*reading.source, wholeReason);
  return index;
}

std::vector<Reading> parse(const ImportPlan& plan, const ImportPlan::Group& group, bool& asTheyStand) {
  std::vector<Reading> readings;
  for (std::uint32_t at = group.first + 1; at != 0; at = plan.sources[at - 1].next) {
    const ImportPlan::Source& source = plan.sources[at - 1];
    std::string why;
    std::vector<ical::Component> parsed = ical::parseComponents(source.text, &why);
    asTheyStand = asTheyStand && why.empty() && source.text.ends_with('\n');
    readings.push_back({&source, std::move(parsed.front())});
  }
  return readings;
}

}  // namespace

std::optional<ReadItem> readItem(const ImportPlan& plan, const ImportPlan::Group& group,
                                 const ZoneFinder& zones, const Report& leaveOut, const Report& remark) {
  bool asTheyStand = !group.isMadeUid;
  std::vector<Reading> readings = parse(plan, group, asTheyStand);
  if (group.isMadeUid) readings.front().component.set(ical::Line::make("UID", group.uid));
  if (readings.size() > 1) readings = withoutDoubles(std::move(readings), leaveOut);
  std::string why;
  std::optional<ItemIndex> index = indexReadable(readings, zones, leaveOut, why);
  if (!index) return std::nullopt;
  if (!why.empty()) remark(*readings.front().source, why);
  ReadItem item{.index = std::move(*index)};
  if (item.index.uid.empty()) item.index.uid = group.uid;
  for (const Reading& reading : readings) {
    if (asTheyStand)
      item.text += reading.source->text;
    else
      item.text += reading.component.text();
    item.sources.push_back(reading.source);
  }
  return item;
}

}  // namespace ek::embedded
