// A store in a folder of its own, with Berlin's local time, and the words that its tests are written in.
#pragma once

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "eventkit/embedded/storage/item_table.h"
#include "eventkit/embedded/store/embedded_store.h"
#include "tests/foundation/scoped_variable.h"
#include "tests/storage/temporary_folder.h"

namespace zuno_test {

using ek::Date;
using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

class StoreFixture : public testing::Test {
 protected:
  static Date utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0) {
    return std::chrono::sys_days(std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day)) +
           hours(hour) + minutes(minute);
  }

  std::string path() const { return folder_.file("calendars.sqlite"); }
  // Another store on the same file, over a connection of its own, as another process has it.
  std::shared_ptr<ek::EventStore> elsewhere() const {
    return std::make_shared<ek::embedded::EmbeddedStore>(folder_.file("./calendars.sqlite"));
  }

  std::shared_ptr<ek::Event> newEvent(const std::string& title, Date start, seconds length = hours(1)) {
    auto event = store_->newEvent();
    event->setCalendar(store_->defaultCalendarForNewEvents());
    event->setTitle(title);
    event->setStartDate(start);
    event->setEndDate(start + length);
    return event;
  }
  void save(const std::shared_ptr<ek::Event>& event, ek::Span span = ek::Span::thisEvent) {
    std::optional<ek::Error> error;
    EXPECT_TRUE(store_->saveEvent(event, span, error)) << (error ? error->text : "nothing to do");
  }
  void remove(const std::shared_ptr<ek::Event>& event, ek::Span span) {
    std::optional<ek::Error> error;
    EXPECT_TRUE(store_->removeEvent(event, span, error)) << (error ? error->text : "nothing to do");
  }

  // Puts an item into the default calendar or list as its text says; a line break is "\n" here.
  ek::embedded::RowId import(const std::string& text) {
    using namespace ek::embedded;
    const auto database = Database::shared(path());
    ItemTable items(*database);
    Database::Transaction writing(*database, Database::Transaction::Kind::writing);
    const bool isEvent = text.starts_with("BEGIN:VEVENT");
    const RowId calendar = isEvent ? 1 : 2;
    const auto components = ek::ical::parseComponents(text);
    std::string why;
    const auto index = indexItem(components, items.zoneFinder(calendar), why);
    if (!index) throw std::runtime_error(why);
    const RowId row = items.insert(calendar, "", text, *index);
    writing.commit();
    return row;
  }
  std::string textOf(const std::string& identifier) {
    using namespace ek::embedded;
    const auto database = Database::shared(path());
    const auto row = ItemTable(*database).findByIdentifier(identifier);
    return row ? row->text : "";
  }

  std::shared_ptr<const ek::EventList> eventsBetween(Date from, Date to) {
    return store_->eventsMatchingPredicate(store_->predicateForEvents(from, to, {}));
  }
  std::shared_ptr<ek::Event> eventAt(Date date) {
    const auto found = eventsBetween(date, date + seconds(1));
    for (std::size_t i = 0; i < found->size(); ++i)
      if (const auto event = found->at(i); event->startDate() == date) return event;
    return nullptr;
  }
  static std::vector<std::string> titlesOf(const ek::EventList& events) {
    std::vector<std::string> titles;
    for (std::size_t i = 0; i < events.size(); ++i) titles.push_back(events.at(i)->title().value_or(""));
    return titles;
  }
  static std::vector<Date> startsOf(const ek::EventList& events) {
    std::vector<Date> starts;
    for (std::size_t i = 0; i < events.size(); ++i) starts.push_back(events.at(i)->startDate().value());
    return starts;
  }

  ScopedVariable zone_{"TZ", "Europe/Berlin"};
  TemporaryFolder folder_;
  std::shared_ptr<ek::EventStore> store_ = std::make_shared<ek::embedded::EmbeddedStore>(path());
};

}  // namespace zuno_test
