#include "tests/plugin/backend_test.h"

namespace zuno::test {
namespace {

using ek::Span;
const ek::Error kRefusal{ek::ErrorCode::calendarReadOnly, "no"};

class Saving : public BackendTest {};

TEST_F(Saving, TheOpenItemOfTheType) {
  openEvent();
  const std::pair<TextArgument, Span> spans[] = {{"this", Span::thisEvent},
                                                 {"FUTURE", Span::futureEvents},
                                                 {"All", Span::futureEvents},
                                                 {std::nullopt, Span::thisEvent}};
  for (const auto& [span, reach] : spans) {
    expectOutcome(backend_.saveItem("Event", span), 0);
    EXPECT_EQ(store_.lastSpan, reach);
  }
  openReminder();
  expectOutcome(backend_.saveItem("task", {}), 0);
  expectOutcome(backend_.saveItem("REMINDER", "all"), 0);
  EXPECT_EQ(store_.saves, 6);
}

TEST_F(Saving, ACalendarGoesToTheAccountOfTheDefaultCalendar) {
  const ek::Source account{.identifier = "OTHER", .title = "There"};
  work_->account = account;
  ASSERT_EQ(backend_.newItem("calendar"), 0);
  expectOutcome(backend_.saveItem("calendar", {}), 0);
  const auto home = store_.addCalendar("Home");
  ASSERT_EQ(backend_.openCalendarWithTitle("Home"), 0);
  expectOutcome(backend_.saveItem("calendar", {}), 0);
  EXPECT_EQ(home->account, account);
  expectOutcome(backend_.saveItem("reminderlist", {}), 0);
  EXPECT_EQ(home->account, chores_->account);

  // Where there is no default calendar there is no account either: the store will refuse.
  store_.reset();
  expectOutcome(backend_.saveItem("calendar", {}), 0);
  EXPECT_EQ(home->account, std::nullopt);
}

TEST_F(Saving, RefusalsByType) {
  store_.refuse(kRefusal);
  openCalendar();
  expectOutcome(backend_.saveItem("calendar", {}), 9017);
  expectOutcome(backend_.saveItem("reminderlist", {}), 9017);
  work_->modifiable = false;
  expectOutcome(backend_.saveItem("calendar", {}), 9071);
  expectOutcome(backend_.saveItem("reminderlist", {}), 9017);
  openReminder();
  expectOutcome(backend_.saveItem("reminder", {}), 9019);
  const auto event = openEvent();
  expectOutcome(backend_.saveItem("event", "this"), 9018);
  event->people.resize(1);
  expectOutcome(backend_.saveItem("event", "this"), 9070);
}

// Nothing to save is no failure for an event; for the others a refusal is one with or without an error.
TEST_F(Saving, ARefusalWithoutAnErrorIsNoneForAnEvent) {
  store_.refuse(std::nullopt);
  openEvent();
  expectOutcome(backend_.saveItem("event", "this"), 0);
  openReminder();
  expectOutcome(backend_.saveItem("reminder", {}), 9019);
  openCalendar();
  expectOutcome(backend_.saveItem("calendar", {}), 9017);
}

TEST_F(Saving, AStoreThatRaisesGivesZeroAndAnError) {
  openEvent();
  store_.raiseAt(1);
  EXPECT_EQ(backend_.saveItem("event", {}), 0);
  EXPECT_EQ(takeError(), 9999);
  EXPECT_EQ(backend_.getLastErrorString(), "the store broke");
}

class Removing : public BackendTest {
 protected:
  const std::string event_ = store_.events().front()->identifier;
  const std::string reminder_ = store_.reminders().front()->identifier;
};

TEST_F(Removing, Refusals) {
  store_.refuse(kRefusal);
  expectOutcome(backend_.removeItem("calendar", work_->identifier, {}, {}), 9022);
  expectOutcome(backend_.removeItem("reminder", reminder_, {}, {}), 9078);
  expectOutcome(backend_.removeItem("event", event_, {}, "all"), 9079);
  store_.refuse(std::nullopt);
  expectOutcome(backend_.removeItem("event", event_, {}, "all"), 9079);
}

TEST_F(Removing, AStoreThatRaisesGivesZeroAndAnError) {
  for (const int use : {1, 2}) {
    store_.raiseAt(use);
    EXPECT_EQ(backend_.removeItem("event", event_, {}, "all"), 0);
    EXPECT_EQ(takeError(), 9999);
  }
}

}  // namespace
}  // namespace zuno::test
