# What `cmake --install` puts where, by the GNU conventions: the library with its
# header, pkg-config file and CMake package, and the programs with their pages.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Pavonix)
install(TARGETS pavonix EXPORT PavonixTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
# not for linking: the client loads it by itself
install(TARGETS pavonix_trace LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/pavonix COMPONENT tools)
install(FILES ${PROJECT_SOURCE_DIR}/include/pavonix/pavonix.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pavonix COMPONENT development)

# relative to the file, so that --prefix and a moved tree stay right
file(RELATIVE_PATH up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/package/pavonix.pc.in ${CMAKE_CURRENT_BINARY_DIR}/pavonix.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/pavonix.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/PavonixConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(EXPORT PavonixTargets NAMESPACE Pavonix:: FILE PavonixConfig.cmake
        DESTINATION ${package_directory} COMPONENT development)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/PavonixConfigVersion.cmake
        DESTINATION ${package_directory} COMPONENT development)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/pavonix COMPONENT development PATTERN __pycache__ EXCLUDE)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/pavonix COMPONENT library)
install(TARGETS pavonix-cli pavonix-shop RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
file(GLOB man_pages ${PROJECT_SOURCE_DIR}/docs/man/*.1)
install(FILES ${man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
install(FILES ${PROJECT_SOURCE_DIR}/docs/man/pavonix.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
# the completion is looked up by the name of the command
foreach(program pavonix pavonix-shop)
  install(FILES ${PROJECT_SOURCE_DIR}/tools/completion/pavonix.bash RENAME ${program}
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
endforeach()
