# A Debian package of the programs and their pages: cpack --config BUILD/CPackConfig.cmake
include(GNUInstallDirs)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora-console)
set(CPACK_PACKAGE_VENDOR Velmora)
set(CPACK_PACKAGE_CONTACT "Velmora <console@velmora.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Carries a school's timetable between a Velmora data file and other systems")
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The authorities that servers are verified by.
set(CPACK_DEBIAN_PACKAGE_DEPENDS ca-certificates)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
include(CPack)
