#include "eventkit/embedded/store/event.h"

#include <utility>

namespace ek::embedded {

namespace {

std::optional<WallTime> ownPlace(const Placement& placement) {
  return placement.isDetached ? placement.recurrenceId : std::nullopt;
}

}  // namespace

EmbeddedEvent::EmbeddedEvent(std::shared_ptr<Records> records)
    : StoredItem(std::move(records), EntityType::event) {}

EmbeddedEvent::EmbeddedEvent(std::shared_ptr<Records> records, std::shared_ptr<const Document> document,
                             const Placement& placement)
    : StoredItem(std::move(records), std::move(document), ownPlace(placement)),
      placement_(placement),
      isAllDay_(placement.isAllDay) {
  placeAsStored();
}

std::optional<std::string> EmbeddedEvent::eventIdentifier() const {
  if (isNew()) return removedIdentifier_;
  return placement_.isDetached ? identifier() + occurrenceSuffix(*placement_.occurrenceDate) : identifier();
}

void EmbeddedEvent::place(Times given) {
  given_ = shown_ = given;
  if (!isAllDay_) return;
  const auto zone = TimeZone::defaultZone();
  if (given.start) shown_.start = startOfDay(*given.start, *zone);
  if (given.end) shown_.end = endOfLastDay(*given.end, shown_.start.value_or(*given.end), *zone);
}

void EmbeddedEvent::setAllDay(bool allDay) {
  isAllDay_ = allDay;
  place(shown_);
}

std::optional<std::string> EmbeddedEvent::timeZoneAbbreviation() const {
  if (isAllDay_) return std::nullopt;
  if (isAllDayChanged()) {
    const auto zone = TimeZone::defaultZone();
    return zone->abbreviation(foundation::now());
  }
  const auto& start = fields().start;
  if (!start || !start->zone.zone) return std::nullopt;
  return start->zone.zone->abbreviation(foundation::now());
}

Date EmbeddedEvent::storedEnd() const {
  return placement_.isAllDay ? placement_.end - std::chrono::seconds(1) : placement_.end;
}

// Scripts open one event after the other: value by value, which costs less than copies of the whole.
void EmbeddedEvent::placeAsStored() {
  const Date end = storedEnd();
  given_.start.emplace(placement_.start);
  given_.end.emplace(end);
  shown_.start.emplace(placement_.start);
  shown_.end.emplace(end);
}

bool EmbeddedEvent::isStartChanged() const {
  return isNew() ? shown_.start.has_value() : shown_.start != placement_.start;
}

bool EmbeddedEvent::isEndChanged() const {
  return isNew() ? shown_.end.has_value() : shown_.end != storedEnd();
}

void EmbeddedEvent::becomeStored(std::shared_ptr<const Document> document, const Placement& placement) {
  ItemState::becomeStored(std::move(document), ownPlace(placement));
  placement_ = placement;
  isAllDay_ = placement.isAllDay;
  placeAsStored();
}

void EmbeddedEvent::becomeRemoved() {
  removedIdentifier_ = eventIdentifier();
  ItemState::becomeRemoved();
  placement_ = {};
  isAllDay_ = false;
  given_ = shown_ = {};
}

}  // namespace ek::embedded
