# kvo_add_manual(PROGRAM COMPONENT [LOCALE]): makes the program's manual page from its --help output
# and installs it.
function(kvo_add_manual program component)
  set(page ${CMAKE_CURRENT_BINARY_DIR}/${program}${ARGN}.1.gz)
  add_custom_command(OUTPUT ${page}
    COMMAND ${PROJECT_SOURCE_DIR}/tools/manual.sh $<TARGET_FILE:${program}> ${page} ${ARGN}
    DEPENDS ${program} ${PROJECT_SOURCE_DIR}/tools/manual.sh VERBATIM)
  add_custom_target(${program}_manual${ARGN} ALL DEPENDS ${page})
  string(SUBSTRING "${ARGN}" 0 2 language)
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/${language}/man1 RENAME ${program}.1.gz
          COMPONENT ${component})
endfunction()
