# The package to download: "cmake --workflow --preset package" makes build/package/tvUT22-VERSION-win32.zip.
find_program(PYTHON python3 REQUIRED)
set(package_name ${PROJECT_NAME}-${PROJECT_VERSION}-win32)
set(package_folder ${PROJECT_BINARY_DIR}/package/${package_name})
add_custom_target(
  package_zip
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${package_folder}
  COMMAND ${CMAKE_COMMAND} --install ${PROJECT_BINARY_DIR} --prefix ${package_folder}
  COMMAND ${PYTHON} ${PROJECT_SOURCE_DIR}/cmake/make_zip.py ${package_folder}
          ${PROJECT_SOURCE_DIR}/build/package/${package_name}.zip
  COMMENT "Packing ${package_name}.zip"
  VERBATIM)
add_dependencies(package_zip ${installed_programs} tvut22_import_library)
