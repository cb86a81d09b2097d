# Ends with an error where PROGRAM imports a library that is not part of Windows; OBJDUMP lists the imports.
cmake_minimum_required(VERSION 3.25)

set(SYSTEM_LIBRARIES advapi32 bcrypt crypt32 kernel32 msvcrt normaliz ole32 psapi secur32 shell32 shlwapi user32 version winhttp ws2_32)

execute_process(COMMAND ${OBJDUMP} -p ${PROGRAM} OUTPUT_VARIABLE HEADERS COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "DLL Name: [^\n\r]+" IMPORTS "${HEADERS}")
if(NOT IMPORTS)
  message(FATAL_ERROR "${PROGRAM}: no imports were found")
endif()
foreach(IMPORT ${IMPORTS})
  string(REGEX REPLACE "DLL Name: (.*)\\.dll" "\\1" LIBRARY "${IMPORT}")
  string(TOLOWER "${LIBRARY}" LIBRARY)
  if(NOT LIBRARY IN_LIST SYSTEM_LIBRARIES)
    message(FATAL_ERROR "${PROGRAM} needs ${LIBRARY}.dll, which is no part of Windows")
  endif()
endforeach()
