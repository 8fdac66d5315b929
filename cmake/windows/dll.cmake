# PAVONIX.dll in its three Windows flavours. The results are at the top of the build
# folder: the DLL, its .def and map, and
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
include(${CMAKE_CURRENT_LIST_DIR}/version.cmake)
configure_file(${definition} ${PROJECT_BINARY_DIR}/PAVONIX.def COPYONLY)

# Sections by function let the linker drop unreachable code; without time stamps the
# same sources give the same bytes.
set(parts pavonix_rooms pavonix_calls tommath)
if(PAVONIX_TOOLS)
  list(APPEND parts pavonix_hooked_calls pavonix_tracing)
endif()
foreach(target IN LISTS parts)
  target_compile_options(${target} PRIVATE -ffunction-sections -fdata-sections ${no_tables})
endforeach()
if(PAVONIX_FLAVOUR STREQUAL "ce")
  include(${CMAKE_CURRENT_LIST_DIR}/../ce/dll.cmake)
endif()

function(make_dll target folder)
  target_sources(${target} PRIVATE ${PROJECT_BINARY_DIR}/PAVONIX.def)
  add_version_resource(${target} PAVONIX.dll "Pavonix shop client" ${ARGN})
  set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME PAVONIX VERSION ${PROJECT_VERSION}
                        RUNTIME_OUTPUT_DIRECTORY ${folder}
                        ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/${target}.dir)
  target_link_options(${target} PRIVATE -Wl,--gc-sections -Wl,--no-insert-timestamp -Wl,--kill-at -Wl,--strip-all
                      -Wl,-Map,${folder}/PAVONIX.map)
  if(PAVONIX_FLAVOUR STREQUAL "ce")
    link_for_the_device(${target})
  else()
    target_link_libraries(${target} PRIVATE ws2_32)
    target_link_options(${target} PRIVATE -static)
  endif()
endfunction()
make_dll(pavonix ${PROJECT_BINARY_DIR})
if(PAVONIX_TOOLS)
  make_dll(pavonix_trace ${PROJECT_BINARY_DIR}/trace "tracing build")
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/trace)
endif()

# for find_package; one file serves both widths
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/PavonixConfigVersion.cmake COMPATIBILITY SameMajorVersion
                                 ARCH_INDEPENDENT)

# The linker's own import library lacks the x86 decoration, so it is not used.
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/libPAVONIX.dll.a DEPENDS ${definition}
    COMMAND ${CMAKE_DLLTOOL} --deterministic-libraries --kill-at --input-def ${definition}
            --output-lib libPAVONIX.dll.a
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR})
set(write_import_library ${CMAKE_CURRENT_LIST_DIR}/write_import_library.py)
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/PAVONIX.lib DEPENDS ${definition} ${write_import_library}
    COMMAND ${write_import_library} ${machine} ${definition} ${PROJECT_BINARY_DIR}/PAVONIX.lib)
add_custom_target(import_libraries ALL DEPENDS ${PROJECT_BINARY_DIR}/libPAVONIX.dll.a ${PROJECT_BINARY_DIR}/PAVONIX.lib)
