# The packages CPack makes from the install rules:
#   DEB  tarnwick_VERSION_ARCH.deb, installed under /usr, its dependencies
#        found by dpkg-shlibdeps, and libcurl named here: the updater loads
#        it when it first fetches, which dpkg-shlibdeps can't see;
#   TGZ  tarnwick-VERSION-linux-ARCH.tar.gz, a release folder that runs from
#        wherever it is unpacked and that the updater installs over:
#          tarnwick/current -> tarnwick-VERSION
#          tarnwick/tarnwick-VERSION/{bin,libexec,share}
# `cpack` in the build folder makes both (cmake/PackagingPerGenerator.cmake
# gives each its own layout).
set(CPACK_PACKAGE_NAME tarnwick)
set(CPACK_PACKAGE_VENDOR Harrowmere)
set(CPACK_PACKAGE_CONTACT "Harrowmere <tarnwick@harrowmere.example>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "bring an application's windows to the mouse pointer")
set(CPACK_PACKAGE_DESCRIPTION
    "Tarnwick puts an application's windows at the mouse. A key chord (Control,
Alt and Shift together) brings up a small floating panel centred on the
pointer, listing the titled windows of one application: the file manager at
first, any other from the panel's menu. A click raises a window; round
buttons close it, minimise it and switch it to full screen.")
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CHECKSUM SHA256)
# CPack's own include sets its file name variables anew: the tests read
# this one.
set(TARNWICK_RELEASE_ARCHIVE_NAME tarnwick-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_FILE_NAME ${TARNWICK_RELEASE_ARCHIVE_NAME})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)

execute_process(COMMAND dpkg --print-architecture OUTPUT_VARIABLE TARNWICK_DEBIAN_ARCHITECTURE
                OUTPUT_STRIP_TRAILING_WHITESPACE)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${TARNWICK_DEBIAN_ARCHITECTURE})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libcurl4 (>= 7.85.0)")
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${TARNWICK_HOMEPAGE})

set(TARNWICK_RELEASE_FOLDER tarnwick-${PROJECT_VERSION})
configure_file(${CMAKE_CURRENT_LIST_DIR}/PackagingPerGenerator.cmake.in
               ${PROJECT_BINARY_DIR}/PackagingPerGenerator.cmake @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/ReleaseFolderLink.cmake.in
               ${PROJECT_BINARY_DIR}/ReleaseFolderLink.cmake @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/PackagingPerGenerator.cmake)
include(CPack)
