// An alarm of EventKit's, an item's own or one that belongs to none yet.
#pragma once

#import <EventKit/EventKit.h>

#include "eventkit/items.h"
#include "eventkit/macos/ref.h"

namespace ek::macos {

class EventKitAlarm final : public Alarm {
 public:
  explicit EventKitAlarm(Ref<EKAlarm> alarm) : alarm_(std::move(alarm)) {}
  EKAlarm* object() const { return alarm_.get(); }

  double relativeOffset() const override;
  void setRelativeOffset(double seconds) override;
  std::optional<Date> absoluteDate() const override;
  void setAbsoluteDate(std::optional<Date> date) override;
  AlarmType type() const override;
  std::optional<std::string> emailAddress() const override;
  void setEmailAddress(std::optional<std::string> address) override;
  std::optional<std::string> soundName() const override;
  void setSoundName(std::optional<std::string> name) override;
  std::optional<std::string> url() const override;
  void setUrl(std::optional<std::string> url) override;

 private:
  Ref<EKAlarm> alarm_;
};

}  // namespace ek::macos
