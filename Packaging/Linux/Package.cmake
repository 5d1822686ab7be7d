# The Debian package: cpack -G DEB --config build/package/CPackConfig.cmake
set(document_folder ${CMAKE_INSTALL_DATADIR}/doc/brimvale) # the name of the package
install(FILES ${documents}/changelog.gz DESTINATION ${document_folder})
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${document_folder} RENAME copyright)
install(FILES ${PROJECT_SOURCE_DIR}/Packaging/Linux/lintian-overrides
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME brimvale)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brimvale)
set(CPACK_PACKAGE_VENDOR "The Brimvale authors")
set(CPACK_PACKAGE_CONTACT "The Brimvale authors <hello@brimvale.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "shows where disk space has gone and gets it back safely")
set(CPACK_PACKAGE_DESCRIPTION "Brimvale scans a folder into an outline and a treemap, measures what can be
removed because programs create it again, and divides the used space into
categories. It removes only what you select, after a question, and never
what the system needs. It has a window, and a command line tool for
terminals and scripts.")
# The question of polkit names a path, which must be that of the installed program and not that of the build.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://brimvale.example)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Without the first, nothing is removed as administrator; the second is for desktops without X11.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "pkexec, qt6-wayland")
include(CPack)
