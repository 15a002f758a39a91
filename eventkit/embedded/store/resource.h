// One event item while it is being changed: its components, seen as one series.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/storage/item_index.h"
#include "eventkit/embedded/store/series_places.h"
#include "eventkit/embedded/store/time_form.h"

namespace ek::embedded {

class Resource {
 public:
  Resource(std::vector<ical::Component> components, ZoneFinder zones)
      : components_(std::move(components)), zones_(std::move(zones)) {}

  std::vector<ical::Component>& components() { return components_; }
  const std::vector<ical::Component>& components() const { return components_; }
  const ZoneFinder& zones() const { return zones_; }
  std::string text() const;
  // What the store is to know of it. Throws when it cannot be placed in time.
  ItemIndex index() const;

  // The component of the whole item; where occurrences came without their series, the first of them.
  ical::Component& master() { return components_[masterOf(components_)]; }
  const ical::Component& master() const { return components_[masterOf(components_)]; }
  bool hasMaster() const { return master().find("RECURRENCE-ID") == nullptr; }
  // The component that the occurrence has of its own; null when it has none.
  ical::Component* overrideAt(WallTime place);
  SeriesPlaces places() const { return {components_, zones_}; }
  // How the master's DTSTART, and places of occurrences, are written.
  TimeForm form() const;
  WallTime start() const;
  // Whether a place is an occurrence by the rules, were nothing excluded or changed.
  bool isNamedByRules(WallTime place) const;

  // That occurrence is none any more, or is one again.
  void exclude(WallTime place);
  void unexclude(WallTime place);
  // The occurrences from that place on are gone.
  void endBefore(WallTime place);
  // The occurrences before `place` are gone. The series starts with `start`, the next place that the rules
  // name: they go on from there.
  void beginAt(WallTime place, WallTime start);
  // Before the series begins at a place that not all rules name: those that do not say themselves what they
  // took from the start, and one that cannot go on from there becomes the dates that it names (of an endless
  // rule those of ten years).
  void freeRulesFromStart(WallTime newStart);
  // The places from that one on that an EXRULE takes away; of an endless series those of ten years.
  std::vector<WallTime> excludedByRules(WallTime place) const;
  // These places in place of the EXRULEs.
  void excludeByDates(const std::vector<WallTime>& places);
  // Before the start is moved there: dates on which rules end move along.
  void moveRuleEnds(const TimeForm& newForm, WallTime newStart);
  // Before the start or the rules change: dates that exclude nothing are not to exclude what comes to be
  // there.
  void dropIdleExclusions();
  // After the start has moved by `shift` or the rules have become others: what was said of single occurrences
  // is said of those that they are now, and dropped where there are none. `old`: from before.
  void rebase(const SeriesPlaces& old, std::chrono::seconds shift);
  // It occurs once: no rules, extra dates, exceptions or occurrences of their own any more.
  void makePlain();
  void setUid(std::string_view uid);

 private:
  // What a place becomes; nothing: it is dropped.
  using Mapping = std::function<std::optional<WallTime>(WallTime)>;
  void mapDates(std::string_view name, const SeriesPlaces& places, const Mapping& mapping);
  void mapOverrides(const SeriesPlaces& places, const Mapping& mapping);
  void editRules(const std::function<std::optional<std::string>(const ical::Line&)>& edit);
  void goIfStartIsExcluded();
  recurrence::Series bareSeries() const;
  std::int64_t countBefore(const recurrence::Rule& rule, WallTime place) const;

  std::vector<ical::Component> components_;
  ZoneFinder zones_;
};

}  // namespace ek::embedded
