#include "eventkit/macos/conversions.h"

#import <AppKit/NSColorSpace.h>
#import <EventKit/EventKit.h>
#include <algorithm>
#include <cmath>
#include <string_view>

namespace ek::macos {

namespace {

// Every CR LF, CR and LF as `lineBreak`.
std::string withLineBreaks(const std::string& text, char lineBreak) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    out += text[i] == '\r' || text[i] == '\n' ? lineBreak : text[i];
  }
  return out;
}

bool isUrlCharacter(char character) {
  constexpr std::string_view kOthers = "-._~:/?#[]@!$&'()*+,;=%";
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || kOthers.find(character) != std::string_view::npos;
}

NSCalendar* gregorian() {
  return [[[NSCalendar alloc] initWithCalendarIdentifier:NSCalendarIdentifierGregorian] autorelease];
}

bool isSet(NSInteger component) { return component != static_cast<NSInteger>(NSDateComponentUndefined); }

// Without access a save is refused in a domain of the calendar daemon's own.
bool tellsOfMissingAccess(NSError* error) {
  return
      [[error domain] isEqualToString:@"EKCADErrorDomain"] && ([error code] == 1013 || [error code] == 1014);
}

}  // namespace

NSString* nsString(const std::string& text) {
  return [[[NSString alloc] initWithBytes:text.data() length:text.size()
                                 encoding:NSUTF8StringEncoding] autorelease];
}

NSString* nsString(const std::optional<std::string>& text) { return text ? nsString(*text) : nil; }

std::optional<std::string> textFrom(NSString* string) {
  const char* text = [string UTF8String];
  if (text == nullptr) return std::nullopt;
  return std::string(text, [string lengthOfBytesUsingEncoding:NSUTF8StringEncoding]);
}

NSString* linesToStore(const std::optional<std::string>& text) {
  return text ? nsString(withLineBreaks(*text, '\n')) : nil;
}

std::optional<std::string> linesFromStore(NSString* string) {
  const auto text = textFrom(string);
  return text ? std::optional(withLineBreaks(*text, '\r')) : std::nullopt;
}

NSDate* nsDate(Date date) {
  return [NSDate dateWithTimeIntervalSince1970:static_cast<double>(date.time_since_epoch().count())];
}

NSDate* nsDate(std::optional<Date> date) { return date ? nsDate(*date) : nil; }

std::optional<Date> dateFrom(NSDate* date) {
  if (date == nil) return std::nullopt;
  return Date(std::chrono::seconds(static_cast<std::int64_t>(std::floor([date timeIntervalSince1970]))));
}

NSURL* nsUrl(const std::optional<std::string>& text) {
  if (!text || text->empty() || !std::ranges::all_of(*text, isUrlCharacter)) return nil;
  return [NSURL URLWithString:nsString(*text)];
}

std::optional<std::string> textFrom(NSURL* url) { return textFrom([url absoluteString]); }

NSDateComponents* nsDateComponents(const std::optional<DateComponents>& due) {
  if (!due) return nil;
  const foundation::WallFields fields = foundation::fieldsOf(due->wall);
  NSDateComponents* components = [[[NSDateComponents alloc] init] autorelease];
  // Named, so that the year is not taken for one of the user's own calendar.
  [components setCalendar:gregorian()];
  [components setYear:fields.year];
  [components setMonth:static_cast<NSInteger>(fields.month)];
  [components setDay:static_cast<NSInteger>(fields.day)];
  if (!due->isDateOnly) {
    [components setHour:static_cast<NSInteger>(fields.hour)];
    [components setMinute:static_cast<NSInteger>(fields.minute)];
    [components setSecond:static_cast<NSInteger>(fields.second)];
  }
  if (due->zone) [components setTimeZone:[NSTimeZone timeZoneWithName:nsString(due->zone->name())]];
  return components;
}

std::optional<DateComponents> componentsFrom(NSDateComponents* components) {
  if (components == nil) return std::nullopt;
  const auto field = [](NSInteger value, NSInteger absent) {
    return static_cast<unsigned>(isSet(value) ? value : absent);
  };
  DateComponents due;
  due.isDateOnly = !isSet([components hour]);
  due.wall = foundation::wallTimeFrom({.year = static_cast<int>(field([components year], 1)),
                                       .month = field([components month], 1),
                                       .day = field([components day], 1),
                                       .hour = field([components hour], 0),
                                       .minute = field([components minute], 0),
                                       .second = field([components second], 0)});
  if (const auto zone = textFrom([[components timeZone] name])) due.zone = foundation::TimeZone::named(*zone);
  return due;
}

NSColor* nsColor(const Color& color) {
  return [NSColor colorWithCalibratedRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

std::optional<Color> colorFrom(NSColor* color) {
  NSColor* calibrated = [color colorUsingColorSpace:[NSColorSpace genericRGBColorSpace]];
  if (calibrated == nil) return std::nullopt;
  return Color{.red = [calibrated redComponent],
               .green = [calibrated greenComponent],
               .blue = [calibrated blueComponent],
               .alpha = [calibrated alphaComponent]};
}

NSArray* nsNumbers(const std::vector<int>& numbers) {
  if (numbers.empty()) return nil;
  NSMutableArray* array = [NSMutableArray arrayWithCapacity:numbers.size()];
  for (const int number : numbers) [array addObject:[NSNumber numberWithInt:number]];
  return array;
}

std::vector<int> numbersFrom(NSArray* numbers) {
  std::vector<int> values;
  for (NSNumber* number in numbers) values.push_back([number intValue]);
  return values;
}

Error errorFrom(NSError* error) {
  const std::string text = textFrom([error localizedDescription]).value_or("");
  if (tellsOfMissingAccess(error)) return {ErrorCode::eventStoreNotAuthorized, text};
  if (![[error domain] isEqualToString:EKErrorDomain]) return {ErrorCode::internalFailure, text};
  return {static_cast<ErrorCode>([error code]), text};
}

}  // namespace ek::macos
