# Install rules of the programs, their manual pages and completion, and the tracing library.
include(GNUInstallDirs)
install(TARGETS pavonix-cli pavonix-shop RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
# in a folder of its own: it is loaded at run time, not linked
install(TARGETS pavonix_trace LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/pavonix COMPONENT tools)
file(GLOB man_pages ${PROJECT_SOURCE_DIR}/docs/man/*.1)
install(FILES ${man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
# the completion is looked up by the name of the command
foreach(program pavonix pavonix-shop)
  install(FILES ${PROJECT_SOURCE_DIR}/tools/completion/pavonix.bash RENAME ${program}
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
endforeach()
