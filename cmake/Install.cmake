# What a desktop needs besides the program and its helper: the desktop entry,
# the AppStream metainfo, the manual page and the package's documents. The
# program, the helper, the icons and the resources install where they are
# built.
set(TARNWICK_APP_ID harrowmere.Tarnwick)
set(TARNWICK_HOMEPAGE "https://harrowmere.example/tarnwick"
    CACHE STRING "The program's home page, named in its metainfo and package")
# The date of this release; a reproducible build sets SOURCE_DATE_EPOCH.
string(TIMESTAMP TARNWICK_RELEASE_DATE "%Y-%m-%d" UTC)
string(TIMESTAMP TARNWICK_RELEASE_TIME "%a, %d %b %Y %H:%M:%S +0000" UTC)

# Folders are made readable by all, whatever the umask of the one who
# installs.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(TARNWICK_PACKAGING_DIR ${PROJECT_BINARY_DIR}/packaging)
configure_file(${packaging}/${TARNWICK_APP_ID}.metainfo.xml.in
               ${TARNWICK_PACKAGING_DIR}/${TARNWICK_APP_ID}.metainfo.xml @ONLY)
configure_file(${packaging}/tarnwick.1.in ${TARNWICK_PACKAGING_DIR}/tarnwick.1 @ONLY)
configure_file(${packaging}/changelog.in ${TARNWICK_PACKAGING_DIR}/changelog @ONLY)

# Manual pages and changelogs are kept compressed, without a time stamp in
# the compressed file.
set(compressed)
foreach(name tarnwick.1 changelog)
  add_custom_command(OUTPUT ${TARNWICK_PACKAGING_DIR}/${name}.gz
                     COMMAND gzip -9nkf ${TARNWICK_PACKAGING_DIR}/${name}
                     DEPENDS ${TARNWICK_PACKAGING_DIR}/${name})
  list(APPEND compressed ${TARNWICK_PACKAGING_DIR}/${name}.gz)
endforeach()
add_custom_target(tarnwick_packaging_files ALL DEPENDS ${compressed})

install(FILES ${packaging}/${TARNWICK_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${TARNWICK_PACKAGING_DIR}/${TARNWICK_APP_ID}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${TARNWICK_PACKAGING_DIR}/tarnwick.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${packaging}/copyright ${TARNWICK_PACKAGING_DIR}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tarnwick)
