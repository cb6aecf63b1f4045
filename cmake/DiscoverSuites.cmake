# discover_suites(TARGET [TIMEOUT SECONDS] [ENVIRONMENT NAME=VALUE...] [LONGEST SUITE...])
#
# Adds one CTest test for each suite of a GoogleTest executable. A parameterised suite is one test with all of its
# instances. The suites are listed when CTest runs, so that building doesn't run the executable. The output of a suite
# names the cases that failed. The longest suites start first, so that none of them runs alone at the end.
set(discover_suites_script ${CMAKE_CURRENT_LIST_FILE})

function(discover_suites target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "ENVIRONMENT;LONGEST")
  set(file ${CMAKE_CURRENT_BINARY_DIR}/${target}_suites.cmake)
  file(GENERATE OUTPUT ${file} CONTENT
    "set(suites_executable [==[$<TARGET_FILE:${target}>]==])
set(suites_timeout [==[${arg_TIMEOUT}]==])
set(suites_environment [==[${arg_ENVIRONMENT}]==])
set(suites_longest [==[${arg_LONGEST}]==])
include([==[${discover_suites_script}]==])
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${file})
endfunction()

if(NOT suites_executable)
  return()
endif()

# The rest is executed by CTest.
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
  message(FATAL_ERROR "${suites_executable} can't list its tests: ${suites_status}")
endif()
string(REGEX MATCHALL "(^|\n)[^ \n][^\n]*" suites_lines "${suites_list}")
set(suites_names "")
foreach(line IN LISTS suites_lines)
  # "Instances/Suite." for a parameterised suite, "Suite/0." for a typed one, possibly followed by a comment
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
  list(FIND suites_longest ${name} place)  # CTest sets no policies, IN_LIST is one
  if(NOT place EQUAL -1)
    set_tests_properties(${name} PROPERTIES COST 1000)
  endif()
endforeach()
