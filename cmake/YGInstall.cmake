# SPDX-License-Identifier: MIT
# What `cmake --install` lays down: the library, its public headers, the tool, and what find_package
# and pkg-config need, in components that become packages. Nothing in it knows the prefix, so the tree
# may be moved.

include(CMakePackageConfigHelpers)

set(YG_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/YGConfigManager")

install(TARGETS YGConfigManager EXPORT YGConfigManagerTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)

if(TARGET ygconfig)
  # In the system's own folders the loader finds the library by itself.
  if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    file(RELATIVE_PATH libdir_from_bindir
      "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    set_target_properties(ygconfig PROPERTIES INSTALL_RPATH "$ORIGIN/${libdir_from_bindir}")
  endif()
  install(TARGETS ygconfig RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tool)
  install(TARGETS ygconfig_server LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/ygconfig" COMPONENT tool)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/man/" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
    COMPONENT tool)
  set(completions "${PROJECT_SOURCE_DIR}/completions")
  install(FILES "${completions}/ygconfig.bash" RENAME ygconfig
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tool)
  install(FILES "${completions}/_ygconfig"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" COMPONENT tool)
  install(FILES "${completions}/ygconfig.fish"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT tool)
endif()

install(EXPORT YGConfigManagerTargets
  NAMESPACE YGConfigManager::
  DESTINATION "${YG_CMAKE_DIR}" COMPONENT development)
configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/YGConfigManagerConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/YGConfigManagerConfig.cmake"
  INSTALL_DESTINATION "${YG_CMAKE_DIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/YGConfigManagerConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/YGConfigManagerConfig.cmake"
  "${PROJECT_BINARY_DIR}/YGConfigManagerConfigVersion.cmake"
  DESTINATION "${YG_CMAKE_DIR}" COMPONENT development)

# pkg-config finds the prefix from where the .pc file lies.
file(RELATIVE_PATH YG_PREFIX_FROM_PC
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
set(YG_PC_STATIC "")
if(YG_BUILD_STATIC)
  # The libraries below may be shared ones, so they are named without --static too. The standard library is
  # for those who link with a C compiler.
  set(YG_PC_STATIC "Requires: libxml-2.0 pugixml fontconfig harfbuzz libpng libjpeg icu-uc zlib
Libs.private: -lstdc++ -lm -pthread
")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/YGConfigManager.pc.in"
  "${PROJECT_BINARY_DIR}/YGConfigManager.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/YGConfigManager.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

# For editors and other validators; see docs/formats.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/schemas"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/YGConfigManager" COMPONENT documentation)
install(FILES "${PROJECT_SOURCE_DIR}/README.md" DESTINATION "${CMAKE_INSTALL_DOCDIR}"
  COMPONENT documentation)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION "${CMAKE_INSTALL_DOCDIR}"
  COMPONENT documentation PATTERN man EXCLUDE)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${CMAKE_INSTALL_DOCDIR}"
  COMPONENT documentation)
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}"
  COMPONENT library)
