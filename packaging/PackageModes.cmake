# The folders that the install step makes on its way have the modes that the umask leaves them.
file(GLOB_RECURSE FOLDERS LIST_DIRECTORIES true ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(FOLDER ${FOLDERS})
  if(IS_DIRECTORY ${FOLDER} AND NOT IS_SYMLINK ${FOLDER})
    file(CHMOD ${FOLDER} DIRECTORY_PERMISSIONS ${CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
  endif()
endforeach()
