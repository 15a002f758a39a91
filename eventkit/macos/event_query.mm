#include "eventkit/macos/event_query.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include "eventkit/macos/conversions.h"
#include "eventkit/macos/event.h"
#include "eventkit/macos/guard.h"

namespace ek::macos {

namespace {

// Four years without a leap day: below the limit however the platform counts it.
constexpr std::chrono::days kLongestRange{4 * 365};
constexpr Date kFirstYear = std::chrono::sys_days(std::chrono::year(1900) / 1 / 1);
constexpr Date kAfterLastYear = std::chrono::sys_days(std::chrono::year(2101) / 1 / 1);

struct Occurrence {
  Ref<EKEvent> event;
  std::string key;  // the same for one occurrence in every answer
  Date start;
  std::string title;
};

std::string keyOf(EKEvent* event) {
  NSDate* original = [event occurrenceDate] != nil ? [event occurrenceDate] : [event startDate];
  return textFrom([event eventIdentifier]).value_or("") + '\n' +
         std::to_string(dateFrom(original).value_or(Date{}).time_since_epoch().count());
}

NSArray* slice(EKEventStore* store, Date from, Date to, NSArray* calendars) {
  return [store eventsMatchingPredicate:[store predicateForEventsWithStartDate:nsDate(from)
                                                                       endDate:nsDate(to)
                                                                     calendars:calendars]];
}

std::vector<Occurrence> occurrencesIn(EKEventStore* store, const EventConditions& conditions) {
  auto [from, to, calendars] = conditions;
  std::vector<Occurrence> found;
  if (to < from) return found;
  if (to - from > kLongestRange) {
    from = std::max(from, kFirstYear);
    to = std::min(to, kAfterLastYear);
    if (to < from) return found;
  }
  std::unordered_set<std::string> seen;
  const bool isSliced = to - from > kLongestRange;
  do {
    @autoreleasepool {
      const Date sliceEnd = std::min(to, from + kLongestRange);
      for (EKEvent* event in slice(store, from, sliceEnd, calendars.get())) {
        std::string key = keyOf(event);
        if (isSliced && !seen.insert(key).second) continue;
        found.push_back({.event = Ref<EKEvent>(event),
                         .key = std::move(key),
                         .start = dateFrom([event startDate]).value_or(Date{}),
                         .title = textFrom([event title]).value_or("")});
      }
      from = sliceEnd;
    }
  } while (from < to);
  std::ranges::stable_sort(found, [](const Occurrence& a, const Occurrence& b) {
    return a.start != b.start ? a.start < b.start : a.title < b.title;
  });
  return found;
}

// One query's answer. Each object is handed out once, and not after a change: who is given it may change it,
// and the next caller has to see the store's state.
class EventAnswer final : public EventList {
 public:
  EventAnswer(Ref<EKEventStore> store, Ref<NSArray> calendars, const Changes& changes,
              std::vector<Occurrence> found)
      : store_(std::move(store)),
        calendars_(std::move(calendars)),
        asked_(changes.now()),
        found_(std::move(found)) {}

  std::size_t size() const override { return found_.size(); }

  std::shared_ptr<Event> at(std::size_t index) const override {
    Occurrence& wanted = found_.at(index);
    return guarded([&] {
      if (!wanted.event || !asked_.isNow()) return againFromStore(wanted);
      const Ref<EKEvent> event = std::exchange(wanted.event, {});
      return EventKitEvent::of(store_, event.get());
    });
  }

 private:
  std::shared_ptr<Event> againFromStore(const Occurrence& wanted) const {
    for (EKEvent* event in slice(store_.get(), wanted.start, wanted.start + std::chrono::seconds(1),
                                 calendars_.get()))
      if (keyOf(event) == wanted.key) return EventKitEvent::of(store_, event);
    return nullptr;
  }

  Ref<EKEventStore> store_;
  Ref<NSArray> calendars_;
  Changes::Moment asked_;
  mutable std::vector<Occurrence> found_;
};

}  // namespace

std::shared_ptr<const EventList> eventsMatching(const Ref<EKEventStore>& store,
                                                const EventConditions& conditions, const Changes& changes) {
  return std::make_shared<const EventAnswer>(store, conditions.calendars, changes,
                                             occurrencesIn(store.get(), conditions));
}

}  // namespace ek::macos
