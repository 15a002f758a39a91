// What an event and a reminder have in common: a snapshot of the stored item, and the changes made to it
// since. A value that is set to what it was is no change.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "eventkit/embedded/store/alarm.h"
#include "eventkit/embedded/store/calendar.h"
#include "eventkit/embedded/store/document.h"
#include "eventkit/embedded/store/records.h"
#include "eventkit/items.h"

namespace ek::embedded {

// A value as it was read, and as it is now.
template <class Value>
class Editable {
 public:
  const Value& current(const Value& stored) const { return edit_ ? *edit_ : stored; }
  bool isChanged() const { return edit_.has_value(); }
  void set(Value value, const Value& stored) {
    if (value == stored)
      edit_.reset();
    else
      edit_.emplace(std::move(value));
  }
  void forget() { edit_.reset(); }

 private:
  std::optional<Value> edit_;
};

using Text = std::optional<std::string>;

class ItemState {
 public:
  // A new item.
  ItemState(std::shared_ptr<Records> records, EntityType kind);
  // A stored one; with a place in its series when it stands for an occurrence with a component of its own.
  ItemState(std::shared_ptr<Records> records, std::shared_ptr<const Document> document,
            std::optional<WallTime> detached);
  ItemState(const ItemState&) = delete;
  ItemState& operator=(const ItemState&) = delete;
  virtual ~ItemState() = default;

  const std::shared_ptr<Records>& records() const { return records_; }
  EntityType kind() const { return kind_; }
  // Null for an item that was never saved.
  const std::shared_ptr<const Document>& document() const { return document_; }
  bool isNew() const { return document_ == nullptr; }
  const std::string& identifier() const { return identifier_; }
  const std::string& uid() const { return uid_; }
  // As the text has them; those of a new item are empty.
  const Fields& fields() const;

  const std::shared_ptr<EmbeddedCalendar>& owner() const;
  void setOwner(std::shared_ptr<EmbeddedCalendar> calendar) { calendar_ = std::move(calendar); }
  bool isOwnerChanged() const;

  // The texts of a component, their property names, and whether they are TEXT or a URI.
  struct TextField {
    const char* property;
    Text Fields::*stored;
    bool isUri;
    const char* rival;  // says the same in another form, which some programs prefer; null: nothing does
  };
  static constexpr std::size_t kTextFields = 4;
  enum TextName : std::size_t { title, location, notes, url };
  static const std::array<TextField, kTextFields>& textFields();
  const Text& text(TextName name) const;
  void setText(TextName name, Text value);
  bool isTextChanged(TextName name) const { return texts_[name].isChanged(); }

  const std::vector<std::shared_ptr<EmbeddedAlarm>>& alarmList() const;
  void addAlarm(std::shared_ptr<EmbeddedAlarm> alarm);
  void removeAlarm(const Alarm& alarm);
  bool areAlarmsChanged() const;

  std::vector<RecurrenceRule> rules() const;
  void setRules(std::vector<RecurrenceRule> rules);
  bool areRulesChanged() const { return rules_.isChanged(); }

  // Whether anything has to be written; new items always have.
  virtual bool isChanged() const;
  // Forgets the changes: the item is now what the store holds as `document`.
  void becomeStored(std::shared_ptr<const Document> document, std::optional<WallTime> detached);
  // The item was removed: of its data only the identifier is left.
  void becomeRemoved();

 protected:
  // Detached occurrences do not repeat by themselves.
  virtual bool repeats() const { return true; }

 private:
  void loadAlarms() const;
  std::vector<RecurrenceRule> storedRules() const;

  std::shared_ptr<Records> records_;
  EntityType kind_;
  std::shared_ptr<const Document> document_;
  std::optional<WallTime> detached_;
  std::string identifier_;
  std::string uid_;
  mutable const Fields* fields_ = nullptr;  // of document_, or those of an empty item
  mutable std::shared_ptr<EmbeddedCalendar> calendar_;
  std::array<Editable<Text>, kTextFields> texts_;
  mutable std::optional<std::vector<std::shared_ptr<EmbeddedAlarm>>> alarms_;
  Editable<std::vector<RecurrenceRule>> rules_;
};

}  // namespace ek::embedded
