// Calendars, events and reminders: each a snapshot with the changes that were made to it.
#include "tests/objc/objects.h"

using stand_in::misuse;
using stand_in::same;

namespace {

// Alarms are changed in place, so that a snapshot needs copies of its own.
NSMutableDictionary* deepCopy(NSDictionary* values) {
  NSMutableDictionary* copy = [[values mutableCopy] autorelease];
  NSArray* alarms = [values objectForKey:@"alarms"];
  if (alarms != nil)
    [copy setObject:[[[NSArray alloc] initWithArray:alarms copyItems:YES] autorelease] forKey:@"alarms"];
  return copy;
}

NSCalendar* localCalendar() {
  NSCalendar* calendar =
      [[[NSCalendar alloc] initWithCalendarIdentifier:NSCalendarIdentifierGregorian] autorelease];
  [calendar setTimeZone:[NSTimeZone defaultTimeZone]];
  return calendar;
}

NSDate* midnightOf(NSDate* date) {
  const NSUInteger days = NSCalendarUnitYear | NSCalendarUnitMonth | NSCalendarUnitDay;
  return [localCalendar() dateFromComponents:[localCalendar() components:days fromDate:date]];
}

NSDate* nextMidnightAfter(NSDate* date) {
  NSDateComponents* day = [[[NSDateComponents alloc] init] autorelease];
  [day setDay:1];
  return midnightOf([localCalendar() dateByAddingComponents:day toDate:midnightOf(date) options:0]);
}

}  // namespace

@implementation EKCalendar
+ (EKCalendar*)calendarForEntityType:(EKEntityType)type eventStore:(EKEventStore*)store {
  return [[[self alloc] initWithStore:store kind:type record:nil] autorelease];
}
- (instancetype)initWithStore:(EKEventStore*)store kind:(EKEntityType)kind record:(CalendarRecord*)record {
  self = [super init];
  store_ = store;
  kind_ = kind;
  calendarIdentifier_ = [(record != nil ? record->identifier : stand_in::newIdentifier()) copy];
  values_ = record != nil ? [record->values mutableCopy] : [[NSMutableDictionary alloc] init];
  saved_ = record != nil ? [values_ copy] : nil;
  return self;
}
- (void)dealloc {
  [calendarIdentifier_ release];
  [values_ release];
  [saved_ release];
  [super dealloc];
}
@synthesize calendarIdentifier = calendarIdentifier_;
- (EKEventStore*)store {
  return store_;
}
- (EKEntityType)kind {
  return kind_;
}
- (NSMutableDictionary*)values {
  return values_;
}
- (NSDictionary*)saved {
  return saved_;
}
- (void)markSaved {
  [saved_ release];
  saved_ = [values_ copy];
}
- (void)set:(id)value forKey:(NSString*)key {
  if (value != nil)
    [values_ setObject:value forKey:key];
  else
    [values_ removeObjectForKey:key];
}
- (EKSource*)source {
  return [values_ objectForKey:@"source"];
}
- (void)setSource:(EKSource*)source {
  [self set:source forKey:@"source"];
}
- (NSString*)title {
  return [values_ objectForKey:@"title"];
}
- (void)setTitle:(NSString*)title {
  [self set:title forKey:@"title"];
}
- (NSColor*)color {
  return [values_ objectForKey:@"color"];
}
- (void)setColor:(NSColor*)color {
  [self set:color forKey:@"color"];
}
- (EKCalendarType)type {
  return EKCalendarTypeLocal;
}
- (BOOL)isSubscribed {
  return NO;
}
- (BOOL)isImmutable {
  return NO;
}
- (BOOL)allowsContentModifications {
  return [values_ objectForKey:@"isReadOnly"] == nil;
}
@end

@implementation EKCalendarItem
- (instancetype)init {
  [self release];
  misuse(@"items are made with a store");
}
- (instancetype)initWithStore:(EKEventStore*)store record:(ItemRecord*)record occurrence:(NSDate*)occurrence {
  self = [super init];
  store_ = store;
  if (record != nil)
    [self showRecord:record occurrence:occurrence];
  else {
    identifier_ = [stand_in::newIdentifier() copy];
    values_ = [[NSMutableDictionary alloc] init];
  }
  return self;
}
- (void)showRecord:(ItemRecord*)record occurrence:(NSDate*)occurrence {
  [identifier_ autorelease];
  identifier_ = [record->identifier copy];
  [occurrence_ autorelease];
  occurrence_ = [occurrence copy];
  [values_ autorelease];
  values_ = [deepCopy([record valuesAt:occurrence]) retain];
  [saved_ autorelease];
  saved_ = [deepCopy(values_) copy];
}
- (void)dealloc {
  [identifier_ release];
  [occurrence_ release];
  [values_ release];
  [saved_ release];
  [super dealloc];
}
- (EKEventStore*)store {
  return store_;
}
- (NSDate*)occurrence {
  return occurrence_;
}
- (NSMutableDictionary*)values {
  return values_;
}
- (NSDictionary*)changes {
  NSMutableDictionary* changes = [NSMutableDictionary dictionary];
  NSMutableSet* keys = [NSMutableSet setWithArray:[values_ allKeys]];
  [keys addObjectsFromArray:[saved_ allKeys]];
  NSDictionary* now = deepCopy(values_);
  for (NSString* key in keys) {
    id value = [now objectForKey:key];
    if (!same(value, [saved_ objectForKey:key]))
      [changes setObject:value != nil ? value : [NSNull null] forKey:key];
  }
  return changes;
}
- (void)set:(id)value forKey:(NSString*)key {
  if (value != nil)
    [values_ setObject:value forKey:key];
  else
    [values_ removeObjectForKey:key];
}

- (EKCalendar*)calendar {
  CalendarRecord* record = [[store_ database] calendarWithIdentifier:[values_ objectForKey:@"calendar"]];
  if (record == nil) return nil;
  return [[[EKCalendar alloc] initWithStore:store_ kind:record->kind record:record] autorelease];
}
- (void)setCalendar:(EKCalendar*)calendar {
  [self set:[calendar calendarIdentifier] forKey:@"calendar"];
}
- (NSString*)calendarItemIdentifier {
  return identifier_;
}
- (NSString*)calendarItemExternalIdentifier {
  return identifier_;
}
- (NSString*)title {
  return [values_ objectForKey:@"title"];
}
- (void)setTitle:(NSString*)title {
  [self set:title forKey:@"title"];
}
- (NSString*)location {
  return [values_ objectForKey:@"location"];
}
- (void)setLocation:(NSString*)location {
  [self set:location forKey:@"location"];
}
- (NSString*)notes {
  return [values_ objectForKey:@"notes"];
}
- (void)setNotes:(NSString*)notes {
  [self set:notes forKey:@"notes"];
}
- (NSURL*)URL {
  return [values_ objectForKey:@"URL"];
}
- (void)setURL:(NSURL*)url {
  [self set:url forKey:@"URL"];
}
- (NSDate*)lastModifiedDate {
  return [values_ objectForKey:@"modified"];
}
- (NSDate*)creationDate {
  return [values_ objectForKey:@"created"];
}
- (NSTimeZone*)timeZone {
  return [values_ objectForKey:@"timeZone"];
}
- (void)setTimeZone:(NSTimeZone*)zone {
  [self set:zone forKey:@"timeZone"];
}
- (NSArray*)attendees {
  return [values_ objectForKey:@"attendees"];
}
- (NSArray*)alarms {
  return [values_ objectForKey:@"alarms"];
}
- (void)setAlarms:(NSArray*)alarms {
  [self set:[alarms count] > 0 ? alarms : nil forKey:@"alarms"];
}
- (void)addAlarm:(EKAlarm*)alarm {
  if (alarm == nil) misuse(@"no alarm was given");
  NSArray* alarms = [self alarms];
  [self setAlarms:alarms != nil ? [alarms arrayByAddingObject:alarm] : [NSArray arrayWithObject:alarm]];
}
- (void)removeAlarm:(EKAlarm*)alarm {
  NSMutableArray* alarms = [NSMutableArray arrayWithArray:[self alarms]];
  [alarms removeObjectIdenticalTo:alarm];
  [self setAlarms:alarms];
}
- (NSArray*)recurrenceRules {
  return [values_ objectForKey:@"recurrenceRules"];
}
- (void)setRecurrenceRules:(NSArray*)rules {
  [self set:[rules count] > 0 ? rules : nil forKey:@"recurrenceRules"];
}
// An item has one rule: the new one takes its place.
- (void)addRecurrenceRule:(EKRecurrenceRule*)rule {
  [self setRecurrenceRules:[NSArray arrayWithObject:rule]];
}
- (void)removeRecurrenceRule:(EKRecurrenceRule*)rule {
  if ([[self recurrenceRules] containsObject:rule]) [self setRecurrenceRules:nil];
}
@end

@implementation EKEvent
+ (EKEvent*)eventWithEventStore:(EKEventStore*)store {
  return [[[self alloc] initWithStore:store record:nil occurrence:nil] autorelease];
}
- (ItemRecord*)record {
  return [[[self store] database] itemWithIdentifier:[self calendarItemIdentifier]];
}
- (NSString*)eventIdentifier {
  if (saved_ == nil) return nil;
  NSString* series = [@"STORE:" stringByAppendingString:identifier_];
  if (![self isDetached]) return series;
  return [series
      stringByAppendingFormat:@"/RID=%ld", static_cast<long>([occurrence_ timeIntervalSinceReferenceDate])];
}
- (BOOL)isAllDay {
  return [[values_ objectForKey:@"allDay"] boolValue];
}
- (void)setAllDay:(BOOL)allDay {
  [self set:[NSNumber numberWithBool:allDay] forKey:@"allDay"];
}
- (NSDate*)startDate {
  NSDate* start = [values_ objectForKey:@"startDate"];
  return [self isAllDay] && start != nil ? midnightOf(start) : start;
}
- (void)setStartDate:(NSDate*)date {
  [self set:date forKey:@"startDate"];
}
- (NSDate*)endDate {
  NSDate* end = [values_ objectForKey:@"endDate"];
  if (![self isAllDay] || end == nil) return end;
  const bool endsAtMidnight =
      [end isEqual:midnightOf(end)] && [end compare:[self startDate]] == NSOrderedDescending;
  return stand_in::plus(endsAtMidnight ? end : nextMidnightAfter(end), -1);
}
- (void)setEndDate:(NSDate*)date {
  [self set:date forKey:@"endDate"];
}
- (NSTimeZone*)timeZone {
  return [self isAllDay] ? nil : [super timeZone];
}
- (NSDate*)occurrenceDate {
  return occurrence_;
}
- (BOOL)isDetached {
  ItemRecord* record = [self record];
  return occurrence_ != nil && record != nil && [record->changed objectForKey:occurrence_] != nil;
}
@end

@implementation EKReminder
+ (EKReminder*)reminderWithEventStore:(EKEventStore*)store {
  return [[[self alloc] initWithStore:store record:nil occurrence:nil] autorelease];
}
- (NSDateComponents*)dueDateComponents {
  return [values_ objectForKey:@"due"];
}
- (void)setDueDateComponents:(NSDateComponents*)due {
  NSString* calendar = [[due calendar] calendarIdentifier];
  if (calendar != nil && ![calendar isEqualToString:NSCalendarIdentifierGregorian])
    misuse(@"a due date is one of the Gregorian calendar");
  [self set:[[due copy] autorelease] forKey:@"due"];
}
- (BOOL)isCompleted {
  return [self completionDate] != nil;
}
- (void)setCompleted:(BOOL)completed {
  [self setCompletionDate:completed ? [NSDate date] : nil];
}
- (NSDate*)completionDate {
  return [values_ objectForKey:@"completed"];
}
- (void)setCompletionDate:(NSDate*)date {
  [self set:date forKey:@"completed"];
}
- (NSUInteger)priority {
  return [[values_ objectForKey:@"priority"] unsignedIntegerValue];
}
- (void)setPriority:(NSUInteger)priority {
  [self set:[NSNumber numberWithUnsignedInteger:priority] forKey:@"priority"];
}
@end
