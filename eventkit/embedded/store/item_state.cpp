#include "eventkit/embedded/store/item_state.h"

#include <algorithm>
#include <utility>

namespace ek::embedded {

namespace {
const Fields kNoFields;
}  // namespace

ItemState::ItemState(std::shared_ptr<Records> records, EntityType kind)
    : records_(std::move(records)), kind_(kind), identifier_(newIdentifier()), uid_(identifier_) {}

ItemState::ItemState(std::shared_ptr<Records> records, std::shared_ptr<const Document> document,
                     std::optional<WallTime> detached)
    : records_(std::move(records)),
      kind_(document->row().kind),
      document_(std::move(document)),
      detached_(detached),
      identifier_(document_->row().identifier),
      uid_(document_->row().uid) {}

const Fields& ItemState::fields() const {
  if (fields_ == nullptr)
    fields_ = document_ ? &document_->fields(document_->componentFor(detached_)) : &kNoFields;
  return *fields_;
}

const std::shared_ptr<EmbeddedCalendar>& ItemState::owner() const {
  if (!calendar_ && document_ && records_->database() != nullptr) {
    CalendarDirectory& calendars = records_->calendars();
    if (const CalendarRow* row = calendars.find(document_->row().calendar))
      calendar_ = std::make_shared<EmbeddedCalendar>(records_, *row, calendars.sourceOf(*row));
  }
  return calendar_;
}

bool ItemState::isOwnerChanged() const {
  return calendar_ && document_ && calendar_->stored().id != document_->row().calendar;
}

const std::array<ItemState::TextField, ItemState::kTextFields>& ItemState::textFields() {
  static constexpr std::array<TextField, kTextFields> fields = {{
      {"SUMMARY", &Fields::title, false, nullptr},
      {"LOCATION", &Fields::location, false, "X-APPLE-STRUCTURED-LOCATION"},
      {"DESCRIPTION", &Fields::notes, false, "X-ALT-DESC"},
      {"URL", &Fields::url, true, nullptr},
  }};
  return fields;
}

const Text& ItemState::text(TextName name) const {
  return texts_[name].current(fields().*textFields()[name].stored);
}

void ItemState::setText(TextName name, Text value) {
  texts_[name].set(std::move(value), fields().*textFields()[name].stored);
}

const std::vector<std::shared_ptr<EmbeddedAlarm>>& ItemState::alarmList() const {
  loadAlarms();
  return *alarms_;
}

void ItemState::loadAlarms() const {
  if (alarms_) return;
  alarms_.emplace();
  for (const AlarmSource& source : fields().alarms)
    alarms_->push_back(std::make_shared<EmbeddedAlarm>(source));
}

void ItemState::addAlarm(std::shared_ptr<EmbeddedAlarm> alarm) {
  loadAlarms();
  alarms_->push_back(std::move(alarm));
}

void ItemState::removeAlarm(const Alarm& alarm) {
  loadAlarms();
  const auto place =
      std::ranges::find_if(*alarms_, [&alarm](const auto& each) { return each.get() == &alarm; });
  if (place != alarms_->end()) alarms_->erase(place);
}

bool ItemState::areAlarmsChanged() const {
  if (!alarms_) return false;
  return alarms_->size() != fields().alarms.size() ||
         std::ranges::any_of(*alarms_, [](const auto& alarm) { return alarm->isChanged(); });
}

std::vector<RecurrenceRule> ItemState::storedRules() const {
  std::vector<RecurrenceRule> rules;
  if (repeats())
    for (const StoredRule& stored : fields().rules) rules.push_back(stored.rule);
  return rules;
}

std::vector<RecurrenceRule> ItemState::rules() const { return rules_.current(storedRules()); }

void ItemState::setRules(std::vector<RecurrenceRule> rules) { rules_.set(std::move(rules), storedRules()); }

bool ItemState::isChanged() const {
  return isNew() || isOwnerChanged() || areRulesChanged() || areAlarmsChanged() ||
         std::ranges::any_of(texts_, [](const auto& text) { return text.isChanged(); });
}

void ItemState::becomeStored(std::shared_ptr<const Document> document, std::optional<WallTime> detached) {
  document_ = std::move(document);
  detached_ = detached;
  identifier_ = document_->row().identifier;
  uid_ = document_->row().uid;
  fields_ = nullptr;
  calendar_ = nullptr;
  for (auto& text : texts_) text.forget();
  rules_.forget();
  if (!alarms_) return;
  // Alarm objects in hand go on standing for the same alarms.
  std::vector<std::shared_ptr<EmbeddedAlarm>> known = std::exchange(alarms_, std::nullopt).value();
  loadAlarms();
  for (auto& alarm : *alarms_) {
    const auto same = std::ranges::find_if(
        known, [&alarm](const auto& each) { return each && each->values() == alarm->values(); });
    if (same == known.end()) continue;
    (*same)->becomeStored(alarm->source()->component);
    alarm = std::exchange(*same, nullptr);
  }
}

void ItemState::becomeRemoved() {
  document_ = nullptr;
  detached_.reset();
  fields_ = nullptr;
  calendar_ = nullptr;
  for (auto& text : texts_) text.forget();
  rules_.forget();
  alarms_.reset();
}

}  // namespace ek::embedded
