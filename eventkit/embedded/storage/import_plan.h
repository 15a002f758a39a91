// What an iCalendar text holds, as views into it: its VCALENDARs, and its events and to-dos grouped by UID.
// Nothing is built for a component here, so that memory stays near the size of the text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/types.h"

namespace ek::embedded {

using SkipPart = std::function<void(std::size_t line, std::string reason)>;

struct ImportPlan {
  // What stands in a VCALENDAR beside its items.
  struct Part {
    std::string_view name;
    std::string_view text;
    std::size_t line = 0;
    std::uint32_t place = 0;
    bool isComponent = false;
  };
  // One VCALENDAR. Places count its components, and the lines that stand after the first of them.
  struct Envelope {
    std::string header;  // the lines before the first component
    std::vector<Part> parts;
    std::uint32_t places = 0;
    std::uint32_t title = 0;    // index into titles
    std::uint32_t ordinal = 0;  // among those of that title
    std::optional<Color> color;
    bool hasItems = false;
  };
  // A VEVENT or VTODO.
  struct Source {
    std::string_view text;
    std::size_t line = 0;
    std::uint32_t envelope = 0;
    std::uint32_t place = 0;
    EntityType kind = EntityType::event;
    std::uint32_t next = 0;  // of the same group: index into sources plus 1
  };
  // The components of one UID that go to the same calendar.
  struct Group {
    std::string_view uid;
    std::uint32_t first = 0, last = 0;  // indices into sources
    bool isMadeUid = false;             // its one component has none of its own
  };

  std::vector<std::string> titles;
  std::vector<Envelope> envelopes;
  std::vector<Source> sources;
  std::vector<Group> groups;     // in order of their first components
  std::deque<std::string> uids;  // what Group::uid points into
};

// `title` for all VCALENDARs, else each one's X-WR-CALNAME, else `stem`. What had to be passed over goes to
// `skip`. The plan must not outlive the text.
ImportPlan planImport(std::string_view text, const std::optional<std::string>& title, const std::string& stem,
                      const SkipPart& skip);

}  // namespace ek::embedded
