#pragma once

#include <memory>
#include <optional>
#include <string>

#include "eventkit/embedded/store/placement.h"
#include "eventkit/embedded/store/stored_item.h"

namespace ek::embedded {

class EmbeddedEvent final : public StoredItem<Event> {
 public:
  explicit EmbeddedEvent(std::shared_ptr<Records> records);
  EmbeddedEvent(std::shared_ptr<Records> records, std::shared_ptr<const Document> document,
                const Placement& placement);

  std::optional<std::string> eventIdentifier() const override;
  std::optional<Date> startDate() const override { return shown_.start; }
  void setStartDate(std::optional<Date> date) override { place({date, given_.end}); }
  std::optional<Date> endDate() const override { return shown_.end; }
  void setEndDate(std::optional<Date> date) override { place({given_.start, date}); }
  bool isAllDay() const override { return isAllDay_; }
  void setAllDay(bool allDay) override;
  bool isDetached() const override { return placement_.isDetached; }
  std::optional<Date> occurrenceDate() const override { return placement_.occurrenceDate; }
  std::optional<std::string> timeZoneAbbreviation() const override;

  // As the store had it; of a new event nothing in it counts.
  const Placement& placement() const { return placement_; }
  bool isStartChanged() const;
  bool isEndChanged() const;
  bool isAllDayChanged() const { return isNew() || isAllDay_ != placement_.isAllDay; }
  bool isTimeChanged() const { return isStartChanged() || isEndChanged() || isAllDayChanged(); }
  bool isChanged() const override { return isTimeChanged() || ItemState::isChanged(); }
  void becomeStored(std::shared_ptr<const Document> document, const Placement& placement);
  void becomeRemoved();

 protected:
  bool repeats() const override { return !placement_.isDetached; }

 private:
  struct Times {
    std::optional<Date> start, end;
  };
  Date storedEnd() const;
  void placeAsStored();
  void place(Times given);

  Placement placement_;
  // As they were set, and as they are: whole days of that where the event is all-day.
  Times given_, shown_;
  bool isAllDay_ = false;
  std::optional<std::string> removedIdentifier_;
};

}  // namespace ek::embedded
