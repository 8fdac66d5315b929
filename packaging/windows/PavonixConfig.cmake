# For find_package(Pavonix) with CMAKE_PREFIX_PATH or Pavonix_DIR set to the unpacked archive. The target is
# Pavonix::pavonix; copy its DLL beside your program, for instance with
#   add_custom_command(TARGET shop POST_BUILD
#     COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:Pavonix::pavonix> $<TARGET_FILE_DIR:shop>)
if(TARGET Pavonix::pavonix)
  return()
endif()
get_filename_component(pavonix_folder ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
set(pavonix_width x86)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(pavonix_width x64)
endif()
set(pavonix_import libPAVONIX.dll.a)
if(MSVC)
  set(pavonix_import PAVONIX.lib)
endif()
add_library(Pavonix::pavonix SHARED IMPORTED)
set_target_properties(Pavonix::pavonix PROPERTIES
  IMPORTED_LOCATION ${pavonix_folder}/${pavonix_width}/PAVONIX.dll
  IMPORTED_IMPLIB ${pavonix_folder}/${pavonix_width}/${pavonix_import}
  INTERFACE_INCLUDE_DIRECTORIES ${pavonix_folder}/include)
unset(pavonix_folder)
unset(pavonix_width)
unset(pavonix_import)
