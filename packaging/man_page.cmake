# Generates the man page of a program from its --help output.
find_program(MORVITH_HELP2MAN help2man REQUIRED)

function(add_man_page program name component)
  set(folder ${MORVITH_BUILD_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1)
  file(MAKE_DIRECTORY ${folder})
  set(page ${folder}/${program}.1)
  string(JOIN " " run ${CMAKE_CROSSCOMPILING_EMULATOR} ./${program})
  add_custom_command(OUTPUT ${page}.gz
    COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${MORVITH_SOURCE_DATE}
      ${MORVITH_HELP2MAN} --no-info --help-option --help-all --name ${name} --output ${page} ${run}
    COMMAND gzip --no-name --best --force ${page}
    DEPENDS ${program} WORKING_DIRECTORY $<TARGET_FILE_DIR:${program}> VERBATIM)
  add_custom_target(${program}_man_page ALL DEPENDS ${page}.gz)
  install(FILES ${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
endfunction()
