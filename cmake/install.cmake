# What "cmake --install" installs, and the package to download holds: bin, lib (import libraries of MinGW and MSVC,
# and the list to make others from), include, completion for bash, a manual page, the files for find_package,
# pkg-config and vcpkg, bindings (declarations for other languages), docs and examples. Pages lie as they do in the
# repository, so their links hold.
include(CMakePackageConfigHelpers)

set(installed_programs tvUT22 prof tvut logpan logpan_console)
install(TARGETS ${installed_programs} RUNTIME DESTINATION bin)
install(FILES ${PROJECT_BINARY_DIR}/lib/libtvUT22.a ${PROJECT_BINARY_DIR}/lib/tvUT22.lib DESTINATION lib)
install(FILES ${PROJECT_SOURCE_DIR}/src/exports/tvut22.def DESTINATION lib RENAME tvUT22.def)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/tvut22 DESTINATION include)
foreach(page CHANGELOG.md CONTRIBUTING.md LICENSE README.md SECURITY.md THIRD-PARTY.md)
  install(FILES ${PROJECT_SOURCE_DIR}/${page} DESTINATION .)
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/bindings ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples DESTINATION .)
install(FILES ${PROJECT_SOURCE_DIR}/tools/prof/completion/prof DESTINATION share/bash-completion/completions)
install(FILES ${PROJECT_SOURCE_DIR}/share/man/prof.1 DESTINATION share/man/man1)
# For those who read logpan's JSON with lnav.
install(FILES ${PROJECT_SOURCE_DIR}/share/lnav/tvut22_log.json DESTINATION share/lnav)

# The package of symbols: debug files (tvut22_keep_symbols), the page about them and what reads them.
foreach(file docs/symbols.md scripts/name-frames)
  get_filename_component(folder ${file} DIRECTORY)
  install(PROGRAMS ${PROJECT_SOURCE_DIR}/${file} DESTINATION ${folder} COMPONENT symbols EXCLUDE_FROM_ALL)
endforeach()

configure_file(${PROJECT_SOURCE_DIR}/cmake/tvut22.pc.in ${PROJECT_BINARY_DIR}/tvut22.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tvut22.pc DESTINATION lib/pkgconfig)
configure_file(${PROJECT_SOURCE_DIR}/ports/tvut22/vcpkg.json.in ${PROJECT_BINARY_DIR}/vcpkg.json @ONLY)
install(FILES ${PROJECT_SOURCE_DIR}/ports/tvut22/portfile.cmake ${PROJECT_BINARY_DIR}/vcpkg.json
        DESTINATION ports/tvut22)

set(package_folder lib/cmake/tvUT22)
configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/tvUT22Config.cmake.in ${PROJECT_BINARY_DIR}/tvUT22Config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tvUT22ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tvUT22Config.cmake ${PROJECT_BINARY_DIR}/tvUT22ConfigVersion.cmake
        DESTINATION ${package_folder})
