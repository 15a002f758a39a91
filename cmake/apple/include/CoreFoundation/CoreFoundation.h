// The part of CoreFoundation that reads a bundle's strings.
#pragma once

#include <cstdint>

using UInt8 = unsigned char;
using UniChar = unsigned short;
using Boolean = unsigned char;
using CFIndex = long;
using CFStringEncoding = std::uint32_t;
using CFTypeRef = const void*;
using CFStringRef = const struct __CFString*;
using CFBundleRef = struct __CFBundle*;
using CFAllocatorRef = const struct __CFAllocator*;
struct CFRange {
  CFIndex location;
  CFIndex length;
};
inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return {location, length}; }
constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;

extern "C" {
void CFRelease(CFTypeRef object);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean hasByteOrderMark);
CFIndex CFStringGetLength(CFStringRef string);
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);
CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                        CFStringRef table);
}
