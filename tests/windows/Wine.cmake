# Tests of Windows programs under Wine, in a prefix of their own.
set(VELMORA_WINE_PREFIX ${CMAKE_BINARY_DIR}/wine/prefix CACHE PATH "Wine's folder for the tests")

# A test written in Python, whose programs are started by scripts that stand for them.
function(velmora_python_test NAME)
  set(COMMAND "")
  foreach(WORD ${ARGN})
    if(WORD MATCHES "^\\$<TARGET_FILE:(.*)>$")
      set(TARGET ${CMAKE_MATCH_1})
      set(SCRIPT ${CMAKE_BINARY_DIR}/wine/bin/${TARGET})
      get_property(IS_WRITTEN TARGET ${TARGET} PROPERTY VELMORA_WINE_SCRIPT)
      if(NOT IS_WRITTEN)
        set_property(TARGET ${TARGET} PROPERTY VELMORA_WINE_SCRIPT ON)
        file(GENERATE OUTPUT ${SCRIPT}
          CONTENT "#!/bin/sh\nexec python3 ${CMAKE_CURRENT_SOURCE_DIR}/windows/under_wine.py ${VELMORA_WINE_PREFIX} $<TARGET_FILE:${TARGET}> \"$@\"\n"
          FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
      endif()
      list(APPEND COMMAND ${SCRIPT})
    else()
      list(APPEND COMMAND ${WORD})
    endif()
  endforeach()
  # By its path: as a target it would be started under Wine, which loses its exit code.
  add_test(NAME ${NAME} COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/windows/run_test.py ${COMMAND})
  set_tests_properties(${NAME} PROPERTIES TIMEOUT 1800)
  # The settings of a user of Windows are one key, wherever a test wants them to lie.
  file(READ ${ARGV1} SOURCE)
  if(SOURCE MATCHES "XDG_CONFIG_HOME")
    set_tests_properties(${NAME} PROPERTIES RESOURCE_LOCK settings)
  endif()
endfunction()

# The zone of a process is that of the system, which Wine takes from the environment.
foreach(PROGRAM_AND_TESTS "core;WindowsZone.*" "exchange;MasterData.*")
  list(GET PROGRAM_AND_TESTS 0 PROGRAM)
  list(GET PROGRAM_AND_TESTS 1 TESTS)
  add_test(NAME Berlin.${PROGRAM} COMMAND test_${PROGRAM} --gtest_filter=${TESTS})
  set_tests_properties(Berlin.${PROGRAM} PROPERTIES ENVIRONMENT TZ=Europe/Berlin TIMEOUT 300)
endforeach()

if(VELMORA_LINUX_PROGRAMS)
  velmora_python_test(Windows.SameBytes ${CMAKE_CURRENT_SOURCE_DIR}/windows/same_bytes_test.py ${VELMORA_LINUX_PROGRAMS}
    $<TARGET_FILE:velmora-console> $<TARGET_FILE:velmora-host> $<TARGET_FILE:velmora-forms>
    ${PROJECT_SOURCE_DIR}/samples/schule.velmora)
endif()
