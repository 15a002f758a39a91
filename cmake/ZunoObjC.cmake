# zuno_objc: how Objective-C++ is compiled and what it is linked with. On a Mac that is Apple's frameworks.
# Elsewhere the same sources are compiled by Clang for GNUstep and linked with a stand-in for EventKit: a test
# of the code, not a product.

set(ZUNO_MACOS_TESTS "AUTO" CACHE STRING "Test the bridge to EventKit where there is none: ON, OFF or AUTO")
set_property(CACHE ZUNO_MACOS_TESTS PROPERTY STRINGS AUTO ON OFF)

add_library(zuno_objc INTERFACE)
target_compile_options(zuno_objc INTERFACE
  $<$<COMPILE_LANGUAGE:OBJCXX>:-Wall -Wextra -Wshadow -Wno-deprecated-declarations
  -Wno-missing-field-initializers -Werror=objc-method-access>
  $<$<AND:$<BOOL:${ZUNO_WERROR}>,$<COMPILE_LANGUAGE:OBJCXX>>:-Werror>)

# zuno_find_gnustep(RESULT): whether the bridge can be tested here. Says what is missing; an error where the
# tests were asked for, and on build servers (environment variable CI).
function(zuno_find_gnustep result)
  set(${result} OFF PARENT_SCOPE)
  if(ZUNO_MACOS_TESTS STREQUAL "OFF")
    return()
  endif()
  find_program(ZUNO_OBJCXX_COMPILER NAMES clang++ clang++-14)
  find_path(ZUNO_GNUSTEP_INCLUDE Foundation/Foundation.h PATH_SUFFIXES GNUstep)
  find_library(ZUNO_ADDRESSES Addresses)
  if(ZUNO_OBJCXX_COMPILER AND ZUNO_GNUSTEP_INCLUDE AND ZUNO_ADDRESSES)
    set(${result} ON PARENT_SCOPE)
    return()
  endif()
  set(message "The macOS bridge is not tested: it needs the packages clang, libgnustep-gui-dev and libaddresses-dev.")
  if(ZUNO_MACOS_TESTS STREQUAL "ON" OR DEFINED ENV{CI})
    message(FATAL_ERROR "${message}")
  endif()
  message(STATUS "${message}")
endfunction()

# Compiles Objective-C++ for Apple's frameworks from here on. A macro, as the next one.
macro(zuno_use_apple)
  set(CMAKE_OBJCXX_STANDARD 20)
  set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
  set(CMAKE_OBJCXX_EXTENSIONS OFF)
  set(CMAKE_OBJCXX_VISIBILITY_PRESET hidden)
  enable_language(OBJCXX)
  # Not EventKit: only the plug-in is linked with it, tests have a stand-in.
  target_link_libraries(zuno_objc INTERFACE "-framework AddressBook" "-framework AppKit" "-framework Foundation"
    objc)
endmacro()

# Compiles Objective-C++ for GNUstep from here on. A macro: languages are enabled for the calling folder.
macro(zuno_use_gnustep)
  set(CMAKE_OBJCXX_COMPILER ${ZUNO_OBJCXX_COMPILER})
  set(CMAKE_OBJCXX_STANDARD 20)
  set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
  set(CMAKE_OBJCXX_EXTENSIONS OFF)
  enable_language(OBJCXX)
  execute_process(COMMAND gcc -print-file-name=include
    OUTPUT_VARIABLE ZUNO_GCC_INCLUDE OUTPUT_STRIP_TRAILING_WHITESPACE)
  # A C++ try, catch or throw does not work in such a file: -fno-cxx-exceptions makes it an error.
  target_compile_options(zuno_objc INTERFACE
    $<$<COMPILE_LANGUAGE:OBJCXX>:-fblocks -fobjc-runtime=gcc -fobjc-exceptions -fexceptions
    -fno-cxx-exceptions -fno-strict-aliasing -fconstant-string-class=NSConstantString
    -idirafter${ZUNO_GCC_INCLUDE}>)
  target_compile_definitions(zuno_objc INTERFACE
    $<$<COMPILE_LANGUAGE:OBJCXX>:GNUSTEP GNUSTEP_BASE_LIBRARY=1 GNU_RUNTIME=1 _NATIVE_OBJC_EXCEPTIONS>)
  target_include_directories(zuno_objc SYSTEM INTERFACE
    $<$<COMPILE_LANGUAGE:OBJCXX>:${PROJECT_SOURCE_DIR}/tests/objc/compat>
    $<$<COMPILE_LANGUAGE:OBJCXX>:${PROJECT_SOURCE_DIR}/tests/objc/frameworks>
    $<$<COMPILE_LANGUAGE:OBJCXX>:${ZUNO_GNUSTEP_INCLUDE}>)
  target_link_libraries(zuno_objc INTERFACE zuno_macos_blocks Addresses gnustep-gui gnustep-base objc pthread)
endmacro()
