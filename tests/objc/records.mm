// What is saved, and the occurrences of a series.
#include "tests/objc/objects.h"

using stand_in::plus;

@implementation CalendarRecord
- (instancetype)initWithIdentifier:(NSString*)text kind:(EKEntityType)entity {
  self = [super init];
  identifier = [text copy];
  kind = entity;
  values = [[NSMutableDictionary alloc] init];
  return self;
}
- (void)dealloc {
  [identifier release];
  [values release];
  [super dealloc];
}
@end

@implementation ItemRecord
- (instancetype)initWithIdentifier:(NSString*)text isEvent:(BOOL)event {
  self = [super init];
  identifier = [text copy];
  isEvent = event;
  values = [[NSMutableDictionary alloc] init];
  changed = [[NSMutableDictionary alloc] init];
  removed = [[NSMutableSet alloc] init];
  return self;
}
- (void)dealloc {
  [identifier release];
  [values release];
  [changed release];
  [removed release];
  [super dealloc];
}

- (EKRecurrenceRule*)rule {
  return [[values objectForKey:@"recurrenceRules"] firstObject];
}

// Only frequency, interval and end: the lists of a rule are kept, not followed.
- (NSDate*)dateOfStep:(NSInteger)step {
  NSDateComponents* distance = [[[NSDateComponents alloc] init] autorelease];
  const NSInteger units = step * [[self rule] interval];
  switch ([[self rule] frequency]) {
    case EKRecurrenceFrequencyDaily:
      [distance setDay:units];
      break;
    case EKRecurrenceFrequencyWeekly:
      [distance setDay:7 * units];
      break;
    case EKRecurrenceFrequencyMonthly:
      [distance setMonth:units];
      break;
    case EKRecurrenceFrequencyYearly:
      [distance setYear:units];
      break;
  }
  NSCalendar* calendar =
      [[[NSCalendar alloc] initWithCalendarIdentifier:NSCalendarIdentifierGregorian] autorelease];
  return [calendar dateByAddingComponents:distance toDate:[values objectForKey:@"startDate"] options:0];
}

- (NSArray*)occurrencesUntil:(NSDate*)limit {
  NSMutableArray* dates = [NSMutableArray array];
  EKRecurrenceEnd* end = [[self rule] recurrenceEnd];
  for (NSInteger step = 0;[self rule] != nil; ++step) {
    NSDate* date = [self dateOfStep:step];
    const bool isOver =
        ([end endDate] != nil && [date compare:[end endDate]] == NSOrderedDescending) ||
        ([end occurrenceCount] > 0 && step >= static_cast<NSInteger>([end occurrenceCount])) ||
        (limit != nil && [date compare:limit] == NSOrderedDescending) || (limit == nil && [dates count] > 0);
    if (isOver) break;
    if (![removed containsObject:date]) [dates addObject:date];
  }
  return dates;
}

- (NSDate*)firstOccurrence {
  return [[self occurrencesUntil:nil] firstObject];
}

- (NSDictionary*)valuesAt:(NSDate*)occurrence {
  if (occurrence == nil) return values;
  if (NSDictionary* own = [changed objectForKey:occurrence]) return own;
  NSMutableDictionary* shifted = [[values mutableCopy] autorelease];
  const NSTimeInterval length =
      [[values objectForKey:@"endDate"] timeIntervalSinceDate:[values objectForKey:@"startDate"]];
  [shifted setObject:occurrence forKey:@"startDate"];
  [shifted setObject:plus(occurrence, length) forKey:@"endDate"];
  return shifted;
}
@end

@implementation StandInDatabase
- (instancetype)init {
  self = [super init];
  sources = [[NSMutableArray alloc] init];
  calendars = [[NSMutableArray alloc] init];
  items = [[NSMutableArray alloc] init];
  stores = [[NSMutableArray alloc] init];
  EKSource* local = [[[EKSource alloc] initWithIdentifier:stand_in::newIdentifier()
                                                    title:@"On My Mac"] autorelease];
  [sources addObject:local];
  [self add:@"Calendar" kind:EKEntityTypeEvent source:local];
  [self add:@"Reminders" kind:EKEntityTypeReminder source:local];
  return self;
}
- (void)add:(NSString*)title kind:(EKEntityType)kind source:(EKSource*)source {
  CalendarRecord* record = [[[CalendarRecord alloc] initWithIdentifier:stand_in::newIdentifier()
                                                                  kind:kind] autorelease];
  [record->values setObject:title forKey:@"title"];
  [record->values setObject:source forKey:@"source"];
  [calendars addObject:record];
}
- (void)dealloc {
  [sources release];
  [calendars release];
  [items release];
  [stores release];
  [super dealloc];
}

- (CalendarRecord*)calendarWithIdentifier:(NSString*)text {
  for (CalendarRecord* record in calendars)
    if ([record->identifier isEqualToString:text]) return record;
  return nil;
}
- (ItemRecord*)itemWithIdentifier:(NSString*)text {
  for (ItemRecord* record in items)
    if ([record->identifier isEqualToString:text]) return record;
  return nil;
}
- (CalendarRecord*)firstCalendarOf:(EKEntityType)kind {
  for (CalendarRecord* record in calendars)
    if (record->kind == kind) return record;
  return nil;
}
- (void)noteChange {
  if (!stand_in::tellsOfChanges()) return;
  for (NSValue* store in stores)
    [[NSNotificationCenter defaultCenter] postNotificationName:EKEventStoreChangedNotification
                                                        object:[store nonretainedObjectValue]];
}
@end
