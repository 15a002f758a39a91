// How many events and to-dos libical reads from a file, and how many faults it finds.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <libical/ical.h>
#include <memory>
#include <string>

namespace {

struct Counts {
  int events = 0;
  int todos = 0;
  int faults = 0;
};

void count(icalcomponent* component, Counts& counts) {
  const icalcomponent_kind kind = icalcomponent_isa(component);
  counts.events += kind == ICAL_VEVENT_COMPONENT ? 1 : 0;
  counts.todos += kind == ICAL_VTODO_COMPONENT ? 1 : 0;
  counts.faults += icalcomponent_count_properties(component, ICAL_XLICERROR_PROPERTY);
  for (icalcomponent* inner = icalcomponent_get_first_component(component, ICAL_ANY_COMPONENT);
       inner != nullptr; inner = icalcomponent_get_next_component(component, ICAL_ANY_COMPONENT))
    count(inner, counts);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::ifstream file(argv[1], std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const std::unique_ptr<icalcomponent, void (*)(icalcomponent*)> root(icalparser_parse_string(text.c_str()),
                                                                      icalcomponent_free);
  if (!root) return 1;
  Counts counts;
  count(root.get(), counts);
  std::printf("%d %d %d\n", counts.events, counts.todos, counts.faults);
  return 0;
}
