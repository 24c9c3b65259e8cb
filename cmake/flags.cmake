# Compiler settings that every target of this project takes; see the reasons beside each.

add_library(tvut22_flags INTERFACE)
target_compile_features(tvut22_flags INTERFACE cxx_std_20)

target_compile_options(
  tvut22_flags
  INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Werror
            # Stack traces walk the frame pointers.
            -fno-omit-frame-pointer -fno-optimize-sibling-calls)

if(WIN32)
  target_compile_definitions(tvut22_flags INTERFACE _WIN32_WINNT=0x0601 UNICODE _UNICODE)
  target_compile_options(
    tvut22_flags
    INTERFACE -gdwarf-4 # the debug-help service cannot read a newer DWARF
  )
  target_link_options(tvut22_flags INTERFACE -Wl,--no-insert-timestamp) # reproducible output
endif()

# For code that callers enter: their stack is aligned to 4 bytes only, and SSE code inside needs 16.
add_library(tvut22_entered_by_callers INTERFACE)
if(WIN32)
  target_compile_options(tvut22_entered_by_callers
                         INTERFACE $<$<COMPILE_LANGUAGE:C,CXX>:-mincoming-stack-boundary=2>)
endif()

# Most of the time that a source takes goes into headers of the library's and the system's. Read once, they make a
# release build from nothing half as long. The checked build and the native ones do without, and so see where an
# #include is missing; a compiler cache knows a source again only when it reads its headers itself.
set(once OFF)
if(WIN32 AND CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(once ON)
endif()
option(TVUT22_PRECOMPILE "Read the headers that most sources of a target include once" ${once})
set(TVUT22_OFTEN <algorithm> <array> <atomic> <bit> <cstring> <memory> <mutex> <optional> <span> <string> <string_view>
    <vector>)

# tvut22_read_once(TARGET header...)
function(tvut22_read_once target)
  if(TVUT22_PRECOMPILE)
    # What GCC 12 says of its own strings it keeps to itself only while it knows that they are its own.
    target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# tvut22_compile_quickly(TARGET source...): sources whose templates take the compiler longer than all else of a tool, and
# which run once, as those that read a command line do. They come last, so that where another source has the same
# function of a template, the linker keeps that one.
function(tvut22_compile_quickly target)
  if(MSVC OR NOT CMAKE_BUILD_TYPE STREQUAL "Release")
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  list(REMOVE_ITEM sources ${ARGN})
  set_target_properties(${target} PROPERTIES SOURCES "${sources};${ARGN}")
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS -O0 SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# Undefined behaviour and misuse of the standard library end the program at once.
option(TVUT22_CHECKED "Trap undefined behaviour and check the standard library's preconditions" OFF)
if(NOT TVUT22_CHECKED)
  target_compile_definitions(tvut22_flags INTERFACE $<$<CONFIG:Release>:NDEBUG>)
else()
  target_compile_definitions(tvut22_flags INTERFACE _GLIBCXX_ASSERTIONS)
  target_compile_options(tvut22_flags INTERFACE -fsanitize=undefined -fsanitize-undefined-trap-on-error)
endif()

option(TVUT22_SANITIZE "Build with address and undefined-behaviour sanitizers and fuzzers (clang)" OFF)
if(TVUT22_SANITIZE)
  target_compile_options(tvut22_flags INTERFACE -fsanitize=address,undefined,fuzzer-no-link
                                                -fno-sanitize-recover=all)
  target_link_options(tvut22_flags INTERFACE -fsanitize=address,undefined)
endif()

option(TVUT22_SANITIZE_THREADS "Build with the thread sanitizer (clang), and only tests of what threads share" OFF)
if(TVUT22_SANITIZE_THREADS)
  target_compile_options(tvut22_flags INTERFACE -fsanitize=thread)
  target_link_options(tvut22_flags INTERFACE -fsanitize=thread)
endif()
