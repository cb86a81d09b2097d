# An archive of the programs, their pages, and the licences of what is linked into them:
# cpack --config BUILD/CPackConfig.cmake
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION docs)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION .)
install(DIRECTORY ${VELMORA_WINDOWS_LIBRARIES}/licences DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_VENDOR Velmora)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_PACKAGE_FILE_NAME velmora-console-${PROJECT_VERSION}-windows-x64)
set(CPACK_STRIP_FILES ON)
include(CPack)
