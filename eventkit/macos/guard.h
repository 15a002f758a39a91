// The one way into a framework: what it raises becomes ek::Exception, what it autoreleases is gone on return.
//
// On runtimes with an Objective-C personality routine of their own, a C++ try, catch or throw compiled in a
// .mm file is broken, so that there is none in this folder: an NSException is caught as such, the C++
// exception is thrown from a .cpp file, and clean-up is left to destructors.
#pragma once

#import <Foundation/Foundation.h>
#include <string>

#include "eventkit/types.h"

namespace ek::macos {

// `call` must not return an autoreleased object: a C++ value or a Ref.
template <class Call>
auto guarded(Call&& call) -> decltype(call()) {
  std::string reason;
  @autoreleasepool {
    @try {
      return call();
    } @catch (NSException* raised) {
      const char* text = [[raised reason] UTF8String];
      reason = text != nullptr ? text : "";
    }
  }
  throwException(reason);
}

}  // namespace ek::macos
