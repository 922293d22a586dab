# What Debian wants otherwise than other systems do: its own copyright file instead of the licence, its changelog,
# compressed manual pages, and why its checker is to let some things be. Run by CPack over the tree that it is about to pack.
set(tree ${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_INSTALL_PREFIX})
set(doc ${tree}/share/doc/strokemind)

file(REMOVE ${doc}/LICENSE)
file(COPY ${CPACK_STROKEMIND_DEBIAN}/copyright ${CPACK_STROKEMIND_DEBIAN}/changelog.Debian DESTINATION ${doc}
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
if(EXISTS ${doc}/CHANGELOG.md)
  file(RENAME ${doc}/CHANGELOG.md ${doc}/changelog)
endif()
# Beside this script.
file(COPY ${CMAKE_CURRENT_LIST_DIR}/lintian-overrides/strokemind DESTINATION ${tree}/share/lintian/overrides
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

file(GLOB pages ${tree}/share/man/man*/* ${tree}/share/man/*/man*/* ${doc}/changelog*)
# -n: neither name nor time, which would differ from build to build.
execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
