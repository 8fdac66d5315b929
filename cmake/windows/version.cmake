# add_version_resource(TARGET FILE_NAME DESCRIPTION [SPECIAL_BUILD]): the properties of a file that Windows shows.
# SPECIAL_BUILD distinguishes it from the ordinary file of the same name.
function(add_version_resource target file_name description)
  get_target_property(type ${target} TYPE)
  set(file_type 2) # a DLL
  if(type STREQUAL "EXECUTABLE")
    set(file_type 1)
  endif()
  cmake_path(GET file_name STEM internal_name)
  set(file_flags 0)
  if(ARGN)
    set(file_flags 0x20)
    set(special_build "VALUE \"SpecialBuild\", \"${ARGN}\"")
    string(APPEND description " (${ARGN})")
  endif()
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/version.rc.in ${resource})
  target_sources(${target} PRIVATE ${resource})
endfunction()
