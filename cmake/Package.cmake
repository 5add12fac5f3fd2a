# The Debian package of qto, made of what is installed.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qto)
set(CPACK_PACKAGE_CONTACT "Quartino <maintainers@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "room programmes on the command line")
set(CPACK_PACKAGE_DESCRIPTION
    "Compares, sums up, checks and converts lists of rooms, and reads and writes them in IFC models.")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianFiles.cmake)
include(CPack)
