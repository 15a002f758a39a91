// Any bytes are walked, read, edited, written, indexed: nothing may crash or hang, and what is written reads
// the same again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/ical/stream.h"
#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/ical/vcard.h"
#include "eventkit/embedded/ical/zones.h"
#include "eventkit/embedded/storage/item_index.h"

namespace {

using namespace ek::ical;

void require(bool holds) {
  if (!holds) std::abort();
}

// Blank lines do not count: a line feed after a line that ends in a carriage return is part of its end.
std::size_t countOf(const Component& component) {
  std::size_t count = 1;
  for (const Line& line : component.lines()) count += line.name().empty() && line.value().empty() ? 0 : 1;
  for (const Component& inner : component.components()) count += countOf(inner);
  return count;
}

Component readAgain(const Component& component) {
  std::vector<Component> again = parseComponents(component.text());
  require(again.size() == 1 && again.front().text() == component.text());
  require(countOf(again.front()) == countOf(component));
  return std::move(again.front());
}

void readValues(const Line& line) {
  for (const Line::Parameter& parameter : line.parameters())
    require(line.parameter(parameter.name).has_value());
  for (const std::string_view value : splitList(line.value())) {
    if (const auto time = parseDateTime(value)) require(parseDateTime(formatDateTime(*time)) == time);
    if (const auto duration = parseDuration(value))
      require(parseDuration(formatDuration(*duration)) == duration);
    if (const auto offset = parseUtcOffset(value))
      require(parseUtcOffset(formatUtcOffset(*offset)) == offset);
  }
  const std::string text = decodeText(line.value());
  require(decodeText(encodeText(text)) == text);
}

void edit(Component component) {
  constexpr std::string_view kValue =
      "a value that is long enough to be folded, with caf\xC3\xA9 and a backslash \\\\ in it";
  if (component.lines().size() > 1) component.removeLine(component.lines().size() / 2);
  component.set(Line::make("SUMMARY", kValue, {{"X-P", "a\"b:c"}}));
  component.add(Component("X-NEW"));
  const Component again = readAgain(component);
  require(again.value("SUMMARY") == kValue && again.find("SUMMARY")->parameter("X-P") == "a\"b:c");
  require(again.components().back().is("X-NEW"));
}

ek::embedded::KeyedZone findZone(std::string_view tzid) {
  auto zone = zoneNamed(tzid);
  return zone ? ek::embedded::KeyedZone{zone, std::string(tzid)} : ek::embedded::KeyedZone{};
}

void index(const std::vector<Component>& components) {
  std::string why;
  const auto item = ek::embedded::indexItem(components, findZone, why);
  if (!item) require(!why.empty());
  if (!item) return;
  if (const auto* series = std::get_if<ek::embedded::SeriesEvent>(&item->entry))
    ek::recurrence::encode(series->series, series->zoneKey);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  walkStream(text, {.piece = [](const Piece& piece) {
               if (!piece.isComponent) return;
               const std::vector<Component> parsed = parseComponents(piece.text);
               require(parsed.size() == 1 && parsed.front().name() == piece.name);
               index(parsed);
             }});
  for (const Component& component : parseComponents(text)) {
    readAgain(component);
    for (const Line& line : component.lines()) readValues(line);
    edit(component);
    if (component.is("VTIMEZONE")) zoneOf(component);
    for (const Component& inner : component.components())
      if (inner.is("VTIMEZONE")) zoneOf(inner);
  }
  std::vector<Problem> problems;
  parseContacts(text, problems);
  return 0;
}
