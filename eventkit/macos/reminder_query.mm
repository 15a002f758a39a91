#include "eventkit/macos/reminder_query.h"

#include <string>
#include <vector>

#include "eventkit/macos/conversions.h"
#include "eventkit/macos/guard.h"
#include "eventkit/macos/reminder.h"

namespace ek::macos {

namespace {

// One query's answer. As with events, an object is handed out once, and not after a change.
class ReminderAnswer final : public ReminderList {
 public:
  ReminderAnswer(Ref<EKEventStore> store, Changes::Moment asked, Ref<NSArray> found)
      : store_(std::move(store)),
        asked_(std::move(asked)),
        found_(std::move(found)),
        isGiven_([found_.get() count]) {}

  std::size_t size() const override { return isGiven_.size(); }

  std::shared_ptr<CalendarItem> at(std::size_t index) const override {
    return guarded([&] {
      EKReminder* reminder = [found_.get() objectAtIndex:index];
      if (!isGiven_[index] && asked_.isNow()) {
        isGiven_[index] = true;
        return itemOf(store_, reminder);
      }
      return itemOf(store_, [store_.get() calendarItemWithIdentifier:[reminder calendarItemIdentifier]]);
    });
  }

 private:
  Ref<EKEventStore> store_;
  Changes::Moment asked_;
  Ref<NSArray> found_;
  mutable std::vector<bool> isGiven_;
};

}  // namespace

// By value: the block takes copies along, and may run long after the caller has gone.
void fetchReminders(Ref<EKEventStore> store, NSPredicate* predicate, const Changes& changes,
                    EventStore::ReminderCompletion completion) {
  const Changes::Moment asked = changes.now();
  [store.get()
      fetchRemindersMatchingPredicate:predicate
                           completion:^(NSArray* found) {
                             completion(found != nil ? std::make_shared<const ReminderAnswer>(
                                                           store, asked, Ref<NSArray>::adopt([found copy]))
                                                     : nullptr);
                           }];
}

}  // namespace ek::macos
