# The package to download: "cmake --workflow --preset package" makes build/package/tvUT22-VERSION-win32.zip.
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-win32)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/package)
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_STRIP_FILES OFF) # the DLL's debug information is a file of its own already
include(CPack)
