# LibTomMath for the Windows flavours. It has a file for each function, so that the
# linker takes only those that are used.
set(PAVONIX_LIBTOMMATH_SOURCE "" CACHE PATH "LibTomMath's unpacked source; if empty, Debian's source package is fetched")
set(tommath_source ${PAVONIX_LIBTOMMATH_SOURCE})
if(NOT tommath_source)
  set(fetched ${PROJECT_SOURCE_DIR}/build/libtommath)
  execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/fetch_sources.sh ${fetched} libtommath COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB tommath_source ${fetched}/libtommath-*/tommath.h)
  cmake_path(REMOVE_FILENAME tommath_source)
endif()
if(NOT EXISTS ${tommath_source}/tommath.h)
  message(FATAL_ERROR "${tommath_source} is not LibTomMath's source: tommath.h is missing")
endif()

function(add_trimmed_tommath name)
  file(GLOB files ${tommath_source}/bn_*.c)
  # The device lacks functions for files and random numbers. The others are excluded because no key needs them,
  # and in 1.3 the primes do not compile where int32_t is not int.
  list(FILTER files EXCLUDE REGEX "rand|fread|fwrite|prime|kronecker|toom|karatsuba|balance|deprecated|radix|pack|signed")
  list(FILTER files EXCLUDE REGEX "_(root|log|expt|from|to|get)_|_(init|set)_([uil]|double)|_(gcd|lcm|exteuclid|sqrt|or|and|xor)\\.c$")
  add_library(${name} STATIC ${files})
  target_include_directories(${name} SYSTEM PUBLIC ${tommath_source})
  target_compile_definitions(${name} PUBLIC MP_NO_FILE PRIVATE MP_LOW_MEM)
  # It wipes numbers before it frees them; a compiler that knows free would remove those writes.
  target_compile_options(${name} PRIVATE -w -fno-builtin-free -include ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/trim_tommath.h)
endfunction()
