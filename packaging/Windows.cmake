# An archive of the programs, their pages, and the licences of what is linked into them:
# cpack --config BUILD/CPackConfig.cmake
include(${CMAKE_CURRENT_LIST_DIR}/Pages.cmake)
velmora_pages(.)
install(FILES packaging/windows/velmora-completion.ps1 packaging/windows/velmora-nightly.xml DESTINATION .)
install(DIRECTORY ${VELMORA_WINDOWS_LIBRARIES}/licences DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_VENDOR Velmora)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_PACKAGE_FILE_NAME velmora-console-${PROJECT_VERSION}-windows-x64)
set(CPACK_STRIP_FILES ON)
include(CPack)
