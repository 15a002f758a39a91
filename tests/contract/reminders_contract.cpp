#include "tests/contract/store_contract.h"

namespace ek::contract {
namespace {

using testing::ElementsAre;
using testing::Optional;

DateComponents floating(Date utcReading, bool isDateOnly = false) {
  return {.wall = foundation::WallTime(utcReading.time_since_epoch()), .isDateOnly = isDateOnly, .zone = {}};
}

TEST_P(StoreContract, ANewReminderIsEmpty) {
  const auto reminder = store_->newReminder();
  EXPECT_EQ(reminder->calendar(), nullptr);
  EXPECT_NE(reminder->calendarItemIdentifier(), "");
  EXPECT_EQ(reminder->priority(), 0);
  EXPECT_FALSE(reminder->isCompleted());
  EXPECT_EQ(reminder->completionDate(), std::nullopt);
  EXPECT_FALSE(reminder->dueDateComponents());
  EXPECT_EQ(refusal(reminder), ErrorCode::noCalendar);
  reminder->setCalendar(calendar_);
  EXPECT_EQ(refusal(reminder), ErrorCode::calendarDoesNotAllowReminders);
}

TEST_P(StoreContract, EveryFieldOfAReminderComesBack) {
  const auto reminder = newReminder("Steuer");
  reminder->setNotes("eins\nzwei");
  reminder->setUrl("https://example.org/tax");
  reminder->setPriority(5);
  reminder->setDueDateComponents(floating(utc(2024, 5, 31, 17, 30)));
  add(reminder);
  add(reminder);
  const auto read = reread(reminder);
  ASSERT_TRUE(read);
  EXPECT_THAT(read->title(), Optional(std::string("Steuer")));
  EXPECT_THAT(read->notes(), Optional(std::string("eins\rzwei")));
  EXPECT_THAT(read->url(), Optional(std::string("https://example.org/tax")));
  EXPECT_EQ(read->priority(), 5);
  ASSERT_TRUE(read->dueDateComponents());
  EXPECT_EQ(read->dueDateComponents()->wall, floating(utc(2024, 5, 31, 17, 30)).wall);
  EXPECT_FALSE(read->dueDateComponents()->isDateOnly);
  EXPECT_EQ(read->dueDateComponents()->zone, nullptr);
  EXPECT_EQ(read->calendar()->calendarIdentifier(), list_->calendarIdentifier());
  EXPECT_TRUE(read->creationDate() && read->lastModifiedDate());

  const auto external = store_->calendarItemWithIdentifier(*reminder->calendarItemExternalIdentifier());
  ASSERT_TRUE(external);
  EXPECT_EQ(external->calendarItemIdentifier(), reminder->calendarItemIdentifier());
  EXPECT_EQ(store_->eventWithIdentifier(reminder->calendarItemIdentifier()), nullptr);
}

TEST_P(StoreContract, CompletingAndTheCompletionDateGoTogether) {
  const auto reminder = newReminder("Tax");
  reminder->setCompleted(true);
  const auto completed = reminder->completionDate();
  ASSERT_TRUE(completed);
  EXPECT_LE(std::chrono::abs(*completed - foundation::now()), seconds(10));
  reminder->setCompletionDate(utc(2024, 5, 1, 9));
  reminder->setCompleted(true);
  EXPECT_EQ(reminder->completionDate(), utc(2024, 5, 1, 9)) << "already completed: the date stays";
  reminder->setCompletionDate({});
  EXPECT_FALSE(reminder->isCompleted());
  reminder->setCompletionDate(utc(2024, 5, 2, 9));
  EXPECT_TRUE(reminder->isCompleted());
  add(reminder);
  const auto read = reread(reminder);
  EXPECT_TRUE(read->isCompleted());
  EXPECT_EQ(read->completionDate(), utc(2024, 5, 2, 9));
  reminder->setCompleted(false);
  EXPECT_EQ(reminder->completionDate(), std::nullopt);
  add(reminder);
  EXPECT_FALSE(reread(reminder)->isCompleted());
}

TEST_P(StoreContract, APriorityIsCheckedWhenItIsSaved) {
  const auto reminder = newReminder("Tax");
  for (const int priority : {-1, 10}) {
    reminder->setPriority(priority);
    EXPECT_EQ(reminder->priority(), priority);
    EXPECT_EQ(refusal(reminder), ErrorCode::priorityIsInvalid);
  }
  for (const int priority : {0, 9}) {
    reminder->setPriority(priority);
    EXPECT_EQ(refusal(reminder), std::nullopt);
    EXPECT_EQ(reread(reminder)->priority(), priority);
  }
}

TEST_P(StoreContract, ARepeatingReminderNeedsADueDate) {
  const auto reminder = newReminder("Rent");
  reminder->addRecurrenceRule({.frequency = RecurrenceFrequency::monthly});
  EXPECT_EQ(refusal(reminder), ErrorCode::recurringReminderRequiresDueDate);
  reminder->setDueDateComponents(floating(utc(2024, 5, 1, 12)));
  EXPECT_EQ(refusal(reminder), std::nullopt);
}

TEST_P(StoreContract, OpenRemindersAreFoundByDueDateAndDoneOnesByCompletion) {
  const auto due = [this](const std::string& title, std::optional<DateComponents> date) {
    const auto reminder = newReminder(title);
    reminder->setDueDateComponents(std::move(date));
    add(reminder);
  };
  const auto done = [this](const std::string& title, Date completed) {
    const auto reminder = newReminder(title);
    reminder->setCompletionDate(completed);
    add(reminder);
  };
  due("some day", std::nullopt);
  due("at nine", floating(utc(2024, 5, 1, 9)));
  due("on the day", floating(utc(2024, 5, 1), true));
  done("done at noon", utc(2024, 5, 1, 12));
  due("a second later", floating(utc(2024, 5, 1, 9, 0, 1)));
  done("done a second later", utc(2024, 5, 1, 12, 0, 1));

  const auto all = store_->predicateForReminders({list_});
  EXPECT_THAT(reminderTitles(all), ElementsAre("some day", "at nine", "on the day", "done at noon",
                                               "a second later", "done a second later"));
  const auto open = [this](std::optional<Date> from, std::optional<Date> to) {
    return reminderTitles(store_->predicateForIncompleteReminders(from, to, {list_}));
  };
  // Due times are Berlin's, two hours ahead.
  const Date nine = utc(2024, 5, 1, 7);
  EXPECT_THAT(open({}, {}), ElementsAre("some day", "at nine", "on the day", "a second later"));
  EXPECT_THAT(open({}, nine), ElementsAre("at nine", "on the day"));
  EXPECT_THAT(open({}, nine - seconds(1)), ElementsAre("on the day"));
  EXPECT_THAT(open(nine, {}), ElementsAre("at nine", "a second later"));
  EXPECT_THAT(open({}, utc(2024, 4, 30, 22)), ElementsAre("on the day"));
  EXPECT_THAT(open({}, utc(2024, 4, 30, 21, 59, 59)), testing::IsEmpty());

  const auto completed = [this](std::optional<Date> from, std::optional<Date> to) {
    return reminderTitles(store_->predicateForCompletedReminders(from, to, {list_}));
  };
  const Date noon = utc(2024, 5, 1, 12);
  EXPECT_THAT(completed({}, {}), ElementsAre("done at noon", "done a second later"));
  EXPECT_THAT(completed(noon, {}), ElementsAre("done at noon", "done a second later"));
  EXPECT_THAT(completed(noon + seconds(1), {}), ElementsAre("done a second later"));
  EXPECT_THAT(completed({}, noon), ElementsAre("done at noon"));
}

TEST_P(StoreContract, AReminderQueryCoversItsListsAndWhatIsSaved) {
  const auto errands = addCalendar("Errands", EntityType::reminder);
  const auto predicate = store_->predicateForReminders({errands});
  EXPECT_THAT(reminderTitles(predicate), testing::IsEmpty());
  add(newReminder("elsewhere"));
  const auto milk = newReminder("Milk");
  milk->setCalendar(errands);
  EXPECT_THAT(reminderTitles(predicate), testing::IsEmpty());
  add(milk);
  EXPECT_THAT(reminderTitles(predicate), ElementsAre("Milk"));
  std::optional<Error> error;
  EXPECT_TRUE(store_->removeReminder(milk, error));
  EXPECT_THAT(reminderTitles(predicate), testing::IsEmpty());
  EXPECT_EQ(reread(milk), nullptr);
}

TEST_P(StoreContract, AnEventIsNeverSavedOrRemovedAsAReminder) {
  const auto event = addEvent("Review", utc(2024, 5, 1, 9));
  std::optional<Error> error;
  EXPECT_THROW(store_->saveReminder(event, error), Exception);
  EXPECT_FALSE(store_->removeReminder(event, error));
  EXPECT_TRUE(error);
  EXPECT_TRUE(reread(event));

  EXPECT_THROW(store_->saveReminder(nullptr, error), Exception);
  EXPECT_THROW(store_->removeReminder(nullptr, error), Exception);
  const auto elsewhere = GetParam().make();
  const auto foreign = elsewhere->open()->newReminder();
  foreign->setTitle("Foreign");
  EXPECT_THROW(store_->saveReminder(foreign, error), Exception);
}

}  // namespace
}  // namespace ek::contract
