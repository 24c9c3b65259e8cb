# What Windows wants to know of a binary that is shipped: name and version for the user who asks for its properties,
# the oldest system in its header, and of a program the manifest that tells which Windows it knows.
enable_language(RC)

# tvut22_describe(TARGET FILE "What it is" [ICON file])
function(tvut22_describe target file description)
  cmake_parse_arguments(PARSE_ARGV 3 of "" "ICON" "")
  get_filename_component(internal_name ${file} NAME_WE)
  set(file_type VFT_DLL)
  set(more_resources "")
  if(NOT file MATCHES "\\.dll$")
    set(file_type VFT_APP)
    string(APPEND more_resources "1 RT_MANIFEST \"program.manifest\"\n")
  endif()
  if(of_ICON)
    string(APPEND more_resources "IDI_APPLICATION ICON \"${of_ICON}\"\n") # the first one is the file's own
  endif()
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resources} @ONLY)
  set_source_files_properties(
    ${resources} PROPERTIES OBJECT_DEPENDS "${PROJECT_SOURCE_DIR}/cmake/program.manifest"
                            INCLUDE_DIRECTORIES "${PROJECT_SOURCE_DIR}/cmake;${CMAKE_CURRENT_SOURCE_DIR}")
  target_sources(${target} PRIVATE ${resources})
  target_link_options(
    ${target} PRIVATE
    -Wl,--major-os-version=6,--minor-os-version=1,--major-subsystem-version=6,--minor-subsystem-version=1)
endfunction()
