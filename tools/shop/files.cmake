# Some files become texts in the program: sets shop_files to the source that has them.
foreach(file database/schema.sql database/demonstration_goods.csv window/page.html window/style.css window/script.js)
  get_filename_component(name ${file} NAME_WE)
  file(READ ${CMAKE_CURRENT_LIST_DIR}/${file} ${name})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/${file})
endforeach()
set(shop_files ${CMAKE_CURRENT_BINARY_DIR}/shop_files.cpp)
configure_file(${CMAKE_CURRENT_LIST_DIR}/files.cpp.in ${shop_files} @ONLY)
