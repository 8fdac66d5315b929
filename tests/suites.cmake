# Read by ctest when it starts: adds a test for each suite of the unit tests.
execute_process(COMMAND ${unit_tests} --gtest_list_tests OUTPUT_VARIABLE list RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  add_test(unit ${unit_tests}) # not built, or it cannot start: fails and reports why
endif()
string(REGEX MATCHALL "[^\n]+" lines "${list}")
foreach(line IN LISTS lines)
  if(line MATCHES "^([^ ]+)\\.( |$)")
    add_test(unit.${CMAKE_MATCH_1} ${unit_tests} --gtest_filter=${CMAKE_MATCH_1}.*)
  endif()
endforeach()
