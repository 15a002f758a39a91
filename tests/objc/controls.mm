// What tests set up, and what is shared by all stores.
#include <atomic>
#include <utility>

#include "tests/objc/objects.h"
#include "tests/objc/stand_in.h"

NSString* const EKErrorDomain = @"EKErrorDomain";
NSString* const EKEventStoreChangedNotification = @"EKEventStoreChangedNotification";

namespace {

std::atomic<long> live{0};
std::atomic<int> queries{0};

}  // namespace

@implementation EKObject
+ (id)allocWithZone:(NSZone*)zone {
  ++live;
  return [super allocWithZone:zone];
}
- (void)dealloc {
  --live;
  [super dealloc];
}
@end

// Delivers a consent on a thread of its own.
@interface ConsentDelivery : EKObject {
 @public
  void (^answer)(BOOL, NSError*);
  BOOL isGranted;
}
@end

@implementation ConsentDelivery
- (void)deliver:(id)unused {
  (void)unused;
  answer(isGranted, nil);
}
- (void)dealloc {
  [answer release];
  [super dealloc];
}
@end

namespace stand_in {

namespace {

StandInDatabase* chosen = nil;
Access access = Access::granted;
NSMutableArray* requests = nil;
NSError* nextError = nil;
NSString* nextReason = nil;
bool tells = true;

NSString* text(const std::string& utf8) { return [NSString stringWithUTF8String:utf8.c_str()]; }

StandInDatabase* objectOf(const Database& database) {
  return static_cast<StandInDatabase*>(database.object());
}

ABMutableMultiValue* newAddresses() {
#ifdef GNUSTEP
  return [[[ABMutableMultiValue alloc] initWithType:kABMultiDictionaryProperty] autorelease];
#else
  return [[[ABMutableMultiValue alloc] init] autorelease];
#endif
}

ABPerson* personAt(const Attendee& attendee) {
  if ((attendee.street + attendee.city + attendee.region + attendee.code + attendee.country).empty())
    return nil;
  NSMutableDictionary* address = [NSMutableDictionary dictionary];
  const auto put = [&](NSString* key, const std::string& value) {
    if (!value.empty()) [address setObject:text(value) forKey:key];
  };
  put(kABAddressStreetKey, attendee.street);
  put(kABAddressCityKey, attendee.city);
  put(kABAddressStateKey, attendee.region);
  put(kABAddressZIPKey, attendee.code);
  put(kABAddressCountryKey, attendee.country);
  ABMutableMultiValue* addresses = newAddresses();
  [addresses addValue:address withLabel:kABAddressHomeLabel];
  ABPerson* person = [[[ABPerson alloc] init] autorelease];
  [person setValue:addresses forProperty:kABAddressProperty];
  return person;
}

}  // namespace

NSString* newIdentifier() { return [[NSProcessInfo processInfo] globallyUniqueString]; }

NSDate* plus(NSDate* date, NSTimeInterval seconds) {
  return [[[NSDate alloc] initWithTimeInterval:seconds sinceDate:date] autorelease];
}

void misuse(NSString* reason) {
  [[NSException exceptionWithName:NSInvalidArgumentException reason:reason userInfo:nil] raise];
  __builtin_unreachable();
}

void apply(NSDictionary* changes, NSMutableDictionary* values) {
  for (NSString* key in changes) {
    id value = [changes objectForKey:key];
    if (value == [NSNull null])
      [values removeObjectForKey:key];
    else
      [values setObject:value forKey:key];
  }
}

BOOL same(id one, id other) { return one == other || [one isEqual:other]; }

bool mayRead() { return access == Access::granted; }
bool isUndecided() { return access == Access::undecided; }

BOOL refuse(NSError** error, NSInteger code) {
  *error = [NSError errorWithDomain:EKErrorDomain code:code userInfo:nil];
  return NO;
}

BOOL failsNow(NSError** error) {
  if (nextReason != nil) misuse([std::exchange(nextReason, nil) autorelease]);
  if (nextError == nil) return NO;
  *error = [std::exchange(nextError, nil) autorelease];
  return YES;
}

bool tellsOfChanges() { return tells; }
void setTellsOfChanges(bool now) { tells = now; }

void countQuery() { ++queries; }
int takeQueryCount() { return queries.exchange(0); }

void keepRequest(void (^answer)(BOOL, NSError*)) {
  ConsentDelivery* delivery = [[[ConsentDelivery alloc] init] autorelease];
  delivery->answer = [answer copy];
  if (requests == nil) requests = [[NSMutableArray alloc] init];
  [requests addObject:delivery];
}

StandInDatabase* chosenDatabase() {
  // A program that sets nothing up has one database, for as long as it runs.
  if (chosen == nil) chosen = [[StandInDatabase alloc] init];
  return chosen;
}

Database::Database() {
  @autoreleasepool {
    object_ = [[StandInDatabase alloc] init];
  }
  choose();
}

Database::~Database() {
  if (chosen == object_) chosen = nil;
  @autoreleasepool {
    [objectOf(*this) release];
  }
}

void Database::choose() const { chosen = objectOf(*this); }

void setAccess(Access now) { access = now; }

int openRequests() { return static_cast<int>([requests count]); }

void answerRequests(bool isGranted) {
  @autoreleasepool {
    access = isGranted ? Access::granted : Access::denied;
    for (ConsentDelivery* delivery in requests) {
      delivery->isGranted = isGranted ? YES : NO;
      [NSThread detachNewThreadSelector:@selector(deliver:) toTarget:delivery withObject:nil];
    }
    [requests removeAllObjects];
  }
}

void failNext(const std::string& domain, int code, const std::string& description) {
  @autoreleasepool {
    NSDictionary* info = [NSDictionary dictionaryWithObject:text(description)
                                                     forKey:NSLocalizedDescriptionKey];
    nextError = [[NSError alloc] initWithDomain:text(domain) code:code userInfo:info];
  }
}

void raiseNext(const std::string& reason) {
  @autoreleasepool {
    nextReason = [text(reason) copy];
  }
}

void addAttendee(const Database& database, const std::string& itemTitle, const Attendee& attendee) {
  @autoreleasepool {
    EKParticipant* participant =
        [[[EKParticipant alloc] initWithURL:[NSURL URLWithString:text(attendee.url)]
                                       name:attendee.name.empty() ? nil : text(attendee.name)
                                     status:static_cast<EKParticipantStatus>(attendee.status)
                                       role:static_cast<EKParticipantRole>(attendee.role)
                                       type:static_cast<EKParticipantType>(attendee.type)
                                     person:personAt(attendee)] autorelease];
    for (ItemRecord* record in objectOf(database)->items) {
      if (![[record->values objectForKey:@"title"] isEqual:text(itemTitle)]) continue;
      NSArray* present = [record->values objectForKey:@"attendees"];
      [record->values setObject:present != nil ? [present arrayByAddingObject:participant]
                                               : [NSArray arrayWithObject:participant]
                         forKey:@"attendees"];
    }
  }
}

void makeReadOnly(const Database& database, const std::string& calendarTitle) {
  @autoreleasepool {
    for (CalendarRecord* record in objectOf(database)->calendars)
      if ([[record->values objectForKey:@"title"] isEqual:text(calendarTitle)])
        [record->values setObject:@"yes" forKey:@"isReadOnly"];
  }
}

void setLocalTimeZone(const std::string& name) {
  @autoreleasepool {
    [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneWithName:text(name)]];
  }
}

long liveObjects() { return live; }

}  // namespace stand_in
