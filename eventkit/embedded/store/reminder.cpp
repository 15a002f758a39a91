#include "eventkit/embedded/store/reminder.h"

#include <utility>

namespace ek::embedded {

bool EmbeddedReminder::Due::operator==(const Due& other) const {
  if (!components || !other.components) return components.has_value() == other.components.has_value();
  return components->wall == other.components->wall &&
         components->isDateOnly == other.components->isDateOnly && components->zone == other.components->zone;
}

EmbeddedReminder::Due EmbeddedReminder::storedDue() const {
  const std::optional<ZonedTime>& due = fields().due;
  if (!due) return {};
  return {DateComponents{.wall = due->wall, .isDateOnly = due->isDate, .zone = due->zone.zone}};
}

std::optional<DateComponents> EmbeddedReminder::dueDateComponents() const {
  return due_.current(storedDue()).components;
}

void EmbeddedReminder::setDueDateComponents(std::optional<DateComponents> due) {
  due_.set({std::move(due)}, storedDue());
}

void EmbeddedReminder::setCompleted(bool completed) {
  if (completed == isCompleted()) return;
  setCompletionDate(completed ? std::optional(foundation::now()) : std::nullopt);
}

void EmbeddedReminder::setCompletionDate(std::optional<Date> date) {
  completion_.set({.isCompleted = date.has_value(), .date = date}, storedCompletion());
}

std::optional<std::string> EmbeddedReminder::timeZoneAbbreviation() const {
  const std::optional<DateComponents> due = dueDateComponents();
  if (!due || !due->zone) return std::nullopt;
  return due->zone->abbreviation(foundation::now());
}

bool EmbeddedReminder::isChanged() const {
  return isDueChanged() || isCompletionChanged() || isPriorityChanged() || ItemState::isChanged();
}

void EmbeddedReminder::becomeStored(std::shared_ptr<const Document> document) {
  ItemState::becomeStored(std::move(document), std::nullopt);
  due_.forget();
  completion_.forget();
  priority_.forget();
}

}  // namespace ek::embedded
