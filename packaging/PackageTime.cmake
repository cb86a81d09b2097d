# The time of a package's files is that of the commit, so that two packages of one commit are equal to the byte.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND git -C ${CMAKE_CURRENT_LIST_DIR} log -1 --format=%ct
    OUTPUT_VARIABLE COMMIT_TIME OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(COMMIT_TIME)
    set(ENV{SOURCE_DATE_EPOCH} ${COMMIT_TIME})
  endif()
endif()
