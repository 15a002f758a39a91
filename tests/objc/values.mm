// Alarms, rules, attendees and accounts: plain values, equal by what they say.
#include "tests/objc/objects.h"

using stand_in::misuse;
using stand_in::same;

@implementation EKRecurrenceDayOfWeek
@synthesize dayOfTheWeek = dayOfTheWeek_;
@synthesize weekNumber = weekNumber_;
+ (EKRecurrenceDayOfWeek*)dayOfWeek:(EKWeekday)day {
  return [self dayOfWeek:day weekNumber:0];
}
+ (EKRecurrenceDayOfWeek*)dayOfWeek:(EKWeekday)day weekNumber:(NSInteger)number {
  if (day < EKWeekdaySunday || day > EKWeekdaySaturday) misuse(@"no such day of the week");
  EKRecurrenceDayOfWeek* made = [[[self alloc] init] autorelease];
  made->dayOfTheWeek_ = day;
  made->weekNumber_ = number;
  return made;
}
- (BOOL)isEqual:(id)other {
  return [other isKindOfClass:[EKRecurrenceDayOfWeek class]] && [other dayOfTheWeek] == dayOfTheWeek_ &&
         [other weekNumber] == weekNumber_;
}
- (NSUInteger)hash {
  return static_cast<NSUInteger>(dayOfTheWeek_);
}
@end

@implementation EKRecurrenceEnd
@synthesize endDate = endDate_;
@synthesize occurrenceCount = occurrenceCount_;
+ (EKRecurrenceEnd*)recurrenceEndWithEndDate:(NSDate*)date {
  if (date == nil) misuse(@"an end date is required");
  EKRecurrenceEnd* made = [[[self alloc] init] autorelease];
  made->endDate_ = [date copy];
  return made;
}
+ (EKRecurrenceEnd*)recurrenceEndWithOccurrenceCount:(NSUInteger)count {
  if (count == 0) misuse(@"a count of at least one is required");
  EKRecurrenceEnd* made = [[[self alloc] init] autorelease];
  made->occurrenceCount_ = count;
  return made;
}
- (id)copyWithZone:(NSZone*)zone {
  EKRecurrenceEnd* made = [[EKRecurrenceEnd allocWithZone:zone] init];
  made->endDate_ = [endDate_ copy];
  made->occurrenceCount_ = occurrenceCount_;
  return made;
}
- (BOOL)isEqual:(id)other {
  return [other isKindOfClass:[EKRecurrenceEnd class]] && same([other endDate], endDate_) &&
         [other occurrenceCount] == occurrenceCount_;
}
- (NSUInteger)hash {
  return occurrenceCount_;
}
- (void)dealloc {
  [endDate_ release];
  [super dealloc];
}
@end

namespace {

bool areWithin(NSArray* numbers, NSInteger limit, bool fromTheEndToo) {
  for (NSNumber* number in numbers) {
    const NSInteger value = fromTheEndToo ? std::abs([number integerValue]) : [number integerValue];
    if (value < 1 || value > limit) return false;
  }
  return true;
}

NSArray* keptIf(bool applies, NSArray* values) { return applies ? [values copy] : nil; }

}  // namespace

@implementation EKRecurrenceRule
@synthesize frequency = frequency_;
@synthesize interval = interval_;
@synthesize daysOfTheWeek = daysOfTheWeek_;
@synthesize daysOfTheMonth = daysOfTheMonth_;
@synthesize monthsOfTheYear = monthsOfTheYear_;
@synthesize weeksOfTheYear = weeksOfTheYear_;
@synthesize daysOfTheYear = daysOfTheYear_;
@synthesize setPositions = setPositions_;
@synthesize recurrenceEnd = recurrenceEnd_;
- (instancetype)initRecurrenceWithFrequency:(EKRecurrenceFrequency)frequency
                                   interval:(NSInteger)interval
                              daysOfTheWeek:(NSArray*)daysOfTheWeek
                             daysOfTheMonth:(NSArray*)daysOfTheMonth
                            monthsOfTheYear:(NSArray*)monthsOfTheYear
                             weeksOfTheYear:(NSArray*)weeksOfTheYear
                              daysOfTheYear:(NSArray*)daysOfTheYear
                               setPositions:(NSArray*)setPositions
                                        end:(EKRecurrenceEnd*)end {
  self = [super init];
  const bool isMonthly = frequency == EKRecurrenceFrequencyMonthly;
  const bool isYearly = frequency == EKRecurrenceFrequencyYearly;
  bool isForbidden = interval < 1;
  for (EKRecurrenceDayOfWeek* day in daysOfTheWeek) {
    const NSInteger limit = isYearly ? 53 : isMonthly ? 5 : 0;
    isForbidden =
        isForbidden || (frequency != EKRecurrenceFrequencyDaily && std::abs([day weekNumber]) > limit);
  }
  if (isForbidden) {
    [self release];
    misuse(@"an interval or a week number that the frequency forbids");
  }
  if ((isMonthly && !areWithin(daysOfTheMonth, 31, true)) ||
      (isYearly && !areWithin(monthsOfTheYear, 12, false))) {
    [self release];
    return nil;
  }
  frequency_ = frequency;
  interval_ = interval;
  daysOfTheWeek_ = keptIf(frequency != EKRecurrenceFrequencyDaily, daysOfTheWeek);
  daysOfTheMonth_ = keptIf(isMonthly, daysOfTheMonth);
  monthsOfTheYear_ = keptIf(isYearly, monthsOfTheYear);
  weeksOfTheYear_ = keptIf(isYearly, weeksOfTheYear);
  daysOfTheYear_ = keptIf(isYearly, daysOfTheYear);
  setPositions_ = [setPositions copy];
  recurrenceEnd_ = [end copy];
  return self;
}
- (NSInteger)firstDayOfTheWeek {
  return frequency_ == EKRecurrenceFrequencyWeekly && interval_ > 1 ? 2 : 0;
}
- (id)copyWithZone:(NSZone*)zone {
  return [[EKRecurrenceRule allocWithZone:zone] initRecurrenceWithFrequency:frequency_
                                                                   interval:interval_
                                                              daysOfTheWeek:daysOfTheWeek_
                                                             daysOfTheMonth:daysOfTheMonth_
                                                            monthsOfTheYear:monthsOfTheYear_
                                                             weeksOfTheYear:weeksOfTheYear_
                                                              daysOfTheYear:daysOfTheYear_
                                                               setPositions:setPositions_
                                                                        end:recurrenceEnd_];
}
- (BOOL)isEqual:(id)object {
  if (![object isKindOfClass:[EKRecurrenceRule class]]) return NO;
  EKRecurrenceRule* other = object;
  return [other frequency] == frequency_ && [other interval] == interval_ &&
         same([other daysOfTheWeek], daysOfTheWeek_) && same([other daysOfTheMonth], daysOfTheMonth_) &&
         same([other monthsOfTheYear], monthsOfTheYear_) && same([other weeksOfTheYear], weeksOfTheYear_) &&
         same([other daysOfTheYear], daysOfTheYear_) && same([other setPositions], setPositions_) &&
         same([other recurrenceEnd], recurrenceEnd_);
}
- (NSUInteger)hash {
  return static_cast<NSUInteger>(frequency_);
}
- (void)dealloc {
  [daysOfTheWeek_ release];
  [daysOfTheMonth_ release];
  [monthsOfTheYear_ release];
  [weeksOfTheYear_ release];
  [daysOfTheYear_ release];
  [setPositions_ release];
  [recurrenceEnd_ release];
  [super dealloc];
}
@end

@implementation EKAlarm
@synthesize relativeOffset = relativeOffset_;
@synthesize absoluteDate = absoluteDate_;
@synthesize emailAddress = emailAddress_;
@synthesize soundName = soundName_;
@synthesize url = url_;
+ (EKAlarm*)alarmWithAbsoluteDate:(NSDate*)date {
  EKAlarm* made = [[[self alloc] init] autorelease];
  [made setAbsoluteDate:date];
  return made;
}
+ (EKAlarm*)alarmWithRelativeOffset:(NSTimeInterval)offset {
  EKAlarm* made = [[[self alloc] init] autorelease];
  [made setRelativeOffset:offset];
  return made;
}
- (void)setRelativeOffset:(NSTimeInterval)offset {
  [absoluteDate_ release];
  absoluteDate_ = nil;
  relativeOffset_ = offset;
}
- (void)setAbsoluteDate:(NSDate*)date {
  [absoluteDate_ autorelease];
  absoluteDate_ = [date copy];
  relativeOffset_ = 0;
}
- (void)setAddress:(NSString*)address sound:(NSString*)sound url:(NSURL*)url {
  [emailAddress_ autorelease];
  emailAddress_ = [address copy];
  [soundName_ autorelease];
  soundName_ = [sound copy];
  [url_ autorelease];
  url_ = [url copy];
}
- (void)setEmailAddress:(NSString*)address {
  [self setAddress:address sound:nil url:nil];
}
- (void)setSoundName:(NSString*)sound {
  [self setAddress:nil sound:sound url:nil];
}
- (void)setUrl:(NSURL*)url {
  [self setAddress:nil sound:nil url:url];
}
- (EKAlarmType)type {
  if (emailAddress_ != nil) return EKAlarmTypeEmail;
  if (soundName_ != nil) return EKAlarmTypeAudio;
  return url_ != nil ? EKAlarmTypeProcedure : EKAlarmTypeDisplay;
}
- (id)copyWithZone:(NSZone*)zone {
  EKAlarm* made = [[EKAlarm allocWithZone:zone] init];
  made->relativeOffset_ = relativeOffset_;
  made->absoluteDate_ = [absoluteDate_ copy];
  [made setAddress:emailAddress_ sound:soundName_ url:url_];
  return made;
}
- (BOOL)isEqual:(id)other {
  return [other isKindOfClass:[EKAlarm class]] && [other relativeOffset] == relativeOffset_ &&
         same([other absoluteDate], absoluteDate_) && same([other emailAddress], emailAddress_) &&
         same([other soundName], soundName_) && same([other url], url_);
}
- (NSUInteger)hash {
  return static_cast<NSUInteger>([self type]);
}
- (void)dealloc {
  [absoluteDate_ release];
  [emailAddress_ release];
  [soundName_ release];
  [url_ release];
  [super dealloc];
}
@end

@implementation EKParticipant
@synthesize URL = URL_;
@synthesize name = name_;
@synthesize participantStatus = participantStatus_;
@synthesize participantRole = participantRole_;
@synthesize participantType = participantType_;
- (instancetype)initWithURL:(NSURL*)url
                       name:(NSString*)name
                     status:(EKParticipantStatus)status
                       role:(EKParticipantRole)role
                       type:(EKParticipantType)type
                     person:(ABPerson*)person {
  self = [super init];
  URL_ = [url copy];
  name_ = [name copy];
  participantStatus_ = status;
  participantRole_ = role;
  participantType_ = type;
  person_ = [person retain];
  return self;
}
- (ABPerson*)ABPersonInAddressBook:(ABAddressBook*)book {
  if (book == nil) misuse(@"an address book is required");
  NSError* unused = nil;
  stand_in::failsNow(&unused);
  return person_;
}
- (void)dealloc {
  [URL_ release];
  [name_ release];
  [person_ release];
  [super dealloc];
}
@end

@implementation EKSource
@synthesize sourceIdentifier = sourceIdentifier_;
@synthesize sourceType = sourceType_;
@synthesize title = title_;
- (instancetype)initWithIdentifier:(NSString*)identifier title:(NSString*)title {
  self = [super init];
  sourceIdentifier_ = [identifier copy];
  title_ = [title copy];
  return self;
}
- (void)dealloc {
  [sourceIdentifier_ release];
  [title_ release];
  [super dealloc];
}
@end
