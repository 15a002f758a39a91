// Between the values of the store's interface and Foundation's, one pair of functions for each type. Nil is
// an empty optional in both directions. To be called within guarded().
#pragma once

#import <AppKit/NSColor.h>
#import <Foundation/Foundation.h>
#include <optional>
#include <string>
#include <vector>

#include "eventkit/types.h"

namespace ek::macos {

NSString* nsString(const std::string& text);
NSString* nsString(const std::optional<std::string>& text);
std::optional<std::string> textFrom(NSString* string);

// Texts of several lines: EventKit's apps write line feeds, FileMaker carriage returns.
NSString* linesToStore(const std::optional<std::string>& text);
std::optional<std::string> linesFromStore(NSString* string);

NSDate* nsDate(Date date);
NSDate* nsDate(std::optional<Date> date);
std::optional<Date> dateFrom(NSDate* date);  // the whole second it lies in

// Nil for a text that is no URL by RFC 3986. What the platform makes of one depends on the system that the
// host was linked for, so its characters are checked first.
NSURL* nsUrl(const std::optional<std::string>& text);
std::optional<std::string> textFrom(NSURL* url);

NSDateComponents* nsDateComponents(const std::optional<DateComponents>& due);
std::optional<DateComponents> componentsFrom(NSDateComponents* components);

NSColor* nsColor(const Color& color);
std::optional<Color> colorFrom(NSColor* color);

NSArray* nsNumbers(const std::vector<int>& numbers);  // nil for an empty list
std::vector<int> numbersFrom(NSArray* numbers);

Error errorFrom(NSError* error);

}  // namespace ek::macos
