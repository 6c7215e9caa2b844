# SPDX-License-Identifier: MIT
# Debian packages by CPack, one for each component of YGInstall.cmake; docs/packaging.md. What the
# files of a Debian package need besides is added by DebianFiles.cmake, when they lie where they are
# packed from.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME YGConfigManager)
# Each package has a summary of its own, the first line of its description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_VENDOR "The YGConfigManager authors")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_BINARY_DIR}/DebianFiles.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/DebianRepack.cmake")
set(CPACK_COMPONENTS_ALL library development documentation)
if(TARGET ygconfig)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)

set(YG_MAINTAINER "YGConfigManager authors <maintainers@ygconfigmanager.example>"
  CACHE STRING "Who looks after the Debian packages")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${YG_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# A program needs the version that it was linked with or a later one of the same SONAME.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/YGConfigManager")

# A new SONAME is a new package, so that both can be installed.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME "libygconfigmanager${YG_ABI_VERSION}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "configuration library of a market-data terminal
Reads the files that configure a market-data terminal: page layouts, events,
colours, fonts and images of two themes, server lists, settings and addresses.
It answers look-ups by name and reports what is wrong with the files.")
# libcurl is opened at the first request, where no linker sees it.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS libcurl4)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/packaging/debian/triggers")

set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libygconfigmanager-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libygconfigmanager-doc)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "configuration library of a market-data terminal, to compile with
The headers of YGConfigManager and what CMake and pkg-config need to find it.")

set(CPACK_COMPONENT_TOOL_DEPENDS library)
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ygconfig)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_SUGGESTS libygconfigmanager-doc)
set(CPACK_DEBIAN_TOOL_DESCRIPTION "shows and checks the configuration of a market-data terminal
Prints what the files of a terminal come to, finds their mistakes, explains
answers, compares two states of them and draws them as a page for the browser.")

set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME libygconfigmanager-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION "configuration library of a market-data terminal, documents
The file formats with their schemas, the rules by which files are checked, the
architecture of the library, and examples: a whole configuration and a small
program.")

configure_file("${CMAKE_CURRENT_LIST_DIR}/DebianFiles.cmake.in"
  "${PROJECT_BINARY_DIR}/DebianFiles.cmake" @ONLY)
include(CPack)
