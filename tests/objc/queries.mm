// The stand-in's queries: a range is cut to four years, nothing is sorted, no result is nil rather than
// empty, and reminders arrive on a thread of their own.
#include "tests/objc/objects.h"

using stand_in::mayRead;
using stand_in::misuse;
using stand_in::plus;

namespace {

enum class Wanted { events, reminders, incompleteReminders, completedReminders };
constexpr NSTimeInterval kFourYears = 1461.0 * 86400;

}  // namespace

@interface StandInPredicate : NSPredicate {
 @public
  Wanted wanted;
  NSDate* from;
  NSDate* to;
  NSArray* calendars;
}
@end

@implementation StandInPredicate
- (void)dealloc {
  [from release];
  [to release];
  [calendars release];
  [super dealloc];
}
@end

@interface ReminderDelivery : EKObject {
 @public
  void (^completion)(NSArray*);
  NSArray* reminders;
}
@end

@implementation ReminderDelivery
- (void)deliver:(id)unused {
  (void)unused;
  @autoreleasepool {
    [NSThread sleepForTimeInterval:0.005];
    completion(reminders);
  }
}
- (void)dealloc {
  [completion release];
  [reminders release];
  [super dealloc];
}
@end

namespace {

StandInPredicate* predicateFor(Wanted wanted, NSDate* from, NSDate* to, NSArray* calendars) {
  StandInPredicate* predicate = [[[StandInPredicate alloc] init] autorelease];
  predicate->wanted = wanted;
  predicate->from = [from copy];
  predicate->to = [to copy];
  NSMutableArray* identifiers = [NSMutableArray array];
  for (EKCalendar* calendar in calendars) [identifiers addObject:[calendar calendarIdentifier]];
  predicate->calendars = [identifiers copy];
  return predicate;
}

StandInPredicate* own(NSPredicate* predicate, bool forEvents) {
  if (![predicate isKindOfClass:[StandInPredicate class]]) misuse(@"the predicate was not made by a store");
  auto* made = static_cast<StandInPredicate*>(predicate);
  if ((made->wanted == Wanted::events) != forEvents) misuse(@"the predicate is for items of another kind");
  return made;
}

bool isBefore(NSDate* date, NSDate* other) { return [date compare:other] == NSOrderedAscending; }

bool overlaps(EKEvent* event, NSDate* from, NSDate* to) {
  NSDate* start = [event startDate];
  NSDate* end = [event endDate];
  if ([start isEqual:end]) return [start isEqual:from] || (isBefore(from, start) && isBefore(start, to));
  const bool isInstant = [from isEqual:to];
  return isBefore(from, end) && (isInstant ? !isBefore(from, start) : isBefore(start, to));
}

bool isBetween(NSDate* date, NSDate* from, NSDate* to) {
  if (from == nil && to == nil) return true;
  return date != nil && (from == nil || !isBefore(date, from)) && (to == nil || !isBefore(to, date));
}

NSDate* instantOf(NSDateComponents* due) {
  if (due == nil) return nil;
  NSDateComponents* local = [[due copy] autorelease];
  NSCalendar* calendar =
      [[[NSCalendar alloc] initWithCalendarIdentifier:NSCalendarIdentifierGregorian] autorelease];
  [calendar setTimeZone:[due timeZone] != nil ? [due timeZone] : [NSTimeZone defaultTimeZone]];
  return [calendar dateFromComponents:local];
}

bool isWanted(EKReminder* reminder, StandInPredicate* query) {
  switch (query->wanted) {
    case Wanted::incompleteReminders:
      return ![reminder isCompleted] &&
             isBetween(instantOf([reminder dueDateComponents]), query->from, query->to);
    case Wanted::completedReminders:
      return [reminder isCompleted] && isBetween([reminder completionDate], query -> from, query -> to);
    default:
      return true;
  }
}

}  // namespace

@implementation EKEventStore (Queries)
- (NSPredicate*)predicateForEventsWithStartDate:(NSDate*)start
                                        endDate:(NSDate*)end
                                      calendars:(NSArray*)calendars {
  if (start == nil || end == nil) misuse(@"both dates are required");
  const bool isCut = [end timeIntervalSinceDate:start] > kFourYears;
  return predicateFor(Wanted::events, start, isCut ? plus(start, kFourYears) : end, calendars);
}
- (NSPredicate*)predicateForRemindersInCalendars:(NSArray*)calendars {
  return predicateFor(Wanted::reminders, nil, nil, calendars);
}
- (NSPredicate*)predicateForIncompleteRemindersWithDueDateStarting:(NSDate*)start
                                                            ending:(NSDate*)end
                                                         calendars:(NSArray*)calendars {
  return predicateFor(Wanted::incompleteReminders, start, end, calendars);
}
- (NSPredicate*)predicateForCompletedRemindersWithCompletionDateStarting:(NSDate*)start
                                                                  ending:(NSDate*)end
                                                               calendars:(NSArray*)calendars {
  return predicateFor(Wanted::completedReminders, start, end, calendars);
}

- (void)add:(ItemRecord*)record at:(NSDate*)occurrence in:(StandInPredicate*)query to:(NSMutableArray*)found {
  EKEvent* event = [[[EKEvent alloc] initWithStore:self record:record occurrence:occurrence] autorelease];
  if (overlaps(event, query->from, query->to)) [found addObject:event];
}
- (NSArray*)eventsMatchingPredicate:(NSPredicate*)predicate {
  StandInPredicate* query = own(predicate, true);
  stand_in::countQuery();
  NSError* error = nil;
  if (stand_in::failsNow(&error) || !seesData_) return nil;
  NSMutableArray* found = [NSMutableArray array];
  for (ItemRecord* record in [self database]->items) {
    if (!record->isEvent) continue;
    if (![query->calendars containsObject:[record->values objectForKey:@"calendar"]]) continue;
    if ([record rule] == nil) [self add:record at:nil in:query to:found];
    // A day more, for what was moved to an earlier date.
    for (NSDate* occurrence in [record occurrencesUntil:plus(query->to, 86400)])
      [self add:record at:occurrence in:query to:found];
  }
  return [found count] > 0 ? found : nil;
}

- (id)fetchRemindersMatchingPredicate:(NSPredicate*)predicate completion:(void (^)(NSArray*))completion {
  StandInPredicate* query = own(predicate, false);
  stand_in::countQuery();
  NSError* error = nil;
  stand_in::failsNow(&error);
  NSMutableArray* found = [NSMutableArray array];
  for (ItemRecord* record in [self database]->items) {
    if (record->isEvent || !seesData_) continue;
    if (![query->calendars containsObject:[record->values objectForKey:@"calendar"]]) continue;
    EKReminder* reminder = [[[EKReminder alloc] initWithStore:self record:record occurrence:nil] autorelease];
    if (isWanted(reminder, query)) [found addObject:reminder];
  }
  ReminderDelivery* delivery = [[[ReminderDelivery alloc] init] autorelease];
  delivery->completion = [completion copy];
  delivery->reminders = [found count] > 0 ? [found retain] : nil;
  [NSThread detachNewThreadSelector:@selector(deliver:) toTarget:delivery withObject:nil];
  return nil;
}
@end
