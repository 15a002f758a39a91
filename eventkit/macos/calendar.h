// A calendar or reminder list of EventKit's.
#pragma once

#include "eventkit/items.h"
#include "eventkit/macos/native.h"

namespace ek::macos {

class EventKitCalendar final : public Calendar, public Native<EKCalendar> {
 public:
  using Native::Native;
  // Null for nil.
  static std::shared_ptr<Calendar> of(const Ref<EKEventStore>& store, EKCalendar* calendar);

  std::string calendarIdentifier() const override;
  const std::optional<std::string>& title() const override;
  void setTitle(std::optional<std::string> title) override;
  CalendarType type() const override;
  bool isImmutable() const override;
  bool isSubscribed() const override;
  bool allowsContentModifications() const override;
  std::optional<Color> color() const override;
  void setColor(const Color& color) override;
  std::optional<Source> source() const override;
  void setSource(std::optional<Source> source) override;

 private:
  mutable std::optional<std::string> title_;  // as it was last asked for
};

}  // namespace ek::macos
