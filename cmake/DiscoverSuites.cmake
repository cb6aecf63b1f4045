# discover_suites(TARGET [TIMEOUT SECONDS] [ENVIRONMENT NAME=VALUE...])
#
# Gives CTest one test for each suite of a GoogleTest executable, in a process of its own. A suite with parameters is
# one test with all of its instances. The suites are listed when CTest runs, so that no build has to run the
# executable. A case that fails shows by name in the output of its suite.
set(discover_suites_script ${CMAKE_CURRENT_LIST_FILE})

function(discover_suites target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "ENVIRONMENT")
  set(file ${CMAKE_CURRENT_BINARY_DIR}/${target}_suites.cmake)
  file(GENERATE OUTPUT ${file} CONTENT
    "set(suites_executable [==[$<TARGET_FILE:${target}>]==])
set(suites_timeout [==[${arg_TIMEOUT}]==])
set(suites_environment [==[${arg_ENVIRONMENT}]==])
include([==[${discover_suites_script}]==])
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${file})
endfunction()

if(NOT suites_executable)
  return()
endif()

# From here on CTest runs the file.
if(NOT EXISTS ${suites_executable})
  add_test(${suites_executable}_NOT_BUILT ${suites_executable})
  return()
endif()
foreach(variable IN LISTS suites_environment)
  string(REGEX MATCH "^([^=]*)=(.*)$" variable "${variable}")
  set(ENV{${CMAKE_MATCH_1}} "${CMAKE_MATCH_2}")
endforeach()
execute_process(COMMAND ${suites_executable} --gtest_list_tests OUTPUT_VARIABLE suites_list RESULT_VARIABLE suites_status)
if(NOT suites_status EQUAL 0)
  message(FATAL_ERROR "${suites_executable} doesn't list its tests: ${suites_status}")
endif()
string(REGEX MATCHALL "(^|\n)[^ \n][^\n]*" suites_lines "${suites_list}")
set(suites_names "")
foreach(line IN LISTS suites_lines)
  # "Instances/Suite." of a suite with parameters, "Suite/0." of one with types, and a comment behind some
  string(REGEX REPLACE "^\n?([^ ]*)\\..*$" "\\1" name "${line}")
  string(REGEX REPLACE "/[0-9]+$" "" name "${name}")
  string(REGEX REPLACE "^.*/" "" name "${name}")
  list(APPEND suites_names ${name})
endforeach()
list(REMOVE_DUPLICATES suites_names)
foreach(name IN LISTS suites_names)
  add_test(${name} ${suites_executable} --gtest_brief=1
           "--gtest_filter=${name}.*:*/${name}.*:${name}/*:*/${name}/*")
  set_tests_properties(${name} PROPERTIES TIMEOUT ${suites_timeout} ENVIRONMENT "${suites_environment}")
endforeach()
