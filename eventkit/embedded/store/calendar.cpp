#include "eventkit/embedded/store/calendar.h"

#include <utility>

namespace ek::embedded {

EmbeddedCalendar::EmbeddedCalendar(std::shared_ptr<Records> records, CalendarRow row,
                                   std::optional<Source> source)
    : records_(std::move(records)),
      stored_(std::move(row)),
      storedSource_(std::move(source)),
      color_(stored_.color),
      source_(storedSource_) {
  if (!isNew()) title_ = stored_.title;
}

void EmbeddedCalendar::becomeStored(CalendarRow row) {
  stored_ = std::move(row);
  storedSource_ = source_;
  title_ = stored_.title;
  color_ = stored_.color;
}

}  // namespace ek::embedded
