# SPDX-License-Identifier: MIT
# An overlay port of the sources that it lies in:
#
#   vcpkg install ygconfigmanager --overlay-ports=packaging/vcpkg

get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)

vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS
    -DYG_BUILD_TOOL=OFF
    -DYG_BUILD_TESTS=OFF
    -DYG_BUILD_FUZZ=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME YGConfigManager CONFIG_PATH lib/cmake/YGConfigManager)
vcpkg_fixup_pkgconfig()

file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
