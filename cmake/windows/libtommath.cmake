# LibTomMath for the Windows flavours, from the source that fetch_libtommath.sh
# unpacked. Its file-per-function archive lets the linker take only what is reached.
set(tommath_source ${PROJECT_SOURCE_DIR}/build/libtommath/libtommath-1.2.0)
if(NOT EXISTS ${tommath_source}/tommath.h)
  message(FATAL_ERROR "run cmake/windows/fetch_libtommath.sh build/libtommath first")
endif()

file(GLOB tommath_files ${tommath_source}/bn_*.c)
# no files and no random numbers: the device lacks what they stand on
list(FILTER tommath_files EXCLUDE REGEX "rand|fread|fwrite")

add_library(tommath STATIC ${tommath_files})
target_include_directories(tommath SYSTEM PUBLIC ${tommath_source})
target_compile_definitions(tommath PUBLIC MP_NO_FILE)
target_compile_options(tommath PRIVATE -w)
