#include "bench/libical.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace bench {
namespace {

icaltimetype utcTime(std::int64_t seconds) {
  return icaltime_from_timet_with_zone(static_cast<time_t>(seconds), 0, icaltimezone_get_utc_timezone());
}

std::int64_t secondsOf(icalcomponent* event, icalproperty_kind kind) {
  icalproperty* property = icalcomponent_get_first_property(event, kind);
  const icaltimetype time = icalproperty_get_datetime_with_component(property, event);
  return icaltime_as_timet_with_zone(time, time.zone);
}

}  // namespace

IcalComponent parseWithLibical(const std::string& icsFile) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(icsFile.c_str(), "rb"), std::fclose);
  const std::unique_ptr<icalparser, void (*)(icalparser*)> parser(icalparser_new(), icalparser_free);
  icalparser_set_gen_data(parser.get(), file.get());
  const auto nextLine = [](char* line, std::size_t size, void* stream) {
    return std::fgets(line, static_cast<int>(size), static_cast<std::FILE*>(stream));
  };
  IcalComponent calendar(file ? icalparser_parse(parser.get(), nextLine) : nullptr);
  if (!calendar) throw std::runtime_error(icsFile + ": libical cannot parse it");
  return calendar;
}

Libical::Libical(IcalComponent calendar) : calendar_(std::move(calendar)) {
  std::unordered_map<std::string, std::vector<std::int64_t>> overridden;
  std::vector<std::pair<std::string, icalcomponent*>> masters;
  for (icalcomponent* event = icalcomponent_get_first_component(calendar_.get(), ICAL_VEVENT_COMPONENT);
       event != nullptr; event = icalcomponent_get_next_component(calendar_.get(), ICAL_VEVENT_COMPONENT)) {
    const std::string uid = icalcomponent_get_uid(event);
    if (icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY) != nullptr) {
      overridden[uid].push_back(secondsOf(event, ICAL_RECURRENCEID_PROPERTY));
      items_.push_back({event, {}});
      continue;
    }
    uids_.push_back(uid);
    if (icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY) != nullptr) {
      masters.emplace_back(uid, event);
    } else {
      items_.push_back({event, {}});
    }
  }
  for (auto& [uid, event] : masters) items_.push_back({event, std::move(overridden[uid])});
}

void Libical::expand(Window window, const Visitor& visit) {
  struct Walk {
    const Item* item;
    Window window;
    const Visitor* visit;
  };
  const auto onOccurrence = [](icalcomponent* event, icaltime_span* span, void* data) {
    const Walk& walk = *static_cast<const Walk*>(data);
    if (span->start >= walk.window.to || span->end <= walk.window.from) return;
    if (std::ranges::find(walk.item->overridden, span->start) != walk.item->overridden.end()) return;
    (*walk.visit)(event, span->start, span->end);
  };
  for (const Item& item : items_) {
    Walk walk{&item, window, &visit};
    icalcomponent_foreach_recurrence(item.event, utcTime(window.from), utcTime(window.to), onOccurrence,
                                     &walk);
  }
}

std::size_t Libical::count(Window window) {
  std::size_t found = 0;
  expand(window, [&found](icalcomponent*, std::int64_t, std::int64_t) { ++found; });
  return found;
}

std::unique_ptr<Contender> openLibical(const std::string& icsFile) {
  return std::make_unique<Libical>(parseWithLibical(icsFile));
}

}  // namespace bench
