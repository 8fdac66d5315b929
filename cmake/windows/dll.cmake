# PAVONIX.dll: what its three Windows flavours share, and where they differ. The
# results stand at the top of the build folder: the DLL, its map and .def, and
# the import libraries.
configure_file(${CMAKE_CURRENT_LIST_DIR}/version.rc.in ${CMAKE_CURRENT_BINARY_DIR}/version.rc)
configure_file(${CMAKE_CURRENT_LIST_DIR}/pavonix.def ${PROJECT_BINARY_DIR}/PAVONIX.def COPYONLY)
target_sources(pavonix PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/version.rc ${PROJECT_BINARY_DIR}/PAVONIX.def)
set_target_properties(pavonix PROPERTIES
    PREFIX "" OUTPUT_NAME PAVONIX
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}
    ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})

# Sections by function let the linker leave out what is not reached; without
# time stamps the same sources give the same bytes.
target_compile_options(pavonix_objects PRIVATE -ffunction-sections -fdata-sections)
target_compile_options(tommath PRIVATE -ffunction-sections -fdata-sections)
target_link_options(pavonix PRIVATE -Wl,--gc-sections -Wl,--no-insert-timestamp
                    -Wl,-Map,${PROJECT_BINARY_DIR}/PAVONIX.map)

if(PAVONIX_CE)
  include(${CMAKE_CURRENT_LIST_DIR}/../ce/dll.cmake)
else()
  target_link_libraries(pavonix PRIVATE ws2_32 advapi32)
  target_link_options(pavonix PRIVATE -static -s)
endif()
