// The part of the interface that events and reminders share, on top of ItemState.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "eventkit/embedded/store/item_state.h"
#include "eventkit/embedded/store/url_text.h"

namespace ek::embedded {

template <class Interface>
class StoredItem : public Interface, public ItemState {
 public:
  using ItemState::ItemState;

  std::shared_ptr<Calendar> calendar() const override {
    return guarded([this]() -> std::shared_ptr<Calendar> { return owner(); });
  }
  // A calendar of another store throws.
  void setCalendar(std::shared_ptr<Calendar> calendar) override {
    auto own = std::dynamic_pointer_cast<EmbeddedCalendar>(calendar);
    if (calendar && (!own || own->records() != records()))
      throw Exception("the calendar belongs to another store");
    setOwner(std::move(own));
  }

  std::string calendarItemIdentifier() const override { return identifier(); }
  std::optional<std::string> calendarItemExternalIdentifier() const override { return uid(); }

  const Text& title() const override { return text(ItemState::title); }
  void setTitle(Text title) override { setText(ItemState::title, std::move(title)); }
  const Text& location() const override { return text(ItemState::location); }
  void setLocation(Text location) override { setText(ItemState::location, std::move(location)); }
  const Text& notes() const override { return text(ItemState::notes); }
  void setNotes(Text notes) override { setText(ItemState::notes, std::move(notes)); }
  const Text& url() const override { return text(ItemState::url); }
  void setUrl(Text url) override {
    if (url && !isUrl(*url)) url.reset();
    setText(ItemState::url, std::move(url));
  }

  std::optional<Date> lastModifiedDate() const override { return dateOr(fields().lastModified); }
  std::optional<Date> creationDate() const override { return dateOr(fields().created); }

  std::vector<std::shared_ptr<Alarm>> alarms() const override {
    return {alarmList().begin(), alarmList().end()};
  }
  void addAlarm(std::shared_ptr<Alarm> alarm) override {
    auto own = std::dynamic_pointer_cast<EmbeddedAlarm>(std::move(alarm));
    if (!own) throw Exception("the alarm belongs to another store");
    ItemState::addAlarm(std::move(own));
  }
  void removeAlarm(const std::shared_ptr<Alarm>& alarm) override {
    if (alarm) ItemState::removeAlarm(*alarm);
  }

  std::vector<Participant> attendees() const override { return fields().attendees; }

  std::vector<RecurrenceRule> recurrenceRules() const override { return rules(); }
  void addRecurrenceRule(const RecurrenceRule& rule) override {
    std::vector<RecurrenceRule> all = rules();
    all.push_back(rule);
    setRules(std::move(all));
  }
  void removeRecurrenceRule(const RecurrenceRule& rule) override {
    std::vector<RecurrenceRule> all = rules();
    std::erase(all, rule);
    setRules(std::move(all));
  }
  void setRecurrenceRules(std::vector<RecurrenceRule> rules) override { setRules(std::move(rules)); }

 private:
  // An imported item that does not say has the time of its import.
  std::optional<Date> dateOr(const std::optional<Date>& written) const {
    return written || isNew() ? written : document()->row().stored;
  }
};

}  // namespace ek::embedded
