#include "eventkit/embedded/store/event_answer.h"

#include <algorithm>
#include <compare>
#include <tuple>
#include <utility>

#include "eventkit/embedded/store/changes.h"
#include "eventkit/embedded/store/event.h"
#include "eventkit/embedded/store/event_lookup.h"

namespace ek::embedded {

namespace {

std::int64_t secondsOf(Date date) { return date.time_since_epoch().count(); }

Date tenYearsAfter(Date date, const TimeZone& zone) {
  constexpr int kYears = 10;
  foundation::WallFields fields = foundation::fieldsOf(zone.wallTimeOf(date));
  fields.year += kYears;
  if (fields.month == 2 && fields.day == 29) fields.day = 28;
  return zone.instantOf(foundation::wallTimeFrom(fields));
}

}  // namespace

std::shared_ptr<Event> EventAnswer::at(std::size_t index) const {
  return guarded([&]() -> std::shared_ptr<Event> {
    Database* database = records_->database();
    if (database == nullptr || records_->generation() != basis_.generation || index >= entries_.size())
      return nullptr;
    order();
    const Entry& entry = entries_[index];
    const Origin& origin = origins_[entry.origin];
    const std::shared_ptr<const Document> document = records_->document(origin.item);
    if (!document) return nullptr;
    if (document->row().change <= change_)
      return std::make_shared<EmbeddedEvent>(records_, document, placementOf(entry));
    if (!origin.series) return EventLookup(records_, *database).firstOccurrence(origin.item);
    return EventLookup(records_, *database).occurrence(origin.item, entry.recurrenceId);
  });
}

bool EventAnswer::isCurrent(const Basis& basis) const {
  return change_ != kNothingRead && basis_ == basis &&
         (conditions_.end <= endlessEnd_ || foundation::now() < validUntil_);
}

void EventAnswer::bringUpToDate(Database& database, const Basis& basis) {
  const Database::Transaction reading(database, Database::Transaction::Kind::reading);
  const auto calendars = calendarsNamed(records_->calendars(), EntityType::event, conditions_.calendars);
  const bool isComparable = change_ != kNothingRead && basis_.generation == basis.generation &&
                            basis_.zone == basis.zone && calendars_ == calendars &&
                            (conditions_.end <= endlessEnd_ || foundation::now() < validUntil_);
  basis_ = basis;
  const std::int64_t before = std::exchange(change_, kNothingRead);
  if (!isComparable || !readChanged(database, before)) {
    calendars_ = calendars;
    readAll(database);
  }
  change_ = database.change();
}

std::size_t EventAnswer::bytes() const {
  return entries_.capacity() * sizeof(Entry) + origins_.capacity() * sizeof(Origin);
}

void EventAnswer::setWindow() {
  const TimeZone& zone = *basis_.zone;
  const Date today = startOfDay(foundation::now(), zone);
  endlessEnd_ = std::max(tenYearsAfter(today, zone), tenYearsAfter(conditions_.start, zone));
  validUntil_ = startOfDay(today + std::chrono::hours(30), zone);
}

void EventAnswer::readAll(Database& database) {
  entries_.clear();
  origins_.clear();
  isOrdered_ = false;
  setWindow();
  if (conditions_.end < conditions_.start) return;
  const std::int64_t start = secondsOf(conditions_.start);
  const std::int64_t end = secondsOf(conditions_.end);
  visitSingleEvents(database, start, end, [this](SingleEventRow& row) {
    if (covers(row.calendar) &&
        isInRange(instantOf(row.event.start, *basis_.zone), instantOf(row.event.end, *basis_.zone)))
      add(row, newOrigin(row.item));
  });
  records_->series().visit(start, end, [this](const SeriesCache::Entry& entry) {
    if (covers(entry.calendar)) add(entry, newOrigin(entry.item));
  });
}

// False when too much changed for this to be the cheaper way.
bool EventAnswer::readChanged(Database& database, std::int64_t since) {
  const auto changed = itemsChangedSince(database, since);
  if (!changed) return false;
  if (conditions_.end < conditions_.start) return true;
  for (const RowId item : *changed) readItem(database, item);
  return true;
}

void EventAnswer::readItem(Database& database, RowId item) {
  const std::uint32_t origin = originOf(item);
  if (origin < origins_.size())
    std::erase_if(entries_, [origin](const Entry& entry) { return entry.origin == origin; });
  const auto kept = static_cast<std::ptrdiff_t>(entries_.size());

  if (const SeriesCache::Entry* series = records_->series().find(item)) {
    if (covers(series->calendar)) add(*series, origin);
  } else if (const auto single = findSingleEvent(database, item)) {
    if (covers(single->calendar) &&
        isInRange(instantOf(single->event.start, *basis_.zone), instantOf(single->event.end, *basis_.zone)))
      add(*single, origin);
  }
  if (!isOrdered_) return;
  const auto before = [this](const Entry& a, const Entry& b) { return comesBefore(a, b); };
  std::sort(entries_.begin() + kept, entries_.end(), before);
  std::inplace_merge(entries_.begin(), entries_.begin() + kept, entries_.end(), before);
}

void EventAnswer::add(const SingleEventRow& row, std::uint32_t origin) {
  if (origin == origins_.size()) newOrigin(row.item);
  origins_[origin] = {
      .item = row.item, .series = nullptr, .isAllDay = row.event.isAllDay, .title = row.event.title};
  entries_.push_back({.start = instantOf(row.event.start, *basis_.zone),
                      .end = instantOf(row.event.end, *basis_.zone),
                      .origin = origin});
}

void EventAnswer::add(const SeriesCache::Entry& entry, std::uint32_t origin) {
  if (origin == origins_.size()) newOrigin(entry.item);
  origins_[origin] = {.item = entry.item, .series = entry.series, .isAllDay = false, .title = {}};
  const Date end = entry.isEndless() ? std::min(conditions_.end, endlessEnd_) : conditions_.end;
  scratch_.clear();
  recurrence::occurrencesIn(*entry.series, {.start = conditions_.start, .end = end}, *basis_.zone, scratch_);
  for (const recurrence::Occurrence& occurrence : scratch_)
    entries_.push_back({.start = occurrence.start,
                        .end = occurrence.end,
                        .recurrenceId = occurrence.recurrenceId,
                        .origin = origin,
                        .override = occurrence.override});
}

// The item's place among the origins, or the next free one.
std::uint32_t EventAnswer::originOf(RowId item) {
  return static_cast<std::uint32_t>(std::ranges::find(origins_, item, &Origin::item) - origins_.begin());
}

std::uint32_t EventAnswer::newOrigin(RowId item) {
  origins_.emplace_back().item = item;
  return static_cast<std::uint32_t>(origins_.size() - 1);
}

bool EventAnswer::covers(RowId calendar) const { return std::ranges::binary_search(calendars_, calendar); }

bool EventAnswer::isInRange(Date start, Date end) const {
  const auto& [from, to, calendars] = conditions_;
  const bool isAtStart = start == from && (end == start || from == to);
  return isAtStart || (end > from && (start < to || start == from));
}

const std::string& EventAnswer::titleOf(const Entry& entry) const {
  const Origin& origin = origins_[entry.origin];
  if (!origin.series) return origin.title;
  return entry.override < 0 ? origin.series->title
                            : origin.series->overrides[static_cast<std::size_t>(entry.override)].title;
}

bool EventAnswer::comesBefore(const Entry& a, const Entry& b) const {
  if (a.start != b.start) return a.start < b.start;
  if (const int titles = titleOf(a).compare(titleOf(b)); titles != 0) return titles < 0;
  return std::tuple(origins_[a.origin].item, a.recurrenceId) <
         std::tuple(origins_[b.origin].item, b.recurrenceId);
}

void EventAnswer::order() const {
  if (isOrdered_) return;
  std::ranges::sort(entries_, [this](const Entry& a, const Entry& b) { return comesBefore(a, b); });
  isOrdered_ = true;
}

Placement EventAnswer::placementOf(const Entry& entry) const {
  const Origin& origin = origins_[entry.origin];
  if (!origin.series)
    return {.start = entry.start,
            .end = entry.end,
            .isAllDay = origin.isAllDay,
            .recurrenceId = std::nullopt,
            .occurrenceDate = std::nullopt,
            .isDetached = false};
  return embedded::placementOf(*origin.series,
                               {.start = entry.start,
                                .end = entry.end,
                                .recurrenceId = entry.recurrenceId,
                                .override = entry.override},
                               *basis_.zone);
}

}  // namespace ek::embedded
