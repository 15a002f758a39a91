# Compiler settings that every target of ours shares, and the two ways to declare one.

add_library(zuno_settings INTERFACE)
target_compile_options(zuno_settings INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
  -Wnon-virtual-dtor -Woverloaded-virtual -Wno-missing-field-initializers>
  $<$<AND:$<BOOL:${ZUNO_WERROR}>,$<COMPILE_LANGUAGE:CXX>>:-Werror>)
target_include_directories(zuno_settings INTERFACE ${PROJECT_SOURCE_DIR})
if(ZUNO_SANITIZE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # What the sanitizers put in makes GCC 12 doubt values inside the standard library.
    target_compile_options(zuno_settings INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-maybe-uninitialized>)
  endif()
  target_compile_options(zuno_settings INTERFACE -fsanitize=${ZUNO_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  target_link_options(zuno_settings INTERFACE -fsanitize=${ZUNO_SANITIZE})
endif()

# zuno_library(NAME SOURCES... ): a static library that the plug-in, the tools and the tests link.
function(zuno_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC zuno_settings)
endfunction()

# What runs under the thread sanitizer too.
add_custom_target(zuno_threads_tests)

# zuno_test(NAME SOURCES file... [LIBRARIES target...] [LABELS label...]): one GoogleTest program, each of its
# cases a ctest. The cases labelled "threads" run under the thread sanitizer too.
function(zuno_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  find_package(GTest REQUIRED)
  include(GoogleTest)
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE zuno_settings ${ARG_LIBRARIES} GTest::gmock GTest::gtest_main)
  set(properties TIMEOUT 300)
  if("threads" IN_LIST ARG_LABELS)
    add_dependencies(zuno_threads_tests ${name})
  endif()
  if(ARG_LABELS)
    list(APPEND properties LABELS "${ARG_LABELS}")
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120 PROPERTIES ${properties})
endfunction()
