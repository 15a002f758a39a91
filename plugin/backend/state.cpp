#include <memory>
#include <mutex>
#include <utility>

#include "plugin/backend/ical_ek_functions.h"
#include "plugin/shell/globals.h"

namespace zuno {

namespace {

// Guards the making of the instance; recursive as the class's monitor is.
std::recursive_mutex& classMonitor() {
  static std::recursive_mutex monitor;
  return monitor;
}

iCalEKFunctions* sharedInstance = nullptr;

}  // namespace

iCalEKFunctions* iCalEKFunctions::sharedICalFunctions() {
  const std::lock_guard lock(classMonitor());
  if (sharedInstance == nullptr) {
    if (iCalEKFunctions* made = allocWithZone()) made->init();
  }
  return sharedInstance;
}

iCalEKFunctions* iCalEKFunctions::allocWithZone() {
  const std::lock_guard lock(classMonitor());
  if (sharedInstance != nullptr) return nullptr;
  static iCalEKFunctions& instance = *new iCalEKFunctions;  // outlives every static object that it uses
  sharedInstance = &instance;
  return sharedInstance;
}

void iCalEKFunctions::init() {
  m_ekEventStore = ek::makeEventStore(ek::kEntityMaskEvent | ek::kEntityMaskReminder);
  m_AddressBook = ek::makeAddressBook();
}

void iCalEKFunctions::exchangeCursor(Cursor& other) { std::swap(static_cast<Cursor&>(*this), other); }

int iCalEKFunctions::resetLastErrorString() {
  lastErrorString.reset();
  return 0;
}

void iCalEKFunctions::releaseItems() {
  m_ekCalendar.reset();
  m_ekReminder.reset();
  m_ekEvent.reset();
  m_ekParticipant.reset();
  m_ekAlarm.reset();
  m_ekRecurrenceRule.reset();
  m_ekRecurrenceEnd.reset();
  m_ekReminderPredicate.reset();
  m_ekEventPredicate.reset();
}

int iCalEKFunctions::fail(ErrorNumber number) {
  g_llasterror = number;
  return -1;
}

int iCalEKFunctions::failRaised(const std::string& reason) {
  lastErrorString = reason;
  return fail(kErrUnclassified);
}

Value iCalEKFunctions::noValue(ErrorNumber number) {
  fail(number);
  return {};
}

}  // namespace zuno
