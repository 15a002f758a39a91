// EventKit's classes in memory, for machines that have no EventKit: what tests set up and look at.
#pragma once

#include <string>

namespace stand_in {

// The calendars of one user. EKEventStore objects belong to the database that was made or chosen last.
class Database {
 public:
  Database();  // with a calendar "Calendar" and a list "Reminders"
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  void choose() const;
  void* object() const { return object_; }

 private:
  void* object_;
};

enum class Access { undecided, denied, granted };
// The user's decision as the system knows it; `granted` to begin with.
void setAccess(Access access);
// Consents that were asked for and not answered yet; answering delivers them on a thread of their own.
int openRequests();
void answerRequests(bool isGranted);

// The next call of the store's fails with that error, or raises for that reason.
void failNext(const std::string& domain, int code, const std::string& text);
void raiseNext(const std::string& reason);

// Whether stores tell of changes at once, as to begin with, or not at all: a busy process hears of them late.
void setTellsOfChanges(bool tells);

// Queries for events and for reminders that were run since the last call.
int takeQueryCount();

struct Attendee {
  std::string url;
  std::string name;
  int status = 0, role = 0, type = 0;
  std::string street, city, region, code, country;  // of the contact with that address; all empty: none
};
void addAttendee(const Database& database, const std::string& itemTitle, const Attendee& attendee);
void makeReadOnly(const Database& database, const std::string& calendarTitle);

// What NSTimeZone takes for local time.
void setLocalTimeZone(const std::string& name);

// Stand-in objects that are alive now.
long liveObjects();

}  // namespace stand_in
