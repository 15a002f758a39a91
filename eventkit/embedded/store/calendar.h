// A calendar or reminder list: a snapshot of its row, and what was changed since.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "eventkit/embedded/storage/calendar_table.h"
#include "eventkit/embedded/store/records.h"
#include "eventkit/items.h"

namespace ek::embedded {

class EmbeddedCalendar final : public Calendar {
 public:
  // `row` with id 0 is a calendar that is not in the store yet.
  EmbeddedCalendar(std::shared_ptr<Records> records, CalendarRow row, std::optional<Source> source);

  std::string calendarIdentifier() const override { return stored_.identifier; }
  const std::optional<std::string>& title() const override { return title_; }
  void setTitle(std::optional<std::string> title) override { title_ = std::move(title); }
  CalendarType type() const override { return stored_.type; }
  bool isImmutable() const override { return stored_.isImmutable; }
  bool isSubscribed() const override { return stored_.isSubscribed; }
  bool allowsContentModifications() const override { return stored_.allowsModification; }
  std::optional<Color> color() const override { return color_; }
  void setColor(const Color& color) override { color_ = color; }
  std::optional<Source> source() const override { return source_; }
  void setSource(std::optional<Source> source) override { source_ = std::move(source); }

  const std::shared_ptr<Records>& records() const { return records_; }
  bool isNew() const { return stored_.id == 0; }
  const CalendarRow& stored() const { return stored_; }
  bool isTitleChanged() const { return stored_.title != title_.value_or(""); }
  bool isColorChanged() const { return stored_.color != color_; }
  bool isSourceChanged() const { return storedSource_ != source_; }
  void becomeStored(CalendarRow row);

 private:
  std::shared_ptr<Records> records_;
  CalendarRow stored_;
  std::optional<Source> storedSource_;
  // As they are now. The title is nothing until it is set.
  std::optional<std::string> title_;
  std::optional<Color> color_;
  std::optional<Source> source_;
};

}  // namespace ek::embedded
