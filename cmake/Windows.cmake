# What the programs need on Windows only: definitions, the system's libraries, resources, the check of the imports.
add_compile_definitions(UNICODE _UNICODE _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN
  CURL_STATICLIB ZIP_STATIC UTF8PROC_STATIC)

set(VELMORA_SYSTEM_LIBRARIES
  ws2_32 winhttp shlwapi shell32 ole32 uuid advapi32 bcrypt crypt32 normaliz psapi secur32 version)

# Windows looks for what a program is in the program itself: version, and how it wants to be treated.
function(velmora_resources NAME DESCRIPTION)
  set(RESOURCE_NAME ${NAME})
  set(RESOURCE_DESCRIPTION ${DESCRIPTION})
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest.in ${NAME}.manifest @ONLY)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${NAME}.rc @ONLY)
  target_sources(${NAME} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${NAME}.rc)
  velmora_check_imports(${NAME})
endfunction()

# A program that needs a library which is not part of the system is an error of the build.
function(velmora_check_imports NAME)
  add_custom_command(TARGET ${NAME} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -DOBJDUMP=${CMAKE_OBJDUMP} -DPROGRAM=$<TARGET_FILE:${NAME}>
      -P ${PROJECT_SOURCE_DIR}/cmake/CheckImports.cmake)
endfunction()
