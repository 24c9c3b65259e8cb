# Header-only packages of the build machine, for a cross compiler.
#
# The machine's /usr/include must never be on a cross compiler's path, so each package is linked into a
# folder of the build tree that holds nothing else.

# tvut22_stage_headers(TARGET entry...): lets a target include /usr/include/<entry>, a folder or a header.
function(tvut22_stage_headers target)
  set(staged ${PROJECT_BINARY_DIR}/staged/${target})
  file(MAKE_DIRECTORY ${staged})
  foreach(entry ${ARGN})
    if(NOT EXISTS /usr/include/${entry})
      message(FATAL_ERROR "/usr/include/${entry} is missing; scripts/setup installs it")
    endif()
    file(CREATE_LINK /usr/include/${entry} ${staged}/${entry} SYMBOLIC)
  endforeach()
  target_include_directories(${target} SYSTEM PRIVATE ${staged})
endfunction()
