# PAVONIX.dll: what its three Windows flavours share, and where they differ. The
# results stand at the top of the build folder: the DLL, its .def and map, and
# its import libraries for GNU tools (libPAVONIX.dll.a) and for Microsoft's
# linkers (PAVONIX.lib).
set(definition ${CMAKE_CURRENT_LIST_DIR}/pavonix.def)
set(machine ${PAVONIX_FLAVOUR})
if(PAVONIX_FLAVOUR STREQUAL "ce")
  set(machine thumb) # as device projects expect, though the code is in ARM state
elseif(PAVONIX_FLAVOUR STREQUAL "x86")
  set(definition ${CMAKE_CURRENT_LIST_DIR}/pavonix_x86.def)
  # only C++ exceptions read these tables; x64 has tables that the system reads
  set(no_tables -fno-asynchronous-unwind-tables)
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/version.rc.in ${CMAKE_CURRENT_BINARY_DIR}/version.rc)
configure_file(${definition} ${PROJECT_BINARY_DIR}/PAVONIX.def COPYONLY)
target_sources(pavonix PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/version.rc ${PROJECT_BINARY_DIR}/PAVONIX.def)
set_target_properties(pavonix PROPERTIES PREFIX "" OUTPUT_NAME PAVONIX)

# Sections by function let the linker leave out what is not reached; without
# time stamps the same sources give the same bytes.
target_compile_options(pavonix_objects PRIVATE -ffunction-sections -fdata-sections ${no_tables})
target_compile_options(tommath PRIVATE -ffunction-sections -fdata-sections ${no_tables})
target_link_options(pavonix PRIVATE -Wl,--gc-sections -Wl,--no-insert-timestamp -Wl,--kill-at -Wl,--strip-all
                    -Wl,-Map,${PROJECT_BINARY_DIR}/PAVONIX.map)

if(PAVONIX_FLAVOUR STREQUAL "ce")
  include(${CMAKE_CURRENT_LIST_DIR}/../ce/dll.cmake)
else()
  target_link_libraries(pavonix PRIVATE ws2_32 advapi32)
  target_link_options(pavonix PRIVATE -static)
endif()

# The linker's own import library lacks the x86 decoration, so it is not used.
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/libPAVONIX.dll.a DEPENDS ${definition}
    COMMAND ${CMAKE_DLLTOOL} --deterministic-libraries --kill-at --input-def ${definition}
            --output-lib libPAVONIX.dll.a
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR})
set(write_import_library ${CMAKE_CURRENT_LIST_DIR}/write_import_library.py)
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/PAVONIX.lib DEPENDS ${definition} ${write_import_library}
    COMMAND ${write_import_library} ${machine} ${definition} ${PROJECT_BINARY_DIR}/PAVONIX.lib)
add_custom_target(import_libraries ALL DEPENDS ${PROJECT_BINARY_DIR}/libPAVONIX.dll.a ${PROJECT_BINARY_DIR}/PAVONIX.lib)
