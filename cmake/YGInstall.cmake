# SPDX-License-Identifier: MIT
# What `cmake --install` lays down: the shared library, its public headers, the tool, and what
# find_package and pkg-config need. Nothing in it knows the prefix, so the tree may be moved.

include(CMakePackageConfigHelpers)

set(YG_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/YGConfigManager")

install(TARGETS YGConfigManager EXPORT YGConfigManagerTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

if(TARGET ygconfig)
  file(RELATIVE_PATH libdir_from_bindir
    "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_target_properties(ygconfig PROPERTIES INSTALL_RPATH "$ORIGIN/${libdir_from_bindir}")
  install(TARGETS ygconfig RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  install(TARGETS ygconfig_server LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/ygconfig")
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/man/" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
  set(completions "${PROJECT_SOURCE_DIR}/completions")
  install(FILES "${completions}/ygconfig.bash" RENAME ygconfig
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
  install(FILES "${completions}/_ygconfig"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")
  install(FILES "${completions}/ygconfig.fish"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
endif()

install(EXPORT YGConfigManagerTargets
  NAMESPACE YGConfigManager::
  DESTINATION "${YG_CMAKE_DIR}")
configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/YGConfigManagerConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/YGConfigManagerConfig.cmake"
  INSTALL_DESTINATION "${YG_CMAKE_DIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/YGConfigManagerConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/YGConfigManagerConfig.cmake"
  "${PROJECT_BINARY_DIR}/YGConfigManagerConfigVersion.cmake"
  DESTINATION "${YG_CMAKE_DIR}")

# pkg-config finds the prefix from where the .pc file lies.
file(RELATIVE_PATH YG_PREFIX_FROM_PC
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file("${CMAKE_CURRENT_LIST_DIR}/YGConfigManager.pc.in"
  "${PROJECT_BINARY_DIR}/YGConfigManager.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/YGConfigManager.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# For editors and other validators; see docs/formats.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/schemas"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/YGConfigManager")
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
