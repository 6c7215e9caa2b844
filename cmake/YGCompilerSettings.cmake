# SPDX-License-Identifier: MIT
# One place for the language level, the warnings and the instrumentation of every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

if(PROJECT_IS_TOP_LEVEL)
  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Release unless set otherwise" FORCE)
  endif()
  find_program(YG_CCACHE ccache DOC "Compiler cache, used when it is there")
  mark_as_advanced(YG_CCACHE)
  if(YG_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    # What one checkout has compiled serves the others; the rest lets it keep what uses a precompiled
    # header.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
      "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      "${YG_CCACHE}")
  endif()
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
endif()

# For the project's own targets only, so that a parent project keeps its own settings.
add_library(yg_build_settings INTERFACE)
target_include_directories(yg_build_settings INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(yg_build_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
  -Wcast-qual -Wformat=2 -Wundef)
if(YG_WARNINGS_AS_ERRORS)
  target_compile_options(yg_build_settings INTERFACE -Werror)
endif()
if(YG_SANITIZE)
  target_compile_options(yg_build_settings INTERFACE
    -fsanitize=${YG_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(yg_build_settings INTERFACE -fsanitize=${YG_SANITIZE})
endif()
if(YG_COVERAGE)
  target_compile_options(yg_build_settings INTERFACE --coverage)
  target_link_options(yg_build_settings INTERFACE --coverage)
endif()
