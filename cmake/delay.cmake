# Import libraries for functions of the system that are bound when they are first called; src/platform/delay_load.cpp
# says how. MSVC's linker does the same by itself for /DELAYLOAD:user32.dll and so on.

# tvut22_bind_late(TARGET library...): each from src/platform/delayed/<library>.def.
function(tvut22_bind_late target)
  find_program(DLLTOOL i686-w64-mingw32-dlltool REQUIRED)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/delayed)
  file(MAKE_DIRECTORY ${folder})
  foreach(library ${ARGN})
    set(list ${CMAKE_CURRENT_SOURCE_DIR}/platform/delayed/${library}.def)
    add_custom_command(
      OUTPUT ${folder}/lib${library}.a
      COMMAND ${DLLTOOL} -k -d ${list} --output-delaylib lib${library}.a
      DEPENDS ${list}
      WORKING_DIRECTORY ${folder}
      COMMENT "Binding ${library} late")
    list(APPEND made ${folder}/lib${library}.a)
    # The table alone refers to the piece of code that binds a function, and what only a table refers to is left out.
    file(STRINGS ${list} names REGEX "^    ")
    foreach(name ${names})
      string(STRIP "${name}" name)
      target_link_options(${target} PRIVATE -Wl,-u,_${name})
    endforeach()
  endforeach()
  add_custom_target(${target}_bound_late DEPENDS ${made})
  add_dependencies(${target} ${target}_bound_late)
  target_link_libraries(${target} PRIVATE ${made})
endfunction()
