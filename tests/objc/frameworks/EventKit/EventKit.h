// The part of EventKit that the bridge calls, declared for machines that have no EventKit. The instance
// variables are the stand-in's own.
#pragma once

#import <AddressBook/AddressBook.h>
#import <AppKit/NSColor.h>
#import <Foundation/Foundation.h>

#ifdef __cplusplus
#define EK_EXTERN extern "C"
#else
#define EK_EXTERN extern
#endif

typedef NS_ENUM(NSUInteger, EKEntityType) { EKEntityTypeEvent, EKEntityTypeReminder };
typedef NSUInteger EKEntityMask;
enum { EKEntityMaskEvent = 1, EKEntityMaskReminder = 2 };
typedef NS_ENUM(NSInteger, EKSpan) { EKSpanThisEvent, EKSpanFutureEvents };
typedef NS_ENUM(NSInteger, EKAuthorizationStatus) {
  EKAuthorizationStatusNotDetermined,
  EKAuthorizationStatusRestricted,
  EKAuthorizationStatusDenied,
  EKAuthorizationStatusAuthorized
};
typedef NS_ENUM(NSInteger, EKCalendarType) {
  EKCalendarTypeLocal,
  EKCalendarTypeCalDAV,
  EKCalendarTypeExchange,
  EKCalendarTypeSubscription,
  EKCalendarTypeBirthday
};
typedef NS_ENUM(NSInteger, EKSourceType) {
  EKSourceTypeLocal,
  EKSourceTypeExchange,
  EKSourceTypeCalDAV,
  EKSourceTypeMobileMe,
  EKSourceTypeSubscribed,
  EKSourceTypeBirthdays
};
typedef NS_ENUM(NSInteger, EKAlarmType) {
  EKAlarmTypeDisplay,
  EKAlarmTypeAudio,
  EKAlarmTypeProcedure,
  EKAlarmTypeEmail
};
typedef NS_ENUM(NSInteger, EKRecurrenceFrequency) {
  EKRecurrenceFrequencyDaily,
  EKRecurrenceFrequencyWeekly,
  EKRecurrenceFrequencyMonthly,
  EKRecurrenceFrequencyYearly
};
typedef NS_ENUM(NSInteger, EKWeekday) { EKWeekdaySunday = 1, EKWeekdaySaturday = 7 };
typedef NS_ENUM(NSInteger, EKParticipantStatus) {
  EKParticipantStatusUnknown,
  EKParticipantStatusPending,
  EKParticipantStatusAccepted,
  EKParticipantStatusDeclined,
  EKParticipantStatusTentative
};
typedef NS_ENUM(NSInteger, EKParticipantRole) { EKParticipantRoleUnknown, EKParticipantRoleRequired };
typedef NS_ENUM(NSInteger, EKParticipantType) { EKParticipantTypeUnknown, EKParticipantTypePerson };

EK_EXTERN NSString* const EKErrorDomain;
EK_EXTERN NSString* const EKEventStoreChangedNotification;

@class EKAlarm, EKCalendar, EKCalendarItem, EKEvent, EKEventStore, EKReminder, EKSource, EKParticipant;

@interface EKObject : NSObject
@end

@interface EKRecurrenceDayOfWeek : EKObject {
  EKWeekday dayOfTheWeek_;
  NSInteger weekNumber_;
}
+ (EKRecurrenceDayOfWeek*)dayOfWeek:(EKWeekday)day;
+ (EKRecurrenceDayOfWeek*)dayOfWeek:(EKWeekday)day weekNumber:(NSInteger)number;
@property(nonatomic, readonly) EKWeekday dayOfTheWeek;
@property(nonatomic, readonly) NSInteger weekNumber;
@end

@interface EKRecurrenceEnd : EKObject <NSCopying> {
  NSDate* endDate_;
  NSUInteger occurrenceCount_;
}
+ (EKRecurrenceEnd*)recurrenceEndWithEndDate:(NSDate*)date;
+ (EKRecurrenceEnd*)recurrenceEndWithOccurrenceCount:(NSUInteger)count;
@property(nonatomic, readonly) NSDate* endDate;
@property(nonatomic, readonly) NSUInteger occurrenceCount;
@end

@interface EKRecurrenceRule : EKObject <NSCopying> {
  EKRecurrenceFrequency frequency_;
  NSInteger interval_;
  NSArray* daysOfTheWeek_;
  NSArray* daysOfTheMonth_;
  NSArray* monthsOfTheYear_;
  NSArray* weeksOfTheYear_;
  NSArray* daysOfTheYear_;
  NSArray* setPositions_;
  EKRecurrenceEnd* recurrenceEnd_;
}
- (instancetype)initRecurrenceWithFrequency:(EKRecurrenceFrequency)frequency
                                   interval:(NSInteger)interval
                              daysOfTheWeek:(NSArray*)daysOfTheWeek
                             daysOfTheMonth:(NSArray*)daysOfTheMonth
                            monthsOfTheYear:(NSArray*)monthsOfTheYear
                             weeksOfTheYear:(NSArray*)weeksOfTheYear
                              daysOfTheYear:(NSArray*)daysOfTheYear
                               setPositions:(NSArray*)setPositions
                                        end:(EKRecurrenceEnd*)end;
@property(nonatomic, readonly) EKRecurrenceFrequency frequency;
@property(nonatomic, readonly) NSInteger interval;
@property(nonatomic, readonly) NSInteger firstDayOfTheWeek;
@property(nonatomic, readonly) NSArray* daysOfTheWeek;
@property(nonatomic, readonly) NSArray* daysOfTheMonth;
@property(nonatomic, readonly) NSArray* monthsOfTheYear;
@property(nonatomic, readonly) NSArray* weeksOfTheYear;
@property(nonatomic, readonly) NSArray* daysOfTheYear;
@property(nonatomic, readonly) NSArray* setPositions;
@property(nonatomic, copy) EKRecurrenceEnd* recurrenceEnd;
@end

@interface EKAlarm : EKObject <NSCopying> {
  NSTimeInterval relativeOffset_;
  NSDate* absoluteDate_;
  NSString* emailAddress_;
  NSString* soundName_;
  NSURL* url_;
}
+ (EKAlarm*)alarmWithAbsoluteDate:(NSDate*)date;
+ (EKAlarm*)alarmWithRelativeOffset:(NSTimeInterval)offset;
@property(nonatomic) NSTimeInterval relativeOffset;
@property(nonatomic, copy) NSDate* absoluteDate;
@property(nonatomic, readonly) EKAlarmType type;
@property(nonatomic, copy) NSString* emailAddress;
@property(nonatomic, copy) NSString* soundName;
@property(nonatomic, copy) NSURL* url;
@end

@interface EKParticipant : EKObject {
  NSURL* URL_;
  NSString* name_;
  EKParticipantStatus participantStatus_;
  EKParticipantRole participantRole_;
  EKParticipantType participantType_;
  ABPerson* person_;
}
@property(nonatomic, readonly) NSURL* URL;
@property(nonatomic, readonly) NSString* name;
@property(nonatomic, readonly) EKParticipantStatus participantStatus;
@property(nonatomic, readonly) EKParticipantRole participantRole;
@property(nonatomic, readonly) EKParticipantType participantType;
- (ABPerson*)ABPersonInAddressBook:(ABAddressBook*)book;
@end

@interface EKSource : EKObject {
  NSString* sourceIdentifier_;
  EKSourceType sourceType_;
  NSString* title_;
}
@property(nonatomic, readonly) NSString* sourceIdentifier;
@property(nonatomic, readonly) EKSourceType sourceType;
@property(nonatomic, readonly) NSString* title;
@end

@interface EKCalendar : EKObject {
  EKEventStore* store_;
  EKEntityType kind_;
  NSString* calendarIdentifier_;
  NSMutableDictionary* values_;
  NSDictionary* saved_;
}
+ (EKCalendar*)calendarForEntityType:(EKEntityType)type eventStore:(EKEventStore*)store;
@property(nonatomic, retain) EKSource* source;
@property(nonatomic, readonly) NSString* calendarIdentifier;
@property(nonatomic, copy) NSString* title;
@property(nonatomic, readonly) EKCalendarType type;
@property(nonatomic, readonly) BOOL allowsContentModifications;
@property(nonatomic, readonly, getter=isSubscribed) BOOL subscribed;
@property(nonatomic, readonly, getter=isImmutable) BOOL immutable;
@property(nonatomic, copy) NSColor* color;
@end

@interface EKCalendarItem : EKObject {
  EKEventStore* store_;
  NSString* identifier_;
  NSDate* occurrence_;
  NSMutableDictionary* values_;
  NSDictionary* saved_;
}
@property(nonatomic, retain) EKCalendar* calendar;
@property(nonatomic, readonly) NSString* calendarItemIdentifier;
@property(nonatomic, readonly) NSString* calendarItemExternalIdentifier;
@property(nonatomic, copy) NSString* title;
@property(nonatomic, copy) NSString* location;
@property(nonatomic, copy) NSString* notes;
@property(nonatomic, copy) NSURL* URL;
@property(nonatomic, readonly) NSDate* lastModifiedDate;
@property(nonatomic, readonly) NSDate* creationDate;
@property(nonatomic, copy) NSTimeZone* timeZone;
@property(nonatomic, readonly) NSArray* attendees;
@property(nonatomic, copy) NSArray* alarms;
- (void)addAlarm:(EKAlarm*)alarm;
- (void)removeAlarm:(EKAlarm*)alarm;
@property(nonatomic, copy) NSArray* recurrenceRules;
- (void)addRecurrenceRule:(EKRecurrenceRule*)rule;
- (void)removeRecurrenceRule:(EKRecurrenceRule*)rule;
@end

@interface EKEvent : EKCalendarItem
+ (EKEvent*)eventWithEventStore:(EKEventStore*)store;
@property(nonatomic, readonly) NSString* eventIdentifier;
@property(nonatomic, getter=isAllDay) BOOL allDay;
@property(nonatomic, copy) NSDate* startDate;
@property(nonatomic, copy) NSDate* endDate;
@property(nonatomic, readonly) BOOL isDetached;
@property(nonatomic, readonly) NSDate* occurrenceDate;
@end

@interface EKReminder : EKCalendarItem
+ (EKReminder*)reminderWithEventStore:(EKEventStore*)store;
@property(nonatomic, copy) NSDateComponents* dueDateComponents;
@property(nonatomic, getter=isCompleted) BOOL completed;
@property(nonatomic, copy) NSDate* completionDate;
@property(nonatomic) NSUInteger priority;
@end

typedef void (^EKEventStoreRequestAccessCompletionHandler)(BOOL granted, NSError* error);

@interface EKEventStore : EKObject {
  NSObject* database_;
  BOOL seesData_;
}
+ (EKAuthorizationStatus)authorizationStatusForEntityType:(EKEntityType)type;
- (instancetype)initWithAccessToEntityTypes:(EKEntityMask)mask;
- (void)requestFullAccessToEventsWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion;
- (void)requestFullAccessToRemindersWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion;
- (void)reset;

- (EKSource*)sourceWithIdentifier:(NSString*)identifier;
- (NSArray*)calendarsForEntityType:(EKEntityType)type;
@property(nonatomic, readonly) EKCalendar* defaultCalendarForNewEvents;
- (EKCalendar*)defaultCalendarForNewReminders;
- (EKCalendar*)calendarWithIdentifier:(NSString*)identifier;
- (BOOL)saveCalendar:(EKCalendar*)calendar commit:(BOOL)commit error:(NSError**)error;
- (BOOL)removeCalendar:(EKCalendar*)calendar commit:(BOOL)commit error:(NSError**)error;

- (EKCalendarItem*)calendarItemWithIdentifier:(NSString*)identifier;
- (NSArray*)calendarItemsWithExternalIdentifier:(NSString*)identifier;
- (EKEvent*)eventWithIdentifier:(NSString*)identifier;
- (BOOL)saveEvent:(EKEvent*)event span:(EKSpan)span commit:(BOOL)commit error:(NSError**)error;
- (BOOL)removeEvent:(EKEvent*)event span:(EKSpan)span commit:(BOOL)commit error:(NSError**)error;
- (BOOL)saveReminder:(EKReminder*)reminder commit:(BOOL)commit error:(NSError**)error;
- (BOOL)removeReminder:(EKReminder*)reminder commit:(BOOL)commit error:(NSError**)error;
@end

@interface EKEventStore (Queries)
- (NSPredicate*)predicateForEventsWithStartDate:(NSDate*)start
                                        endDate:(NSDate*)end
                                      calendars:(NSArray*)calendars;
- (NSArray*)eventsMatchingPredicate:(NSPredicate*)predicate;

- (NSPredicate*)predicateForRemindersInCalendars:(NSArray*)calendars;
- (NSPredicate*)predicateForIncompleteRemindersWithDueDateStarting:(NSDate*)start
                                                            ending:(NSDate*)end
                                                         calendars:(NSArray*)calendars;
- (NSPredicate*)predicateForCompletedRemindersWithCompletionDateStarting:(NSDate*)start
                                                                  ending:(NSDate*)end
                                                               calendars:(NSArray*)calendars;
- (id)fetchRemindersMatchingPredicate:(NSPredicate*)predicate
                           completion:(void (^)(NSArray* reminders))completion;
@end
