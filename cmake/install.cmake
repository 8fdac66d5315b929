# Install rules, by the GNU conventions, of the library with its header, manual
# pages, pkg-config file and CMake package.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Pavonix)
install(TARGETS pavonix EXPORT PavonixTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/include/pavonix/pavonix.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pavonix COMPONENT development)

# Relative to the file, so that --prefix and moving the tree work. The system's own tree
# is never moved, and pkg-config omits only its absolute folders from the flags.
set(pkgconfig_prefix /usr)
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  file(RELATIVE_PATH up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  set(pkgconfig_prefix "\${pcfiledir}/${up}")
endif()
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
file(GLOB man_pages ${PROJECT_SOURCE_DIR}/docs/man/*.3)
install(FILES ${man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
