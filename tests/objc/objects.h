// What the stand-in's own files know of each other.
#pragma once

#import <EventKit/EventKit.h>

// One saved item: a series with its changed and removed occurrences, by their original dates.
@interface ItemRecord : EKObject {
 @public
  NSString* identifier;
  BOOL isEvent;
  NSMutableDictionary* values;
  NSMutableDictionary* changed;
  NSMutableSet* removed;
}
- (instancetype)initWithIdentifier:(NSString*)text isEvent:(BOOL)event;
// In order, up to `limit`; nil for the first one only. A plain item has none.
- (NSArray*)occurrencesUntil:(NSDate*)limit;
- (NSDate*)firstOccurrence;
- (NSDictionary*)valuesAt:(NSDate*)occurrence;
- (EKRecurrenceRule*)rule;
@end

@interface CalendarRecord : EKObject {
 @public
  NSString* identifier;
  EKEntityType kind;
  NSMutableDictionary* values;
}
- (instancetype)initWithIdentifier:(NSString*)text kind:(EKEntityType)entity;
@end

@interface StandInDatabase : EKObject {
 @public
  NSMutableArray* sources;
  NSMutableArray* calendars;
  NSMutableArray* items;
  NSMutableArray* stores;  // NSValues, not retained
}
- (CalendarRecord*)calendarWithIdentifier:(NSString*)text;
- (ItemRecord*)itemWithIdentifier:(NSString*)text;
- (CalendarRecord*)firstCalendarOf:(EKEntityType)kind;
- (void)noteChange;
@end

@interface EKEventStore (StandIn)
- (StandInDatabase*)database;
@end

@interface EKSource (StandIn)
- (instancetype)initWithIdentifier:(NSString*)identifier title:(NSString*)title;
@end

@interface EKCalendar (StandIn)
- (instancetype)initWithStore:(EKEventStore*)store kind:(EKEntityType)kind record:(CalendarRecord*)record;
- (EKEventStore*)store;
- (EKEntityType)kind;
- (NSMutableDictionary*)values;
- (NSDictionary*)saved;
- (void)markSaved;
@end

@interface EKCalendarItem (StandIn)
- (instancetype)initWithStore:(EKEventStore*)store record:(ItemRecord*)record occurrence:(NSDate*)occurrence;
- (EKEventStore*)store;
- (NSDate*)occurrence;
- (NSMutableDictionary*)values;
// What was set since the item was opened or saved; NSNull for what was emptied.
- (NSDictionary*)changes;
- (void)showRecord:(ItemRecord*)record occurrence:(NSDate*)occurrence;
@end

@interface EKParticipant (StandIn)
- (instancetype)initWithURL:(NSURL*)url
                       name:(NSString*)name
                     status:(EKParticipantStatus)status
                       role:(EKParticipantRole)role
                       type:(EKParticipantType)type
                     person:(ABPerson*)person;
@end

namespace stand_in {

NSString* newIdentifier();
NSDate* plus(NSDate* date, NSTimeInterval seconds);
[[noreturn]] void misuse(NSString* reason);
void apply(NSDictionary* changes, NSMutableDictionary* values);
// Equal, or both nil.
BOOL same(id one, id other);
bool mayRead();
// YES when the next call was told to fail; raises when it was told to raise.
BOOL failsNow(NSError** error);
BOOL refuse(NSError** error, NSInteger code);
bool tellsOfChanges();
void countQuery();
void keepRequest(void (^answer)(BOOL, NSError*));
bool isUndecided();
StandInDatabase* chosenDatabase();

}  // namespace stand_in
