// Alarms: one VALARM each.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/storage/item_index.h"
#include "eventkit/items.h"

namespace ek::embedded {

struct AlarmValues {
  AlarmType type = AlarmType::display;
  double relativeOffset = 0;
  std::optional<Date> absoluteDate;
  std::optional<std::string> email, sound, url;
  bool operator==(const AlarmValues&) const = default;
};

// What relative triggers of an item count from. An offset counts from an event's start, and from a reminder's
// due date, else its start; the text may name the other end.
struct AlarmAnchor {
  std::int64_t startShift = 0;  // from where offsets count to the item's start
  std::int64_t endShift = 0;    // and to its end or due date
  bool countsFromEnd = false;   // of two ends, offsets count from the end
};

// An alarm as the item's text has it.
struct AlarmSource {
  AlarmValues values;
  ical::Component component;
};

AlarmValues readAlarm(const ical::Component& valarm, const AlarmAnchor& anchor, const ZoneFinder& zones);

class EmbeddedAlarm final : public Alarm {
 public:
  explicit EmbeddedAlarm(AlarmValues values) : values_(std::move(values)) {}
  explicit EmbeddedAlarm(const AlarmSource& source) : values_(source.values), source_(source) {}

  double relativeOffset() const override { return values_.relativeOffset; }
  void setRelativeOffset(double seconds) override;
  std::optional<Date> absoluteDate() const override { return values_.absoluteDate; }
  void setAbsoluteDate(std::optional<Date> date) override;
  AlarmType type() const override { return values_.type; }
  std::optional<std::string> emailAddress() const override { return values_.email; }
  void setEmailAddress(std::optional<std::string> address) override;
  std::optional<std::string> soundName() const override { return values_.sound; }
  void setSoundName(std::optional<std::string> name) override;
  std::optional<std::string> url() const override { return values_.url; }
  void setUrl(std::optional<std::string> url) override;

  const AlarmValues& values() const { return values_; }
  // Empty for an alarm that was not read from the store.
  const std::optional<AlarmSource>& source() const { return source_; }
  bool isChanged() const { return !source_ || source_->values != values_; }
  // The VALARM that says what this alarm is now: its source with what was changed, else a new one.
  ical::Component component(const AlarmAnchor& anchor, const std::string& itemTitle) const;
  // From now on this alarm is what the store holds as `component`.
  void becomeStored(const ical::Component& component) { source_ = AlarmSource{values_, component}; }

 private:
  void choose(AlarmType type, std::optional<std::string> AlarmValues::*value,
              std::optional<std::string> text);

  AlarmValues values_;
  std::optional<AlarmSource> source_;
};

}  // namespace ek::embedded
