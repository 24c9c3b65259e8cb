# Gives vcpkg the package that this port lies in: vcpkg install tvut22:x86-windows --overlay-ports=PACKAGE/ports
#
# One DLL serves debug and release builds: no C runtime and no C++ passes between it and its caller.
get_filename_component(package "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)
set(VCPKG_POLICY_SKIP_CRT_LINKAGE_CHECK enabled)
set(VCPKG_POLICY_ALLOW_OBSOLETE_MSVCRT enabled) # the one that every Windows has

set(library tvUT22.lib)
if(VCPKG_TARGET_IS_MINGW)
  set(library libtvUT22.a)
endif()
foreach(configuration "" /debug)
  file(INSTALL "${package}/bin/tvUT22.dll" DESTINATION "${CURRENT_PACKAGES_DIR}${configuration}/bin")
  file(INSTALL "${package}/lib/${library}" DESTINATION "${CURRENT_PACKAGES_DIR}${configuration}/lib")
endforeach()
file(INSTALL "${package}/include/tvut22" DESTINATION "${CURRENT_PACKAGES_DIR}/include")
file(INSTALL "${package}/bin/" DESTINATION "${CURRENT_PACKAGES_DIR}/tools/${PORT}")

# For find_package, one folder less deep than in the package.
set(share "${CURRENT_PACKAGES_DIR}/share/${PORT}")
file(INSTALL "${package}/LICENSE" DESTINATION "${share}" RENAME copyright)
file(INSTALL "${package}/THIRD-PARTY.md" "${package}/lib/cmake/tvUT22/tvUT22ConfigVersion.cmake" DESTINATION "${share}")
file(READ "${package}/lib/cmake/tvUT22/tvUT22Config.cmake" config)
string(REPLACE "/../../../" "/../../" config "${config}")
file(WRITE "${share}/tvUT22Config.cmake" "${config}")
