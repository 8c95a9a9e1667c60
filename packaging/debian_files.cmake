# Before the Debian package is closed: what Debian wants in every package and no other system does. It gets its changelog
# and its copyright, and its man pages and changelogs are compressed.
set(share ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
set(documents ${share}/doc/siphons)

string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${documents}/changelog.Debian
"siphons (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * CHANGELOG.md tells what changed.

 -- ${CPACK_PACKAGE_CONTACT}  ${now}
")
configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright ${documents}/copyright COPYONLY)
file(RENAME ${documents}/CHANGELOG.md ${documents}/changelog)

file(GLOB compressed ${share}/man/man*/* ${documents}/changelog ${documents}/changelog.Debian)
execute_process(COMMAND gzip -9n ${compressed} COMMAND_ERROR_IS_FATAL ANY)
