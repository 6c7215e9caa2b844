# SPDX-License-Identifier: MIT
# Runs the port of packaging/vcpkg by the commands that vcpkg gives to ports, as far as they are needed here:
# a static library in Release, into PREFIX.
#
#   cmake -DPORT=… -DWORK=… -DPREFIX=… [-DCMAKE_GENERATOR=… …] -P vcpkg.cmake

set(CURRENT_PACKAGES_DIR "${PREFIX}")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

function(want file)
  if(NOT EXISTS "${PREFIX}/${file}")
    message(FATAL_ERROR "The port expects ${file}, which is not installed.")
  endif()
endfunction()

function(vcpkg_cmake_configure)
  cmake_parse_arguments(ARG "" "SOURCE_PATH" "OPTIONS" ${ARGN})
  run("${CMAKE_COMMAND}" -S "${ARG_SOURCE_PATH}" -B "${WORK}" -G "${GENERATOR}" -DCMAKE_BUILD_TYPE=Release
    "-DCMAKE_INSTALL_PREFIX=${PREFIX}" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DYG_WARNINGS_AS_ERRORS=${WERROR}" ${ARG_OPTIONS})
endfunction()

function(vcpkg_cmake_install)
  run("${CMAKE_COMMAND}" --build "${WORK}" --target install)
endfunction()

function(vcpkg_cmake_config_fixup)
  cmake_parse_arguments(ARG "" "PACKAGE_NAME;CONFIG_PATH" "" ${ARGN})
  want("${ARG_CONFIG_PATH}/${ARG_PACKAGE_NAME}Config.cmake")
  want("${ARG_CONFIG_PATH}/${ARG_PACKAGE_NAME}ConfigVersion.cmake")
endfunction()

function(vcpkg_fixup_pkgconfig)
  want(lib/pkgconfig/YGConfigManager.pc)
endfunction()

function(vcpkg_install_copyright)
  cmake_parse_arguments(ARG "" "" "FILE_LIST" ${ARGN})
  file(READ "${ARG_FILE_LIST}" licence)
  if(NOT licence MATCHES "Permission is hereby granted")
    message(FATAL_ERROR "${ARG_FILE_LIST} is not the licence.")
  endif()
endfunction()

include("${PORT}/portfile.cmake")
