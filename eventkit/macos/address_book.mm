#include "eventkit/macos/address_book.h"

#import <EventKit/EventKit.h>

#include "eventkit/macos/conversions.h"

namespace ek::macos {

namespace {

// "Main St 1, Springfield, IL, 62701, USA", without what is absent; a street of several lines is one.
std::optional<std::string> oneLine(NSDictionary* address) {
  NSMutableArray* parts = [NSMutableArray array];
  NSString* const keys[] = {kABAddressStreetKey, kABAddressCityKey, kABAddressStateKey, kABAddressZIPKey,
                            kABAddressCountryKey};
  for (NSString* key : keys) {
    for (NSString* line in [[address objectForKey:key]
             componentsSeparatedByCharactersInSet:[NSCharacterSet newlineCharacterSet]])
      if ([line length] > 0) [parts addObject:line];
  }
  return [parts count] > 0 ? textFrom([parts componentsJoinedByString:@", "]) : std::nullopt;
}

// The property has several addresses, of which the first is taken.
std::optional<std::string> addressIn(ABPerson* person) {
  id addresses = [person valueForProperty:kABAddressProperty];
  if (![addresses isKindOfClass:[ABMultiValue class]] || [addresses count] == 0) return std::nullopt;
  id address = [addresses valueAtIndex:0];
  return [address isKindOfClass:[NSDictionary class]] ? oneLine(address) : std::nullopt;
}

}  // namespace

std::optional<std::string> SystemAddressBook::addressOf(const Participant& participant) {
  const auto* native = static_cast<const Ref<EKParticipant>*>(participant.native.get());
  if (native == nullptr || !book_) return std::nullopt;
  @autoreleasepool {
    @try {
      return addressIn([native->get() ABPersonInAddressBook:book_.get()]);
    } @catch (NSException*) {
      // A book that cannot be read is one without the address: attendees have to stay readable.
      return std::nullopt;
    }
  }
}

}  // namespace ek::macos
