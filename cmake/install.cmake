# What "cmake --install" installs, and the package to download holds: bin, lib (import libraries of MinGW and MSVC,
# and the list to make others from), include, the files for find_package, docs and examples. Pages lie as they do in
# the repository, so their links hold.
include(CMakePackageConfigHelpers)

set(installed_programs tvUT22 prof tvut logpan logpan_console)
install(TARGETS ${installed_programs} RUNTIME DESTINATION bin)
install(FILES ${PROJECT_BINARY_DIR}/lib/libtvUT22.a ${PROJECT_BINARY_DIR}/lib/tvUT22.lib DESTINATION lib)
install(FILES ${PROJECT_SOURCE_DIR}/src/exports/tvut22.def DESTINATION lib RENAME tvUT22.def)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/tvut22 DESTINATION include)
foreach(page CHANGELOG.md CONTRIBUTING.md LICENSE README.md THIRD-PARTY.md)
  install(FILES ${PROJECT_SOURCE_DIR}/${page} DESTINATION .)
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples DESTINATION .)
# For those who read logpan's JSON with lnav.
install(FILES ${PROJECT_SOURCE_DIR}/share/lnav/tvut22_log.json DESTINATION share/lnav)

# The package of symbols: debug files (tvut22_keep_symbols), the page about them and what reads them.
foreach(file docs/symbols.md scripts/name-frames)
  get_filename_component(folder ${file} DIRECTORY)
  install(PROGRAMS ${PROJECT_SOURCE_DIR}/${file} DESTINATION ${folder} COMPONENT symbols EXCLUDE_FROM_ALL)
endforeach()

set(package_folder lib/cmake/tvUT22)
configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/tvUT22Config.cmake.in ${PROJECT_BINARY_DIR}/tvUT22Config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tvUT22ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tvUT22Config.cmake ${PROJECT_BINARY_DIR}/tvUT22ConfigVersion.cmake
        DESTINATION ${package_folder})
