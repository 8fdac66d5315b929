# LibTomMath for the Windows flavours, from Debian's source package. Its
# file-per-function archive lets the linker take only what is reached.
set(PAVONIX_LIBTOMMATH ${PROJECT_SOURCE_DIR}/build/libtommath CACHE PATH
    "Where LibTomMath's source package is, or is fetched to")
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/fetch_libtommath.sh ${PAVONIX_LIBTOMMATH} COMMAND_ERROR_IS_FATAL ANY)
set(tommath_source ${PAVONIX_LIBTOMMATH}/libtommath-1.2.0)

function(add_trimmed_tommath name)
  file(GLOB files ${tommath_source}/bn_*.c)
  # no files and no random numbers: the device lacks what they stand on
  list(FILTER files EXCLUDE REGEX "rand|fread|fwrite")
  add_library(${name} STATIC ${files})
  target_include_directories(${name} SYSTEM PUBLIC ${tommath_source})
  target_compile_definitions(${name} PUBLIC MP_NO_FILE PRIVATE MP_LOW_MEM)
  # It wipes numbers before it frees them, which a compiler that knows what free does would leave out.
  target_compile_options(${name} PRIVATE -w -fno-builtin-free -include ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/trim_tommath.h)
endfunction()
