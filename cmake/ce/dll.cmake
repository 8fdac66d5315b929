# For the device's DLL only: its entry, its subsystem, and import libraries of the
# system's DLLs.
string(REGEX REPLACE "dlltool$" "" binutils ${CMAKE_DLLTOOL})
set(import_library ${CMAKE_CURRENT_LIST_DIR}/import_library.py)
foreach(system coredll ws2)
  set(exported ${CMAKE_CURRENT_LIST_DIR}/${system}.def)
  set(library ${CMAKE_CURRENT_BINARY_DIR}/lib${system}.a)
  add_custom_command(OUTPUT ${library} DEPENDS ${exported} ${import_library}
                     COMMAND ${import_library} ${binutils} ${exported} ${library})
  add_custom_target(${system} DEPENDS ${library})
endforeach()

function(link_for_the_device target)
  foreach(system coredll ws2)
    add_dependencies(${target} ${system})
    target_link_libraries(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/lib${system}.a)
  endforeach()
  target_link_options(${target} PRIVATE -Wl,-e,_DllMainCRTStartup -Wl,--subsystem,wince:5.0
                      -Wl,--image-base,0x10000000 -Wl,--disable-dynamicbase -Wl,--disable-nxcompat)
endfunction()

# The build is for size. Only the three inner loops of the arithmetic are for speed:
# nearly all instructions of a purchase's token run there.
foreach(loop mul_digs sqr montgomery_reduce)
  set_source_files_properties(${tommath_source}/bn_s_mp_${loop}_fast.c PROPERTIES COMPILE_OPTIONS "-O3;-fno-tree-pre;-fno-gcse;-fno-tree-ter")
endforeach()
