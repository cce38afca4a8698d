# SPDX-License-Identifier: Apache-2.0
# The Debian package of the command; script/package makes it.
set(TARNIX_COMMIT "" CACHE STRING "The commit that --version names")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarnix-uwb-params)
set(CPACK_PACKAGE_VERSION 1.2~rc1)
set(CPACK_PACKAGE_CONTACT "maintainers <maintainers@users.noreply.c-seed-9e3147c8.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "calibration blocks of ultra-wideband radios")
set(CPACK_PACKAGE_DESCRIPTION "Builds and decodes the block that a UWB/NFC controller gets from a
device's calibration files, finds mistakes in the files, and tells which line
set which byte.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
  GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/package_files.cmake)
include(CPack)
