# GoogleTest as GTest::gmock_main, and how ctest learns of a program's cases.
#
# A cross build has no GoogleTest of its own for the target; it builds the one whose sources the package googletest
# puts on the build machine.
include(GoogleTest)

set(XMLPLUGIN_GOOGLETEST_SOURCE "/usr/src/googletest" CACHE PATH "Sources of GoogleTest, for a cross build")

# Under Wine each process takes a fifth of a second to start.
if(CMAKE_CROSSCOMPILING)
  set(_apart OFF)
else()
  set(_apart ON)
endif()
option(XMLPLUGIN_TEST_CASES_APART "Run each test case in a process of its own" ${_apart})

if(CMAKE_CROSSCOMPILING)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory("${XMLPLUGIN_GOOGLETEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
else()
  find_package(GTest REQUIRED)
endif()

# The cases that cannot run on the target, as a filter of GoogleTest's ("-A.b:C.d"); empty where all can.
function(read_exclusions o_Filter)
  set(filter "")
  if(WIN32)
    set(file "${PROJECT_SOURCE_DIR}/tests/windows-exclusions.txt")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
    file(STRINGS "${file}" lines REGEX "^[^# ]")
    list(TRANSFORM lines REPLACE " .*" "")
    list(JOIN lines ":" names)
    if(names)
      set(filter "-${names}")
    endif()
  endif()
  set(${o_Filter} "${filter}" PARENT_SCOPE)
endfunction()

read_exclusions(XMLPLUGIN_TEST_FILTER)

# discover_tests(PROGRAM): makes the cases of a GoogleTest program known to ctest, one by one or all as one.
function(discover_tests i_Program)
  if(XMLPLUGIN_TEST_CASES_APART)
    set(filter "")
    if(XMLPLUGIN_TEST_FILTER)
      set(filter TEST_FILTER "${XMLPLUGIN_TEST_FILTER}")
    endif()
    gtest_discover_tests(${i_Program} ${filter} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 600)
  else()
    add_test(NAME ${i_Program} COMMAND ${i_Program} "--gtest_filter=*${XMLPLUGIN_TEST_FILTER}")
    set_tests_properties(${i_Program} PROPERTIES TIMEOUT 1200)
  endif()
endfunction()
