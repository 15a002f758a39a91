// The part of AddressBook that the bridge calls.
#pragma once

#import <Foundation/Foundation.h>

extern "C" {
extern NSString* const kABAddressProperty;
extern NSString* const kABAddressStreetKey;
extern NSString* const kABAddressCityKey;
extern NSString* const kABAddressStateKey;
extern NSString* const kABAddressZIPKey;
extern NSString* const kABAddressCountryKey;
}

@interface ABAddressBook : NSObject
@end

@interface ABPerson : NSObject
- (id)valueForProperty:(NSString*)property;
@end

@interface ABMultiValue : NSObject
- (NSUInteger)count;
- (id)valueAtIndex:(NSUInteger)index;
@end
