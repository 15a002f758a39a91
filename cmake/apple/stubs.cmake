# Text stubs of the Mac libraries that the plug-in is linked with: what we know them to have of what it uses.
include(${CMAKE_CURRENT_LIST_DIR}/../ZunoTbd.cmake)

set(apple_frameworks AddressBook AppKit CoreFoundation CoreServices EventKit Foundation)
set(AddressBook_CLASSES ABAddressBook ABMultiValue ABPerson)
set(AddressBook_SYMBOLS kABAddressProperty kABAddressStreetKey kABAddressCityKey kABAddressStateKey
  kABAddressZIPKey kABAddressCountryKey)
set(AppKit_CLASSES NSColor NSColorSpace)
set(CoreFoundation_CLASSES NSArray NSCalendar NSDate NSMutableArray NSTimeZone NSURL)
set(CoreFoundation_SYMBOLS CFBundleCopyLocalizedString CFRelease CFStringCreateWithBytes CFStringGetCharacters
  CFStringGetLength __CFConstantStringClassReference)
set(CoreServices_SYMBOLS Gestalt)
set(EventKit_CLASSES EKAlarm EKCalendar EKEvent EKEventStore EKRecurrenceDayOfWeek EKRecurrenceEnd
  EKRecurrenceRule EKReminder)
set(EventKit_SYMBOLS EKErrorDomain EKEventStoreChangedNotification)
set(Foundation_CLASSES NSAutoreleasePool NSCharacterSet NSDateComponents NSDictionary NSException
  NSNotificationCenter NSNumber NSObject NSRunLoop NSString)
set(Foundation_SYMBOLS NSCalendarIdentifierGregorian)

# What a library for this machine offers under the same names (C++ symbols are mangled alike).
function(zuno_symbols_of library result)
  file(GLOB path /usr/lib/llvm-16/lib/${library} /usr/lib/x86_64-linux-gnu/${library})
  list(GET path 0 path)
  execute_process(COMMAND /usr/lib/llvm-14/bin/llvm-nm -D --defined-only --format=posix ${path}
    OUTPUT_VARIABLE listing)
  string(REGEX MATCHALL "(^|\n)[A-Za-z_][A-Za-z0-9_.$]*" names "${listing}")
  list(TRANSFORM names STRIP)
  set(${result} ${names} PARENT_SCOPE)
endfunction()

function(zuno_write_stubs folder)
  foreach(framework IN LISTS apple_frameworks)
    zuno_write_tbd(${folder}/System/Library/Frameworks/${framework}.framework/${framework}.tbd
      INSTALL_NAME /System/Library/Frameworks/${framework}.framework/Versions/A/${framework}
      SYMBOLS ${${framework}_SYMBOLS} CLASSES ${${framework}_CLASSES})
  endforeach()
  zuno_symbols_of(libc++.so.1 cxx)
  zuno_symbols_of(libc++abi.so.1 cxxabi)
  zuno_write_tbd(${folder}/usr/lib/libc++.tbd INSTALL_NAME /usr/lib/libc++.1.dylib SYMBOLS ${cxx} ${cxxabi})
  zuno_write_tbd(${folder}/usr/lib/libobjc.tbd INSTALL_NAME /usr/lib/libobjc.A.dylib CLASSES NSObject
    SYMBOLS _objc_empty_cache objc_ehtype_vtable __objc_personality_v0 objc_msgSend objc_msgSendSuper2 objc_autoreleasePoolPush
      objc_autoreleasePoolPop objc_begin_catch objc_end_catch objc_enumerationMutation objc_alloc objc_retain
      objc_release objc_autorelease objc_opt_class objc_opt_isKindOfClass objc_alloc_init)
  zuno_write_tbd(${folder}/usr/lib/libSystem.tbd INSTALL_NAME /usr/lib/libSystem.B.dylib
    EXACT dyld_stub_binder
    SYMBOLS _Unwind_Resume _Block_object_assign _Block_object_dispose
      _NSConcreteStackBlock _NSConcreteGlobalBlock __isPlatformVersionAtLeast
      __cxa_atexit __exp10 __stack_chk_fail __stack_chk_guard
      abort abs bzero close dup fclose fflush fgets fopen fprintf fputs fread free fseek fseeko fstat ftell ftello fwrite getenv gmtime_r
      localtime_r lseek memchr memcmp memcpy memmove memset open pow read realpath rewind snprintf stat strchr
      strcmp strlen strtol strtoll strtoul syslog time vsnprintf write
      # As the headers of the other C library have it; a Mac's own name it otherwise.
      stderr)
endfunction()
