# LibTomMath for the Windows flavours, from Debian's source package. Its
# file-per-function archive lets the linker take only what is reached.
set(PAVONIX_LIBTOMMATH ${PROJECT_SOURCE_DIR}/build/libtommath CACHE PATH
    "Where LibTomMath's source package is, or is fetched to")
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/fetch_libtommath.sh ${PAVONIX_LIBTOMMATH} COMMAND_ERROR_IS_FATAL ANY)
set(tommath_source ${PAVONIX_LIBTOMMATH}/libtommath-1.2.0)

file(GLOB tommath_files ${tommath_source}/bn_*.c)
# no files and no random numbers: the device lacks what they stand on
list(FILTER tommath_files EXCLUDE REGEX "rand|fread|fwrite")

add_library(tommath STATIC ${tommath_files})
target_include_directories(tommath SYSTEM PUBLIC ${tommath_source})
target_compile_definitions(tommath PUBLIC MP_NO_FILE PRIVATE MP_LOW_MEM)
# It wipes numbers before it frees them, which a compiler that knows what free does would leave out.
target_compile_options(tommath PRIVATE -w -fno-builtin-free -include ${CMAKE_CURRENT_LIST_DIR}/trim_tommath.h)
