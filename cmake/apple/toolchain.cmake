# Compiles and links for a Mac on Debian, to find what would not compile or not link there: a class or a symbol
# that the frameworks do not have, an export too many. What comes out is compiled against another C library's
# headers and is of no other use.
#
# Needs the packages clang-14, lld-14, llvm-14, libc++-16-dev, libc++abi-16-dev, musl-dev, libgnustep-gui-dev.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

set(llvm /usr/lib/llvm-14/bin)
set(CMAKE_AR ${llvm}/llvm-ar)
set(CMAKE_RANLIB ${llvm}/llvm-ranlib)
set(CMAKE_INSTALL_NAME_TOOL ${llvm}/llvm-install-name-tool)
set(CMAKE_OSX_ARCHITECTURES arm64)

set(here ${CMAKE_CURRENT_LIST_DIR})
set(stubs ${CMAKE_BINARY_DIR}/stubs)
set(CMAKE_OSX_SYSROOT ${stubs})
include(${here}/stubs.cmake)
zuno_write_stubs(${stubs})

execute_process(COMMAND gcc -print-file-name=include
  OUTPUT_VARIABLE gcc_include OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND ${llvm}/clang -print-resource-dir
  OUTPUT_VARIABLE clang_resources OUTPUT_STRIP_TRAILING_WHITESPACE)

set(headers "-stdlib=libc++ -nostdinc -U__nonnull -D_GNU_SOURCE")
string(APPEND headers " -isystem /usr/lib/llvm-16/include/c++/v1 -isystem ${clang_resources}/include")
string(APPEND headers " -isystem ${here}/include -isystem /usr/include/x86_64-linux-musl")
# Foundation and AppKit are declared by GNUstep's headers, EventKit by the tests' own.
set(frameworks "-DGNUSTEP -DGNUSTEP_BASE_LIBRARY=1 -fblocks")
string(APPEND frameworks " -isystem ${here}/../../tests/objc/frameworks -isystem /usr/include/GNUstep")
string(APPEND frameworks " -idirafter ${gcc_include}")

foreach(language C CXX OBJCXX)
  if(language STREQUAL C)
    set(CMAKE_C_COMPILER ${llvm}/clang)
  else()
    set(CMAKE_${language}_COMPILER ${llvm}/clang++)
    set(CMAKE_${language}_FLAGS_INIT "${headers}")
  endif()
  set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macos11)
  set(CMAKE_${language}_COMPILER_WORKS ON)
endforeach()
string(APPEND CMAKE_OBJCXX_FLAGS_INIT " ${frameworks}")
foreach(kind EXE MODULE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-fuse-ld=lld -stdlib=libc++ -Qunused-arguments")
endforeach()
