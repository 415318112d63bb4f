# Repacks the packages with fixed file times and without the scripts that call ldconfig. The
# stand-ins use a dpkg trigger instead; a plug-in needs no ldconfig. If the stand-ins are installed
# on the build machine, dpkg-shlibdeps adds a dependency on them without a version. This script
# removes it, because the packages already depend on the same version.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree ${CPACK_TEMPORARY_DIRECTORY}/unpacked)
  file(REMOVE_RECURSE ${tree})
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
  execute_process(COMMAND sed --in-place -E "s/, morvith-platform-stand-ins(,|$)/\\1/"
    ${tree}/DEBIAN/control COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND chmod 755 ${tree}/DEBIAN COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND find ${tree} -exec touch --no-dereference --date=@${CPACK_SOURCE_DATE} {} +
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${CPACK_SOURCE_DATE}
      dpkg-deb --root-owner-group --build ${tree} ${package}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
