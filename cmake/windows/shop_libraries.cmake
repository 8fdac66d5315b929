# The shop's libraries for Windows, from Debian's source packages: there are no packages for mingw-w64.
set(PAVONIX_SHOP_SOURCES ${PROJECT_SOURCE_DIR}/build/shop_sources)
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/fetch_sources.sh ${PAVONIX_SHOP_SOURCES}
                        sqlite3 soci libxml2 libcsv COMMAND_ERROR_IS_FATAL ANY)
foreach(package sqlite3 soci libxml2 libcsv)
  file(GLOB ${package}_source ${PAVONIX_SHOP_SOURCES}/${package}-*)
endforeach()
# SQLite's amalgamation, one large file.
if(NOT EXISTS ${sqlite3_source}/made/sqlite3.c)
  file(MAKE_DIRECTORY ${sqlite3_source}/made)
  execute_process(COMMAND sh -c "CC=cc ../configure --disable-tcl --disable-readline && make sqlite3.c sqlite3.h"
                  WORKING_DIRECTORY ${sqlite3_source}/made OUTPUT_QUIET ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
endif()

set(generated ${CMAKE_CURRENT_BINARY_DIR}/shop_libraries)
file(WRITE ${generated}/soci/soci-config.h "#define SOCI_HAVE_CXX11\n")
file(WRITE ${generated}/soci_backends_config.h "#define DEFAULT_BACKENDS_PATH \"\"\n")
# libxml2: the parser only.
set(BUILD_SHARED_LIBS OFF)
foreach(feature C14N CATALOG DEBUG DOCB FTP HTML HTTP ICONV ISO8859X LEGACY LZMA MODULES PATTERN PROGRAMS PYTHON READER
                REGEXPS SCHEMAS SCHEMATRON TESTS VALID WRITER XINCLUDE XPATH XPTR ZLIB)
  set(LIBXML2_WITH_${feature} OFF CACHE BOOL "" FORCE)
endforeach()
add_subdirectory(${libxml2_source} ${generated}/libxml2 EXCLUDE_FROM_ALL)
target_compile_options(LibXml2 PRIVATE -w)

file(GLOB soci_files ${soci_source}/src/core/*.cpp ${soci_source}/src/backends/sqlite3/*.cpp)
add_library(shop_libraries STATIC ${soci_files} ${libcsv_source}/libcsv.c ${sqlite3_source}/made/sqlite3.c)
target_include_directories(shop_libraries SYSTEM PUBLIC ${generated} ${generated}/soci ${soci_source}/include
                           ${soci_source}/include/private ${libcsv_source} ${sqlite3_source}/made)
target_compile_definitions(shop_libraries PRIVATE SQLITE_DQS=0 SQLITE_OMIT_LOAD_EXTENSION SOCI_LIB_PREFIX=""
                           SOCI_LIB_SUFFIX="" SOCI_ABI_VERSION="")
target_compile_options(shop_libraries PRIVATE -w)
find_library(zlib_archive libz.a PATHS /usr/x86_64-w64-mingw32/lib NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
target_link_libraries(shop_libraries PUBLIC LibXml2 ${zlib_archive})
