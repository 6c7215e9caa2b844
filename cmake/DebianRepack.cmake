# SPDX-License-Identifier: MIT
# Run by CPack when the packages are made, to leave out of them what CPack always puts in: scripts that call
# ldconfig, since the trigger does that. dpkg-deb packs them again, with one time for all files.

if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  string(TIMESTAMP seconds "%s" UTC)
  set(ENV{SOURCE_DATE_EPOCH} "${seconds}")
endif()
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(folder "${package}.files")
  file(REMOVE_RECURSE "${folder}")
  execute_process(COMMAND dpkg-deb -R "${package}" "${folder}" COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE "${folder}/DEBIAN/postinst" "${folder}/DEBIAN/postrm")
  execute_process(COMMAND dpkg-deb -Zxz --root-owner-group -b "${folder}" "${package}"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE "${folder}")
endforeach()
