# What `cmake --install` puts down and the Debian package holds: qto, its manual pages and its
# completion, which it writes itself.
include(GNUInstallDirs)
set(pages "")
foreach(language en de)
  set(page ${CMAKE_CURRENT_BINARY_DIR}/man/${language}/qto.1.gz)
  add_custom_command(
    OUTPUT ${page}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/man/${language}
    COMMAND sh -c "\"$1\" --lang ${language} --man | gzip -n9 >\"$2\"" sh $<TARGET_FILE:qto> ${page}
    DEPENDS qto
    VERBATIM)
  list(APPEND pages ${page})
endforeach()
set(completion ${CMAKE_CURRENT_BINARY_DIR}/man/qto)
add_custom_command(
  OUTPUT ${completion}
  COMMAND sh -c "\"$1\" --completion bash >\"$2\"" sh $<TARGET_FILE:qto> ${completion}
  DEPENDS qto
  VERBATIM)
add_custom_target(manual DEPENDS ${pages} ${completion})

install(TARGETS qto)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/man/en/qto.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/man/de/qto.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/de/man1)
install(FILES ${completion} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)

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
include(CPack)
