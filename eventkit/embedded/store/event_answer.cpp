#include "eventkit/embedded/store/event_answer.h"

#include <algorithm>
#include <numeric>
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
  const std::int64_t now = database.change();
  if (!isComparable || !readChanged(database, before, now)) {
    calendars_ = calendars;
    readAll(database);
  }
  change_ = now;
}

std::size_t EventAnswer::bytes() const {
  return entries_.capacity() * sizeof(Entry) + origins_.capacity() * sizeof(Origin) +
         byItem_.capacity() * sizeof(std::uint32_t);
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
  byItem_.clear();
  isOrdered_ = false;
  setWindow();
  if (conditions_.end < conditions_.start) return;
  const std::int64_t start = secondsOf(conditions_.start);
  const std::int64_t end = secondsOf(conditions_.end);
  visitSingleEvents(database, start, end, [this](SingleEventRow& row) { add(originOf(std::move(row))); });
  records_->series().visit(start, end, [this](const SeriesCache::Entry& entry) { add(originOf(entry)); });
}

// False when too much changed for this to be the cheaper way.
bool EventAnswer::readChanged(Database& database, std::int64_t since, std::int64_t now) {
  const auto changed = itemsChangedSince(database, since, now);
  if (!changed) return false;
  if (conditions_.end < conditions_.start) return true;
  for (const RowId item : *changed) readItem(database, item);
  return true;
}

// Most changes, of notes or alarms say, leave the answer as it is.
void EventAnswer::readItem(Database& database, RowId item) {
  Origin now = currentOrigin(database, item);
  const std::uint32_t index = indexOf(item);
  if (index == origins_.size()) {
    if (!now.isThere) return;
    byItem_.insert(
        std::ranges::upper_bound(byItem_, item, {}, [this](auto each) { return origins_[each].item; }),
        index);
    origins_.push_back({.item = item});
  }
  if (now != origins_[index]) change(index, std::move(now));
}

EventAnswer::Origin EventAnswer::originOf(SingleEventRow row) const {
  const Date start = instantOf(row.event.start, *basis_.zone);
  const Date end = instantOf(row.event.end, *basis_.zone);
  if (!covers(row.calendar) || !isInRange(start, end)) return {.item = row.item};
  return {.item = row.item,
          .isThere = true,
          .isAllDay = row.event.isAllDay,
          .start = start,
          .end = end,
          .title = std::move(row.event.title)};
}

EventAnswer::Origin EventAnswer::originOf(const SeriesCache::Entry& entry) const {
  if (!covers(entry.calendar)) return {.item = entry.item};
  return {.item = entry.item, .isThere = true, .series = entry.series, .isEndless = entry.isEndless()};
}

EventAnswer::Origin EventAnswer::currentOrigin(Database& database, RowId item) const {
  if (const SeriesCache::Entry* series = records_->series().find(item)) return originOf(*series);
  auto single = findSingleEvent(database, item);
  return single ? originOf(*std::move(single)) : Origin{.item = item};
}

// That of the item's origin, or how many there are when it has none.
std::uint32_t EventAnswer::indexOf(RowId item) {
  const auto itemOf = [this](std::uint32_t index) { return origins_[index].item; };
  if (byItem_.size() != origins_.size()) {
    byItem_.resize(origins_.size());
    std::iota(byItem_.begin(), byItem_.end(), 0U);
    std::ranges::sort(byItem_, {}, itemOf);
  }
  const auto place = std::ranges::lower_bound(byItem_, item, {}, itemOf);
  const bool isKnown = place != byItem_.end() && itemOf(*place) == item;
  return isKnown ? *place : static_cast<std::uint32_t>(origins_.size());
}

void EventAnswer::add(Origin origin) {
  if (!origin.isThere) return;
  origins_.push_back(std::move(origin));
  appendEntries(static_cast<std::uint32_t>(origins_.size() - 1), entries_);
}

void EventAnswer::appendEntries(std::uint32_t index, std::vector<Entry>& entries) const {
  const Origin& origin = origins_[index];
  if (!origin.isThere) return;
  if (!origin.series) {
    entries.push_back({.start = origin.start, .end = origin.end, .origin = index});
    return;
  }
  const Date end = origin.isEndless ? std::min(conditions_.end, endlessEnd_) : conditions_.end;
  scratch_.clear();
  recurrence::occurrencesIn(*origin.series, {.start = conditions_.start, .end = end}, *basis_.zone, scratch_);
  for (const recurrence::Occurrence& occurrence : scratch_)
    entries.push_back({.start = occurrence.start,
                       .end = occurrence.end,
                       .recurrenceId = occurrence.recurrenceId,
                       .origin = index,
                       .override = occurrence.override});
}

std::vector<EventAnswer::Entry> EventAnswer::orderedEntries(std::uint32_t index) const {
  std::vector<Entry> entries;
  appendEntries(index, entries);
  std::sort(entries.begin(), entries.end(), inOrder());
  return entries;
}

void EventAnswer::change(std::uint32_t index, Origin now) {
  const std::vector<std::size_t> places = isOrdered_ ? placesOf(index) : std::vector<std::size_t>();
  const bool wasThere = origins_[index].isThere;
  origins_[index] = std::move(now);
  const std::vector<Entry> entries = orderedEntries(index);
  if (isOrdered_ && places.size() == entries.size() && overwrite(places, entries)) return;
  if (wasThere) std::erase_if(entries_, [index](const Entry& entry) { return entry.origin == index; });
  const auto kept = static_cast<std::ptrdiff_t>(entries_.size());
  entries_.insert(entries_.end(), entries.begin(), entries.end());
  if (isOrdered_) std::inplace_merge(entries_.begin(), entries_.begin() + kept, entries_.end(), inOrder());
}

// Where the entries of an origin stand while they are in order.
std::vector<std::size_t> EventAnswer::placesOf(std::uint32_t index) const {
  std::vector<std::size_t> places;
  for (const Entry& entry : orderedEntries(index)) {
    const auto place = std::lower_bound(entries_.begin(), entries_.end(), entry, inOrder());
    places.push_back(static_cast<std::size_t>(place - entries_.begin()));
  }
  return places;
}

// Puts entries in place of as many others. False when more than one of them belongs elsewhere then: a change
// of one occurrence moves one.
bool EventAnswer::overwrite(const std::vector<std::size_t>& places, const std::vector<Entry>& entries) {
  for (std::size_t i = 0; i < places.size(); ++i) entries_[places[i]] = entries[i];
  const auto isBefore = [this](std::size_t left, std::size_t right) {
    return left >= entries_.size() || right >= entries_.size() ||  // left of the first is beyond the last
           comesBefore(entries_[left], entries_[right]);
  };
  std::optional<std::size_t> strayed;
  for (const std::size_t place : places) {
    if (isBefore(place - 1, place) && isBefore(place, place + 1)) continue;
    if (strayed || !isBefore(place - 1, place + 1)) return false;
    strayed = place;
  }
  if (!strayed) return true;
  const auto from = entries_.begin() + static_cast<std::ptrdiff_t>(*strayed);
  const Entry entry = *from;
  if (const auto to = std::lower_bound(from + 1, entries_.end(), entry, inOrder()); to != from + 1)
    std::rotate(from, from + 1, to);
  else
    std::rotate(std::lower_bound(entries_.begin(), from, entry, inOrder()), from, from + 1);
  return true;
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
  std::sort(entries_.begin(), entries_.end(), inOrder());
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
