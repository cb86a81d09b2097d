# A Debian package of the programs, their pages, an account and a timer: cpack --config BUILD/CPackConfig.cmake
include(GNUInstallDirs)
set(PACKAGING ${CMAKE_CURRENT_LIST_DIR})
set(PACKED ${CMAKE_BINARY_DIR}/packed)

# What the loader has bound is not written any more.
foreach(PROGRAM velmora-console velmora-host)
  target_link_options(${PROGRAM} PRIVATE LINKER:-z,now)
endforeach()

# Installs a page as the system wants its pages: compressed, with neither name nor time of the source.
function(velmora_packed_page SOURCE DESTINATION)
  get_filename_component(NAME ${SOURCE} NAME)
  add_custom_command(OUTPUT ${PACKED}/${NAME}.gz
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PACKED}
    COMMAND gzip -9nc ${SOURCE} > ${PACKED}/${NAME}.gz
    DEPENDS ${SOURCE} VERBATIM)
  install(FILES ${PACKED}/${NAME}.gz DESTINATION ${DESTINATION})
  set_property(GLOBAL APPEND PROPERTY VELMORA_PACKED_PAGES ${PACKED}/${NAME}.gz)
endfunction()

# A second name for what is installed.
function(velmora_link TARGET NAME DESTINATION)
  file(MAKE_DIRECTORY ${PACKED})
  file(CREATE_LINK ${TARGET} ${PACKED}/${NAME} SYMBOLIC)
  install(FILES ${PACKED}/${NAME} DESTINATION ${DESTINATION})
endfunction()

velmora_packed_page(${PACKAGING}/man/velmora-console.1 ${CMAKE_INSTALL_MANDIR}/man1)
velmora_packed_page(${PACKAGING}/man/velmora-host.1 ${CMAKE_INSTALL_MANDIR}/man1)
velmora_link(velmora-host.1.gz velmora-ocf-host.1.gz ${CMAKE_INSTALL_MANDIR}/man1)
velmora_packed_page(${PACKAGING}/debian/changelog ${CMAKE_INSTALL_DOCDIR})
get_property(PACKED_PAGES GLOBAL PROPERTY VELMORA_PACKED_PAGES)
add_custom_target(packed_pages ALL DEPENDS ${PACKED_PAGES})

include(${PACKAGING}/Pages.cmake)
velmora_pages(${CMAKE_INSTALL_DOCDIR})
install(FILES ${PACKAGING}/debian/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(COMPLETIONS ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES ${PACKAGING}/completion/velmora-console DESTINATION ${COMPLETIONS})
velmora_link(velmora-console velmora-host ${COMPLETIONS})

install(FILES ${PACKAGING}/systemd/velmora@.service ${PACKAGING}/systemd/velmora@.timer DESTINATION lib/systemd/system)

if(VELMORA_TESTS)
  add_subdirectory(tests/packaging)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora-console)
set(CPACK_PACKAGE_VENDOR Velmora)
set(CPACK_PACKAGE_CONTACT "Velmora <console@velmora.example>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
# Whatever the umask is.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PROJECT_CONFIG_FILE ${PACKAGING}/PackageTime.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${PACKAGING}/PackageModes.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PACKAGING}/PackageArchive.cmake)
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "carries a school's timetable into other systems
Exports a Velmora data file as a set of CSV files in the OCF exchange format,
imports such a set, uploads the plan to Sdui or to an IServ server, publishes
it as a JSON document, and gives objects new identifiers. One run does one
job, by hand or from a timer.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The authorities that servers are verified by, the rules of the school's time zone, and the account of the jobs.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ca-certificates, tzdata, adduser")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${PACKAGING}/debian/postinst ${PACKAGING}/debian/prerm ${PACKAGING}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
include(CPack)
