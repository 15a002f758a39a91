// The stand-in's store: look-ups, and what saving and removing does.
#include "tests/objc/objects.h"

using stand_in::failsNow;
using stand_in::mayRead;
using stand_in::misuse;
using stand_in::plus;
using stand_in::refuse;

@interface EKEventStore (Saving)
- (BOOL)refuseWithoutAccess:(NSError**)error;
@end

namespace {

enum Refusal : NSInteger {
  kNoCalendar = 1,
  kNoStartDate = 2,
  kNoEndDate = 3,
  kDatesInverted = 4,
  kCalendarReadOnly = 6,
  kDurationGreaterThanRecurrence = 7,
  kStartDateCollides = 10,
  kCalendarHasNoSource = 14,
  kSourceCannotBeModified = 15,
  kCalendarIsImmutable = 16,
  kRecurringReminderRequiresDueDate = 18,
  kCalendarDoesNotAllowEvents = 22,
  kCalendarDoesNotAllowReminders = 23,
  kPriorityIsInvalid = 26,
  kReminderAlarmContainsEmailOrUrl = 36,
};
constexpr NSInteger kNoRefusal = -1;

NSTimeInterval shortestPeriod(EKRecurrenceRule* rule) {
  constexpr double kDays[] = {1, 7, 28, 365};
  return kDays[[rule frequency]] * static_cast<double>([rule interval]) * 86400;
}

NSInteger refusalOf(EKEvent* event) {
  if ([event calendar] == nil) return kNoCalendar;
  if ([[event calendar] kind] != EKEntityTypeEvent) return kCalendarDoesNotAllowEvents;
  if (![[event calendar] allowsContentModifications]) return kCalendarReadOnly;
  if ([event startDate] == nil) return kNoStartDate;
  if ([event endDate] == nil) return kNoEndDate;
  const NSTimeInterval length = [[event endDate] timeIntervalSinceDate:[event startDate]];
  if (length < 0) return kDatesInverted;
  EKRecurrenceRule* rule = [[event recurrenceRules] firstObject];
  if (rule != nil && length > shortestPeriod(rule)) return kDurationGreaterThanRecurrence;
  return kNoRefusal;
}

NSInteger refusalOf(EKReminder* reminder) {
  if ([reminder calendar] == nil) return kNoCalendar;
  if ([[reminder calendar] kind] != EKEntityTypeReminder) return kCalendarDoesNotAllowReminders;
  if ([reminder priority] > 9) return kPriorityIsInvalid;
  if ([reminder recurrenceRules] != nil && [reminder dueDateComponents] == nil)
    return kRecurringReminderRequiresDueDate;
  for (EKAlarm* alarm in [reminder alarms])
    if ([alarm emailAddress] != nil || [alarm url] != nil) return kReminderAlarmContainsEmailOrUrl;
  return kNoRefusal;
}

bool isPast(NSDate* date, NSDate* other) { return [date compare:other] == NSOrderedDescending; }

// How many occurrences the rule had before `occurrence`, removed ones included.
NSUInteger countBefore(ItemRecord* record, NSDate* occurrence) {
  NSUInteger removedBefore = 0;
  for (NSDate* date in record->removed)
    if (isPast(occurrence, date)) ++removedBefore;
  return [[record occurrencesUntil:plus(occurrence, -1)] count] + removedBefore;
}

EKRecurrenceRule* withEnd(EKRecurrenceRule* rule, EKRecurrenceEnd* end) {
  EKRecurrenceRule* copy = [[rule copy] autorelease];
  [copy setRecurrenceEnd:end];
  return copy;
}

void endBefore(ItemRecord* record, NSDate* occurrence) {
  EKRecurrenceEnd* end =
      [[[record rule] recurrenceEnd] occurrenceCount] > 0
          ? [EKRecurrenceEnd recurrenceEndWithOccurrenceCount:countBefore(record, occurrence)]
          : [EKRecurrenceEnd recurrenceEndWithEndDate:plus(occurrence, -1)];
  [record->values setObject:[NSArray arrayWithObject:withEnd([record rule], end)] forKey:@"recurrenceRules"];
}

EKRecurrenceRule* ruleFrom(ItemRecord* record, NSDate* occurrence) {
  EKRecurrenceEnd* end = [[record rule] recurrenceEnd];
  if ([end occurrenceCount] == 0) return [record rule];
  const NSUInteger left = [end occurrenceCount] - countBefore(record, occurrence);
  return withEnd([record rule], [EKRecurrenceEnd recurrenceEndWithOccurrenceCount:left]);
}

bool collides(ItemRecord* record, NSDate* occurrence, NSDate* start) {
  for (NSDate* other in [record occurrencesUntil:plus(start, 1)]) {
    NSDate* otherStart = [[record valuesAt:other] objectForKey:@"startDate"];
    if (![other isEqual:occurrence] && [otherStart isEqual:start]) return true;
  }
  return false;
}

// A moved first occurrence moves the whole series, by as much.
void changeAll(ItemRecord* record, NSDictionary* changes, NSDate* occurrence) {
  NSMutableDictionary* rest = [[changes mutableCopy] autorelease];
  for (NSString *key in [NSArray arrayWithObjects:@"startDate", @"endDate", nil]) {
    NSDate* moved = [changes objectForKey:key];
    if (occurrence == nil || moved == nil) continue;
    const NSTimeInterval distance =
        [moved timeIntervalSinceDate:[[record valuesAt:occurrence] objectForKey:key]];
    [rest setObject:plus([record->values objectForKey:key], distance) forKey:key];
  }
  stand_in::apply(rest, record->values);
}

}  // namespace

@implementation EKEventStore
+ (EKAuthorizationStatus)authorizationStatusForEntityType:(EKEntityType)type {
  (void)type;
  if (stand_in::isUndecided()) return EKAuthorizationStatusNotDetermined;
  return mayRead() ? EKAuthorizationStatusAuthorized : EKAuthorizationStatusDenied;
}
- (instancetype)initWithAccessToEntityTypes:(EKEntityMask)mask {
  self = [super init];
  if (mask != (EKEntityMaskEvent | EKEntityMaskReminder)) {
    [self release];
    misuse(@"tests ask for both kinds");
  }
  StandInDatabase* database = stand_in::chosenDatabase();
  database_ = [database retain];
  [database->stores addObject:[NSValue valueWithNonretainedObject:self]];
  seesData_ = mayRead();
  return self;
}
- (void)dealloc {
  @autoreleasepool {
    StandInDatabase* database = [self database];
    if (database != nil) [database->stores removeObject:[NSValue valueWithNonretainedObject:self]];
  }
  [database_ release];
  [super dealloc];
}
- (StandInDatabase*)database {
  return static_cast<StandInDatabase*>(database_);
}
- (void)requestFullAccessToEventsWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion {
  stand_in::keepRequest(completion);
}
- (void)requestFullAccessToRemindersWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion {
  stand_in::keepRequest(completion);
}
- (void)reset {
  seesData_ = mayRead();
}
- (BOOL)refuseWithoutAccess:(NSError**)error {
  if (seesData_) return NO;
  *error = [NSError errorWithDomain:@"EKCADErrorDomain" code:1013 userInfo:nil];
  return YES;
}

// Another object each time: whether setting it is a change is the store's to say, and this one says yes.
- (EKSource*)sourceWithIdentifier:(NSString*)identifier {
  for (EKSource* source in [self database]->sources)
    if ([[source sourceIdentifier] isEqualToString:identifier])
      return [[[EKSource alloc] initWithIdentifier:identifier title:[source title]] autorelease];
  return nil;
}
- (EKCalendar*)calendarOf:(CalendarRecord*)record {
  if (record == nil || !seesData_) return nil;
  return [[[EKCalendar alloc] initWithStore:self kind:record->kind record:record] autorelease];
}
- (NSArray*)calendarsForEntityType:(EKEntityType)type {
  NSError* error = nil;
  if (failsNow(&error)) return [NSArray array];
  NSMutableArray* found = [NSMutableArray array];
  for (CalendarRecord* record in [self database]->calendars)
    if (record->kind == type && seesData_) [found addObject:[self calendarOf:record]];
  return found;
}
- (EKCalendar*)defaultCalendarForNewEvents {
  return [self calendarOf:[[self database] firstCalendarOf:EKEntityTypeEvent]];
}
- (EKCalendar*)defaultCalendarForNewReminders {
  return [self calendarOf:[[self database] firstCalendarOf:EKEntityTypeReminder]];
}
- (EKCalendar*)calendarWithIdentifier:(NSString*)identifier {
  return [self calendarOf:[[self database] calendarWithIdentifier:identifier]];
}

- (BOOL)saveCalendar:(EKCalendar*)calendar commit:(BOOL)commit error:(NSError**)error {
  if (!commit || [calendar store] != self) misuse(@"not a calendar of this store, or not to be kept");
  if (failsNow(error) || [self refuseWithoutAccess:error]) return NO;
  if ([[calendar values] isEqual:[calendar saved]]) return NO;
  if ([calendar saved] == nil && [calendar source] == nil) return refuse(error, kCalendarHasNoSource);
  if ([calendar saved] != nil && [calendar source] != [[calendar saved] objectForKey:@"source"])
    return refuse(error, kSourceCannotBeModified);
  StandInDatabase* database = [self database];
  CalendarRecord* record = [database calendarWithIdentifier:[calendar calendarIdentifier]];
  if (record == nil) {
    record = [[[CalendarRecord alloc] initWithIdentifier:[calendar calendarIdentifier]
                                                    kind:[calendar kind]] autorelease];
    [database->calendars addObject:record];
  }
  if ([calendar color] == nil)
    [calendar setColor:[NSColor colorWithCalibratedRed:0.1 green:0.6 blue:0.9 alpha:1]];
  [record->values setDictionary:[calendar values]];
  [calendar markSaved];
  [database noteChange];
  return YES;
}
- (BOOL)removeCalendar:(EKCalendar*)calendar commit:(BOOL)commit error:(NSError**)error {
  if (!commit || [calendar store] != self) misuse(@"not a calendar of this store, or not to be kept");
  if (failsNow(error) || [self refuseWithoutAccess:error]) return NO;
  StandInDatabase* database = [self database];
  CalendarRecord* record = [database calendarWithIdentifier:[calendar calendarIdentifier]];
  if (record == nil) return NO;
  if ([[self calendarsForEntityType:record->kind] count] == 1) return refuse(error, kCalendarIsImmutable);
  NSMutableArray* gone = [NSMutableArray array];
  for (ItemRecord* item in database->items)
    if ([[item->values objectForKey:@"calendar"] isEqual:record->identifier]) [gone addObject:item];
  [database->items removeObjectsInArray:gone];
  [database->calendars removeObject:record];
  [database noteChange];
  return YES;
}

- (EKCalendarItem*)itemOf:(ItemRecord*)record {
  if (record == nil || !seesData_) return nil;
  Class kind = record->isEvent ? [EKEvent class] : [EKReminder class];
  return [[[kind alloc] initWithStore:self record:record occurrence:[record firstOccurrence]] autorelease];
}
- (EKCalendarItem*)calendarItemWithIdentifier:(NSString*)identifier {
  return [self itemOf:[[self database] itemWithIdentifier:identifier]];
}
- (NSArray*)calendarItemsWithExternalIdentifier:(NSString*)identifier {
  EKCalendarItem* item = [self calendarItemWithIdentifier:identifier];
  return item != nil ? [NSArray arrayWithObject:item] : nil;
}
- (EKEvent*)eventWithIdentifier:(NSString*)identifier {
  NSError* error = nil;
  if (failsNow(&error) || ![identifier hasPrefix:@"STORE:"]) return nil;
  NSArray* parts = [[identifier substringFromIndex:6] componentsSeparatedByString:@"/RID="];
  ItemRecord* record = [[self database] itemWithIdentifier:[parts objectAtIndex:0]];
  if (record == nil || !record->isEvent || !seesData_) return nil;
  if ([parts count] == 1) return static_cast<EKEvent*>([self itemOf:record]);
  NSDate* original = [NSDate dateWithTimeIntervalSinceReferenceDate:[[parts objectAtIndex:1] doubleValue]];
  if ([record->changed objectForKey:original] == nil) return nil;
  return [[[EKEvent alloc] initWithStore:self record:record occurrence:original] autorelease];
}

- (ItemRecord*)recordFor:(EKCalendarItem*)item identifier:(NSString*)identifier {
  NSDate* now = [NSDate date];
  ItemRecord* record =
      [[[ItemRecord alloc] initWithIdentifier:identifier
                                      isEvent:[item isKindOfClass:[EKEvent class]]] autorelease];
  [record->values setDictionary:[item values]];
  [record->values setObject:now forKey:@"created"];
  [record->values setObject:now forKey:@"modified"];
  if (record->isEvent && [record->values objectForKey:@"timeZone"] == nil)
    [record->values setObject:[NSTimeZone defaultTimeZone] forKey:@"timeZone"];
  [[self database]->items addObject:record];
  return record;
}

- (BOOL)saveEvent:(EKEvent*)event span:(EKSpan)span commit:(BOOL)commit error:(NSError**)error {
  if (!commit || event == nil || [event store] != self)
    misuse(@"not an event of this store, or not to be kept");
  if (failsNow(error) || [self refuseWithoutAccess:error]) return NO;
  StandInDatabase* database = [self database];
  ItemRecord* record = [database itemWithIdentifier:[event calendarItemIdentifier]];
  NSDictionary* changes = [event changes];
  if (record != nil && [changes count] == 0) return NO;
  const NSInteger refusal = refusalOf(event);
  if (refusal != kNoRefusal) return refuse(error, refusal);
  NSDate* occurrence = [event occurrence];
  if (record == nil) {
    record = [self recordFor:event identifier:[event calendarItemIdentifier]];
    occurrence = [record firstOccurrence];
  } else if (occurrence == nil || [self changesWholeSeries:record at:occurrence span:span changes:changes]) {
    changeAll(record, changes, occurrence);
    occurrence = [record firstOccurrence];
  } else if (span == EKSpanThisEvent) {
    if (collides(record, occurrence, [event startDate])) return refuse(error, kStartDateCollides);
    NSMutableDictionary* own = [[[record valuesAt:occurrence] mutableCopy] autorelease];
    stand_in::apply(changes, own);
    [own removeObjectForKey:@"recurrenceRules"];
    [record->changed setObject:own forKey:occurrence];
  } else if ([changes objectForKey:@"recurrenceRules"] == [NSNull null]) {
    // The whole series collapses to one event at its first start.
    [record->values removeObjectForKey:@"recurrenceRules"];
    occurrence = nil;
  } else {
    record = [self split:record at:occurrence for:event changes:changes];
    occurrence = [record firstOccurrence];
  }
  [record->values setObject:[NSDate date] forKey:@"modified"];
  [event showRecord:record occurrence:occurrence];
  [database noteChange];
  return YES;
}
- (BOOL)changesWholeSeries:(ItemRecord*)record
                        at:(NSDate*)occurrence
                      span:(EKSpan)span
                   changes:(NSDictionary*)changes {
  const bool isFirst = [[record firstOccurrence] isEqual:occurrence];
  return isFirst && (span == EKSpanFutureEvents || [changes objectForKey:@"recurrenceRules"] != nil);
}
- (ItemRecord*)split:(ItemRecord*)record
                  at:(NSDate*)occurrence
                 for:(EKEvent*)event
             changes:(NSDictionary*)changes {
  ItemRecord* later = [self recordFor:event identifier:stand_in::newIdentifier()];
  if ([changes objectForKey:@"recurrenceRules"] == nil)
    [later->values setObject:[NSArray arrayWithObject:ruleFrom(record, occurrence)]
                      forKey:@"recurrenceRules"];
  endBefore(record, occurrence);
  return later;
}

- (BOOL)removeEvent:(EKEvent*)event span:(EKSpan)span commit:(BOOL)commit error:(NSError**)error {
  if (!commit || event == nil || [event store] != self)
    misuse(@"not an event of this store, or not to be kept");
  if (failsNow(error) || [self refuseWithoutAccess:error]) return NO;
  StandInDatabase* database = [self database];
  ItemRecord* record = [database itemWithIdentifier:[event calendarItemIdentifier]];
  if (record == nil) return NO;
  NSDate* occurrence = [event occurrence];
  const bool isFirst = occurrence == nil || [[record firstOccurrence] isEqual:occurrence];
  if (occurrence == nil || (span == EKSpanFutureEvents && isFirst)) {
    [database->items removeObject:record];
  } else if (span == EKSpanFutureEvents) {
    endBefore(record, occurrence);
  } else {
    [record->removed addObject:occurrence];
    if ([record firstOccurrence] == nil) [database->items removeObject:record];
  }
  [database noteChange];
  return YES;
}

- (BOOL)saveReminder:(EKReminder*)reminder commit:(BOOL)commit error:(NSError**)error {
  if (!commit || reminder == nil || [reminder store] != self) misuse(@"not a reminder of this store");
  if (failsNow(error) || [self refuseWithoutAccess:error]) return NO;
  StandInDatabase* database = [self database];
  ItemRecord* record = [database itemWithIdentifier:[reminder calendarItemIdentifier]];
  NSDictionary* changes = [reminder changes];
  if (record != nil && [changes count] == 0) return NO;
  const NSInteger refusal = refusalOf(reminder);
  if (refusal != kNoRefusal) return refuse(error, refusal);
  if (record == nil)
    record = [self recordFor:reminder identifier:[reminder calendarItemIdentifier]];
  else
    stand_in::apply(changes, record->values);
  [record->values setObject:[NSDate date] forKey:@"modified"];
  [reminder showRecord:record occurrence:nil];
  [database noteChange];
  return YES;
}
- (BOOL)removeReminder:(EKReminder*)reminder commit:(BOOL)commit error:(NSError**)error {
  if (!commit || reminder == nil || [reminder store] != self) misuse(@"not a reminder of this store");
  if (failsNow(error) || [self refuseWithoutAccess:error]) return NO;
  StandInDatabase* database = [self database];
  ItemRecord* record = [database itemWithIdentifier:[reminder calendarItemIdentifier]];
  if (record == nil) return NO;
  [database->items removeObject:record];
  [database noteChange];
  return YES;
}
@end
