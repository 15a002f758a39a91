#include "tests/contract/store_contract.h"

namespace ek::contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<double> offsetsOf(const CalendarItem& item) {
  std::vector<double> offsets;
  for (const auto& alarm : item.alarms()) offsets.push_back(alarm->relativeOffset());
  return offsets;
}

TEST_P(StoreContract, AnAlarmHasADateOrAnOffset) {
  const auto alarm = store_->alarmWithRelativeOffset(-900);
  EXPECT_EQ(alarm->relativeOffset(), -900);
  EXPECT_EQ(alarm->absoluteDate(), std::nullopt);
  EXPECT_EQ(alarm->type(), AlarmType::display);
  alarm->setAbsoluteDate(utc(2024, 5, 1, 9));
  EXPECT_EQ(alarm->relativeOffset(), 0);
  EXPECT_EQ(alarm->absoluteDate(), utc(2024, 5, 1, 9));
  alarm->setRelativeOffset(60);
  EXPECT_EQ(alarm->relativeOffset(), 60);
  EXPECT_EQ(alarm->absoluteDate(), std::nullopt);
  EXPECT_EQ(store_->alarmWithAbsoluteDate(utc(2024, 5, 2))->absoluteDate(), utc(2024, 5, 2));
}

TEST_P(StoreContract, TheLastActionGivenToAnAlarmCounts) {
  const auto alarm = store_->alarmWithRelativeOffset(0);
  const auto expect = [&](AlarmType type, std::optional<std::string> address,
                          std::optional<std::string> sound, std::optional<std::string> url) {
    EXPECT_EQ(alarm->type(), type);
    EXPECT_EQ(alarm->emailAddress(), address);
    EXPECT_EQ(alarm->soundName(), sound);
    EXPECT_EQ(alarm->url(), url);
  };
  alarm->setEmailAddress("ann@example.org");
  expect(AlarmType::email, "ann@example.org", {}, {});
  alarm->setSoundName("Basso");
  expect(AlarmType::audio, {}, "Basso", {});
  alarm->setUrl("file:///tmp/run");
  expect(AlarmType::procedure, {}, {}, "file:///tmp/run");
  alarm->setEmailAddress("ann@example.org");
  expect(AlarmType::email, "ann@example.org", {}, {});
  alarm->setEmailAddress({});
  expect(AlarmType::display, {}, {}, {});
}

TEST_P(StoreContract, AlarmsComeBackInTheOrderOfAddition) {
  const auto event = newEvent("Review", utc(2024, 5, 1, 9), utc(2024, 5, 1, 10));
  for (const double offset : {-60.0, -86400.0, -60.0, 0.0})
    event->addAlarm(store_->alarmWithRelativeOffset(offset));
  const auto audible = store_->alarmWithAbsoluteDate(utc(2024, 4, 30));
  audible->setSoundName("Basso");
  event->addAlarm(audible);
  save(event);
  const auto read = reread(event);
  EXPECT_THAT(offsetsOf(*read), ElementsAre(-60, -86400, -60, 0, 0));
  const auto last = read->alarms().back();
  EXPECT_EQ(last->absoluteDate(), utc(2024, 4, 30));
  EXPECT_EQ(last->type(), AlarmType::audio);
  EXPECT_EQ(last->soundName(), "Basso");
}

TEST_P(StoreContract, ChangingAnAlarmChangesItsItem) {
  const auto event = newEvent("Review", utc(2024, 5, 1, 9), utc(2024, 5, 1, 10));
  event->addAlarm(store_->alarmWithRelativeOffset(-60));
  event->addAlarm(store_->alarmWithRelativeOffset(-120));
  save(event);
  const auto opened = store_->eventWithIdentifier(event->eventIdentifier().value());
  opened->alarms().at(1)->setRelativeOffset(-300);
  EXPECT_THAT(offsetsOf(*opened), ElementsAre(-60, -300));
  std::optional<Error> error;
  EXPECT_TRUE(store_->saveEvent(opened, Span::thisEvent, error));
  EXPECT_THAT(offsetsOf(*reread(event)), ElementsAre(-60, -300));
}

TEST_P(StoreContract, AlarmsAreRemovedOneByOne) {
  const auto event = newEvent("Review", utc(2024, 5, 1, 9), utc(2024, 5, 1, 10));
  for (const double offset : {-60.0, -120.0, -180.0})
    event->addAlarm(store_->alarmWithRelativeOffset(offset));
  save(event);
  event->removeAlarm(store_->alarmWithRelativeOffset(-7));
  EXPECT_EQ(event->alarms().size(), 3U) << "it never had that one";
  event->removeAlarm(event->alarms().at(1));
  save(event);
  EXPECT_THAT(offsetsOf(*reread(event)), ElementsAre(-60, -180));
  while (!event->alarms().empty()) event->removeAlarm(event->alarms().front());
  save(event);
  EXPECT_THAT(reread(event)->alarms(), IsEmpty());
}

TEST_P(StoreContract, AReminderTakesNoMailOrUrlAlarm) {
  const auto reminder = newReminder("Tax");
  const auto alarm = store_->alarmWithRelativeOffset(-60);
  alarm->setEmailAddress("ann@example.org");
  reminder->addAlarm(alarm);
  EXPECT_EQ(refusal(reminder), ErrorCode::reminderAlarmContainsEmailOrUrl);
  reminder->alarms().front()->setSoundName("Basso");
  EXPECT_EQ(refusal(reminder), std::nullopt);
  EXPECT_EQ(reread(reminder)->alarms().size(), 1U);
}

}  // namespace
}  // namespace ek::contract
