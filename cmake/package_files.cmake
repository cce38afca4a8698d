# SPDX-License-Identifier: Apache-2.0
# What Debian asks of a package besides what `cmake --install` brings. Run by CPack.
set(share ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
set(doc ${share}/doc/tarnix-uwb-params)

# The package is for the command's users; who builds against the library has its sources.
file(REMOVE_RECURSE ${CPACK_TEMPORARY_DIRECTORY}/usr/include)

file(WRITE ${doc}/copyright
"Upstream-Name: libtarnix_uwb_params_nfcc

Copyright 2026 the maintainers of libtarnix_uwb_params_nfcc

License: Apache-2.0, see /usr/share/common-licenses/Apache-2.0
")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${doc}/changelog
"tarnix-uwb-params (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * CHANGELOG.md of the sources says what changed.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
file(WRITE ${share}/lintian/overrides/tarnix-uwb-params
"# Debian keeps libbase and liblog in this folder.
tarnix-uwb-params: custom-library-search-path
# A package of the project, made for its users, that closes no bug of Debian.
tarnix-uwb-params: initial-upload-closes-no-bugs
")
execute_process(COMMAND gzip -9n ${doc}/changelog ${share}/man/man1/tarnix-uwb-params.1
  COMMAND_ERROR_IS_FATAL ANY)
