# What is compiled for size in a release build: what waits for a file, a window, a server or a crash, a fifth of the DLL
# less. What callers' loops run through is compiled for speed. The lists have beginnings of the names of sources below
# src/.

# ---- The core -------------------------------------------------------------------------------------------------------
set(TVUT22_SMALL_CORE
    # Rooms that wait for a file, a server, a crash or a window.
    docinfo/
    files/
    runtime/crash/
    window/
    # Forms that another program wrote are imported once.
    prof/formats/xfdf_foreign
    # Variants, of which a profile has few.
    prof/variant_layout
    # Names of countries and languages are unfolded once and kept.
    locale/country_table
    locale/find_country
    locale/kept_
    locale/language_table
    locale/locale_names
    locale/translated_names
    # An expression is compiled once; the matcher is what runs.
    text/regex/char_set
    text/regex/compiler
    text/regex/parser
    text/regex/pattern_reader
    # Once an archive or an entry; its bytes go through other sources.
    zip/target_paths
    zip/zip_extraction
    zip/zip_fault
    zip/zip_names)

set(TVUT22_FAST_CORE
    # Paths are joined and taken apart in loops over many.
    files/path_)

# ---- What knows Windows ---------------------------------------------------------------------------------------------
set(TVUT22_SMALL_DLL
    exports/
    files/
    platform/
    prof/
    runtime/crash/
    runtime/temp_files/
    support/
    window/
    zip/)

set(TVUT22_FAST_DLL
    # Calls of some nanoseconds, of which the way in is a part.
    exports/prof_lists
    exports/prof_strings
    exports/prof_values
    exports/util_conversions
    exports/util_diagnostics
    exports/util_heaps
    exports/util_html
    exports/util_strings
    exports/util_thread_pool
    # What those, and reading and writing a profile, come down to.
    platform/code_page
    platform/file
    platform/letter_case
    platform/process_heap
    platform/processor
    platform/quick_lock
    platform/spin_lock
    platform/stream
    # For size it would call what may throw, although it never does.
    runtime/crash/live_process)

# tvut22_make_small(TARGET BEGINNING... [EXCEPT BEGINNING...]): sources of a library whose names begin so, and not as one of
# the exceptions, are compiled for size in a release build.
function(tvut22_make_small target)
  cmake_parse_arguments(PARSE_ARGV 1 for "" "" EXCEPT)
  if(NOT WIN32 OR NOT CMAKE_BUILD_TYPE STREQUAL "Release")
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  set(small ${sources})
  list(JOIN for_UNPARSED_ARGUMENTS "|" beginnings)
  list(FILTER small INCLUDE REGEX "^(${beginnings})")
  if(for_EXCEPT)
    list(JOIN for_EXCEPT "|" beginnings)
    list(FILTER small EXCLUDE REGEX "^(${beginnings})")
  endif()
  list(FILTER small INCLUDE REGEX "\\.cpp$")
  list(REMOVE_ITEM sources ${small})
  add_library(${target}_small OBJECT ${small})
  target_compile_options(${target}_small PRIVATE -Os)
  target_include_directories(${target}_small PRIVATE $<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>)
  target_compile_definitions(${target}_small PRIVATE $<TARGET_PROPERTY:${target},COMPILE_DEFINITIONS>)
  get_target_property(libraries ${target} LINK_LIBRARIES)
  target_link_libraries(${target}_small PRIVATE ${libraries})
  get_target_property(headers ${target} PRECOMPILE_HEADERS)
  if(headers)
    tvut22_read_once(${target}_small ${headers})
  endif()
  set_target_properties(${target} PROPERTIES SOURCES "${sources};$<TARGET_OBJECTS:${target}_small>")
endfunction()
