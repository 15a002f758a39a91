#include "foundation/bundle.h"

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>
#include <memory>
#include <type_traits>

namespace foundation {

namespace {

struct Release {
  void operator()(CFTypeRef object) const noexcept { CFRelease(object); }
};
using String = std::unique_ptr<std::remove_pointer_t<CFStringRef>, Release>;

String stringOf(std::string_view text) {
  return String(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(text.data()),
                                        static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

std::u16string unitsOf(CFStringRef string) {
  std::u16string units(static_cast<std::size_t>(CFStringGetLength(string)), u'\0');
  CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)),
                        reinterpret_cast<UniChar*>(units.data()));
  return units;
}

}  // namespace

std::optional<std::u16string> localizedString(std::uintptr_t bundle, std::string_view key,
                                              std::string_view table) {
  if (bundle == 0) return std::nullopt;
  const String wanted = stringOf(key);
  const String name = stringOf(table);
  // The key is its own default: getting that very object back means that the table does not have it.
  const String found(CFBundleCopyLocalizedString(reinterpret_cast<CFBundleRef>(bundle), wanted.get(),
                                                 wanted.get(), name.get()));
  if (found == nullptr || found == wanted) return std::nullopt;
  return unitsOf(found.get());
}

std::optional<std::int32_t> gestalt(std::uint32_t selector) {
  SInt32 response = 0;
  if (Gestalt(static_cast<OSType>(selector), &response) != noErr) return std::nullopt;
  return response;
}

}  // namespace foundation
