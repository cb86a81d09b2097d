# Compiler settings that every target of the project shares.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_library(velmora_settings INTERFACE)
target_compile_options(velmora_settings INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion>
  # GCC 12 sees overlaps in std::string's operator+ that are none (its bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  $<$<BOOL:${VELMORA_WERROR}>:-Werror>)

# One library per floor. Each floor shows its own folder to the floors above it,
# and knows only the folders of the floors it is linked to: an include that
# points upward does not compile.
function(velmora_floor NAME FOLDER)
  cmake_parse_arguments(FLOOR "" "" "SOURCES;BELOW;LIBRARIES" ${ARGN})
  add_library(${NAME} STATIC ${FLOOR_SOURCES})
  target_include_directories(${NAME} PUBLIC ${FOLDER})
  target_link_libraries(${NAME} PUBLIC ${FLOOR_BELOW} PRIVATE velmora_settings ${FLOOR_LIBRARIES})
endfunction()
