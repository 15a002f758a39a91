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
  start_ = storedStart();
  end_ = storedEnd();
}

std::optional<std::string> EmbeddedEvent::eventIdentifier() const {
  if (isNew()) return removedIdentifier_;
  return placement_.isDetached ? identifier() + occurrenceSuffix(*placement_.occurrenceDate) : identifier();
}

std::optional<Date> EmbeddedEvent::startDate() const {
  if (!start_ || !isAllDay_) return start_;
  return startOfDay(*start_, *TimeZone::defaultZone());
}

std::optional<Date> EmbeddedEvent::endDate() const {
  if (!end_ || !isAllDay_) return end_;
  const auto zone = TimeZone::defaultZone();
  return endOfLastDay(*end_, start_ ? startOfDay(*start_, *zone) : *end_, *zone);
}

void EmbeddedEvent::setAllDay(bool allDay) {
  start_ = startDate();
  end_ = endDate();
  isAllDay_ = allDay;
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

std::optional<Date> EmbeddedEvent::storedStart() const {
  return isNew() ? std::nullopt : std::optional(placement_.start);
}

std::optional<Date> EmbeddedEvent::storedEnd() const {
  if (isNew()) return std::nullopt;
  return placement_.isAllDay ? placement_.end - std::chrono::seconds(1) : placement_.end;
}

bool EmbeddedEvent::isStartChanged() const { return startDate() != storedStart(); }

bool EmbeddedEvent::isEndChanged() const { return endDate() != storedEnd(); }

void EmbeddedEvent::becomeStored(std::shared_ptr<const Document> document, const Placement& placement) {
  ItemState::becomeStored(std::move(document), ownPlace(placement));
  placement_ = placement;
  isAllDay_ = placement.isAllDay;
  start_ = storedStart();
  end_ = storedEnd();
}

void EmbeddedEvent::becomeRemoved() {
  removedIdentifier_ = eventIdentifier();
  ItemState::becomeRemoved();
  placement_ = {};
  isAllDay_ = false;
  start_ = end_ = std::nullopt;
}

}  // namespace ek::embedded
