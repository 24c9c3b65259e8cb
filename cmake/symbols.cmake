# What is shipped carries no debug information, which would be twenty times its size. The file beside it does, FILE.debug,
# and is named in it (.gnu_debuglink); it belongs to the component "symbols". It names the same folder on every machine.
# -p leaves the zero in the place of the time.
function(tvut22_keep_symbols target)
  if(NOT CMAKE_BUILD_TYPE STREQUAL "Release")
    return()
  endif()
  set(file $<TARGET_FILE:${target}>)
  add_custom_command(
    TARGET ${target}
    POST_BUILD
    COMMAND ${CMAKE_OBJCOPY} -p --only-keep-debug ${file} ${file}.debug
    COMMAND ${CMAKE_STRIP} -p --strip-all ${file}
    COMMAND ${CMAKE_OBJCOPY} -p --add-gnu-debuglink=${file}.debug ${file}
    COMMENT "Moving debug information beside $<TARGET_FILE_NAME:${target}>"
    VERBATIM)
  install(FILES ${file}.debug DESTINATION bin COMPONENT symbols EXCLUDE_FROM_ALL)
endfunction()

# For the targets that the calling folder makes.
macro(tvut22_map_source_folder)
  if(CMAKE_BUILD_TYPE STREQUAL "Release")
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=/tvUT22>)
  endif()
endmacro()
