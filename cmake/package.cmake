# The packages to download: "cmake --workflow --preset package" makes build/package/tvUT22-VERSION-win32.zip, and one
# of the debug files that belong to it, tvUT22-VERSION-win32-symbols.zip.
find_program(PYTHON python3 REQUIRED)
set(package_name ${PROJECT_NAME}-${PROJECT_VERSION}-win32)
set(symbols_name ${package_name}-symbols)
set(package_folder ${PROJECT_BINARY_DIR}/package)
set(archives ${PROJECT_SOURCE_DIR}/build/package)
set(make_zip ${PYTHON} ${PROJECT_SOURCE_DIR}/cmake/make_zip.py)
add_custom_target(
  package_zip
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${package_folder}
  COMMAND ${CMAKE_COMMAND} --install ${PROJECT_BINARY_DIR} --prefix ${package_folder}/${package_name}
  COMMAND ${CMAKE_COMMAND} --install ${PROJECT_BINARY_DIR} --component symbols --prefix ${package_folder}/${symbols_name}
  COMMAND ${make_zip} ${package_folder}/${package_name} ${archives}/${package_name}.zip
  COMMAND ${make_zip} ${package_folder}/${symbols_name} ${archives}/${symbols_name}.zip
  COMMENT "Packing ${package_name}.zip and ${symbols_name}.zip"
  VERBATIM)
add_dependencies(package_zip tvUT22 tvut22_import_library prof tvut logpan logpan_console)
