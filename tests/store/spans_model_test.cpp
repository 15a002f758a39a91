// Spans against a model: a series is a plain list of places, and each edit is done to the list as well.
#include <algorithm>
#include <random>

#include "foundation/time_zone.h"
#include "tests/store/store_fixture.h"

namespace {

using ek::RecurrenceRule;
using ek::Span;
using foundation::WallTime;
using zuno_test::Date;
using zuno_test::days;
using zuno_test::hours;
using zuno_test::minutes;

struct Occurrence {
  WallTime place{};  // in its series, by which "future" goes
  WallTime start{};
  std::string title;
  int series = 0;
  bool isMoved = false;   // its time is its own
  bool isTitled = false;  // its title is its own
};

struct Kind {
  const char* name;
  RecurrenceRule rule;
  bool isAllDay = false;
};

std::vector<Kind> kinds() {
  using F = ek::RecurrenceFrequency;
  const auto count = [](std::int64_t number) { return ek::RecurrenceEnd::withOccurrenceCount(number); };
  const Date last = std::chrono::sys_days(std::chrono::year(2025) / 6 / 30);
  const auto until = ek::RecurrenceEnd::withEndDate(last);
  return {
      {"DailyEndless", {.frequency = F::daily, .interval = 3}},
      {"DailyCounted", {.frequency = F::daily, .interval = 2, .end = count(60)}},
      {"DailyAllDayUntil", {.frequency = F::daily, .interval = 5, .end = until}, true},
      {"WeeklyOnTwoDays",
       {.frequency = F::weekly, .interval = 2, .firstDayOfTheWeek = 2, .daysOfTheWeek = {{4, 0}, {6, 0}}}},
      {"WeeklyCounted", {.frequency = F::weekly, .daysOfTheWeek = {{2, 0}, {4, 0}}, .end = count(40)}},
      {"WeeklyAllDayCounted", {.frequency = F::weekly, .end = count(30)}, true},
      {"MonthlyOnDays", {.frequency = F::monthly, .daysOfTheMonth = {1, 31}, .end = until}},
      {"MonthlyOnTheLastFriday", {.frequency = F::monthly, .daysOfTheWeek = {{6, -1}}}},
      {"MonthlyAllDayEndless", {.frequency = F::monthly}, true},
      {"YearlyInMonths", {.frequency = F::yearly, .monthsOfTheYear = {1, 3, 10, 12}, .end = count(11)}},
  };
}

class SpansModel : public zuno_test::StoreFixture,
                   public testing::WithParamInterface<std::tuple<std::size_t, int>> {
 protected:
  static constexpr auto kFrom = std::chrono::sys_days(std::chrono::year(2024) / 1 / 1);
  static constexpr auto kTo = std::chrono::sys_days(std::chrono::year(2027) / 1 / 1);

  Kind kind_ = kinds()[std::get<0>(GetParam())];
  std::mt19937 random_{static_cast<unsigned>(std::get<1>(GetParam()))};
  std::shared_ptr<const foundation::TimeZone> berlin_ = foundation::TimeZone::named("Europe/Berlin");
  std::vector<Occurrence> model_;
  int lastSeries_ = 0;
  int lastTitle_ = 0;

  void makeSeries() {
    // 8:30 in Berlin on 31 January 2024, a Wednesday.
    const auto event = newEvent("original", utc(2024, 1, 31, 7, 30));
    event->setAllDay(kind_.isAllDay);
    event->addRecurrenceRule(kind_.rule);
    save(event);
    const auto found = eventsBetween(kFrom, kTo);
    for (std::size_t i = 0; i < found->size(); ++i) {
      const WallTime wall = berlin_->wallTimeOf(*found->at(i)->startDate());
      model_.push_back({.place = wall, .start = wall, .title = "original"});
    }
    ASSERT_GT(model_.size(), 6U);
  }

  std::size_t chosen() { return std::uniform_int_distribution<std::size_t>(0, model_.size() - 1)(random_); }
  std::shared_ptr<ek::Event> open(const Occurrence& occurrence) {
    const auto found = eventsBetween(kFrom, kTo);
    for (std::size_t i = 0; i < found->size(); ++i) {
      auto event = found->at(i);
      if (event->startDate() == berlin_->instantOf(occurrence.start) && event->title() == occurrence.title)
        return event;
    }
    return nullptr;
  }
  bool isOfFuture(const Occurrence& each, const Occurrence& first) const {
    return each.series == first.series && each.place >= first.place;
  }
  // What "future" changed is a series of its own from then on.
  void split(const Occurrence& first) {
    ++lastSeries_;
    for (Occurrence& each : model_)
      if (isOfFuture(each, first)) each.series = lastSeries_;
  }

  void rename(std::size_t index, Span span) {
    const auto event = open(model_[index]);
    ASSERT_TRUE(event);
    const std::string title = "title " + std::to_string(++lastTitle_);
    event->setTitle(title);
    save(event, span);
    const Occurrence first = model_[index];
    if (span == Span::thisEvent) {
      model_[index].isTitled = true;
    } else {
      for (Occurrence& each : model_)
        if (isOfFuture(each, first) && !each.isTitled && !each.isMoved) each.title = title;
      split(first);
    }
    model_[index].title = title;
  }
  void move(std::size_t index, Span span, minutes by) {
    const auto event = open(model_[index]);
    ASSERT_TRUE(event);
    const WallTime start = model_[index].start + by;
    const auto length = *event->endDate() - *event->startDate();
    event->setStartDate(berlin_->instantOf(start));
    event->setEndDate(berlin_->instantOf(start) + length);
    save(event, span);
    const Occurrence first = model_[index];
    if (span == Span::thisEvent) {
      model_[index].isMoved = true;
      model_[index].start = start;
      return;
    }
    for (Occurrence& each : model_) {
      if (!isOfFuture(each, first)) continue;
      each.place += by;
      if (!each.isMoved || each.start == first.start) each.start += by;
    }
    const Occurrence moved = model_[index];
    split(moved);
  }
  void remove(std::size_t index, Span span) {
    const auto event = open(model_[index]);
    ASSERT_TRUE(event);
    StoreFixture::remove(event, span);
    const Occurrence first = model_[index];
    if (span == Span::thisEvent)
      model_.erase(model_.begin() + static_cast<std::ptrdiff_t>(index));
    else
      std::erase_if(model_, [&](const Occurrence& each) { return isOfFuture(each, first); });
  }

  void step() {
    const std::size_t index = chosen();
    switch (std::uniform_int_distribution<int>(0, 6)(random_)) {
      case 0:
        return rename(index, Span::thisEvent);
      case 1:
        return rename(index, Span::futureEvents);
      case 2:
        return kind_.isAllDay ? rename(index, Span::thisEvent) : move(index, Span::thisEvent, minutes(35));
      case 3:
        return kind_.isAllDay ? rename(index, Span::futureEvents)
                              : move(index, Span::futureEvents, minutes(10));
      case 4:
      case 5:
        return remove(index, Span::thisEvent);
      default:
        // Not too much at once.
        return index > model_.size() / 2 ? remove(index, Span::futureEvents) : rename(index, Span::thisEvent);
    }
  }

  std::vector<std::string> expected() const {
    std::vector<std::string> lines;
    for (const Occurrence& each : model_)
      lines.push_back(foundation::description(berlin_->instantOf(each.start), *berlin_) + " " + each.title);
    std::ranges::sort(lines);
    return lines;
  }
  std::vector<std::string> stored(ek::EventStore& store) const {
    const auto found = store.eventsMatchingPredicate(store.predicateForEvents(kFrom, kTo, {}));
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < found->size(); ++i) {
      const auto event = found->at(i);
      lines.push_back(foundation::description(*event->startDate(), *berlin_) + " " +
                      event->title().value_or(""));
    }
    std::ranges::sort(lines);
    return lines;
  }
};

TEST_P(SpansModel, EditsDoWhatTheirSpanSays) {
  makeSeries();
  for (int i = 0; i < 14 && model_.size() > 1; ++i) {
    SCOPED_TRACE("step " + std::to_string(i));
    step();
    ASSERT_EQ(stored(*store_), expected()) << "by the kept answer";
    ASSERT_EQ(stored(*elsewhere()), expected()) << "read from nothing";
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SpansModel,
                         testing::Combine(testing::Range<std::size_t>(0, 10), testing::Range(1, 7)),
                         [](const auto& run) {
                           return std::string(kinds()[std::get<0>(run.param)].name) + "_" +
                                  std::to_string(std::get<1>(run.param));
                         });

}  // namespace
