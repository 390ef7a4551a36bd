# examples/host is built with nothing but the installed CMake package, and run.
# Needs: PREFIX, EXAMPLES, WORK, GENERATOR, COMPILER, FLAGS.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
# A copy, so that it cannot reach into the source tree.
file(COPY "${EXAMPLES}/host" DESTINATION "${WORK}")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${WORK}/host" -B "${WORK}/build" -G "${GENERATOR}" "-DCMAKE_PREFIX_PATH=${PREFIX}"
          "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS} -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror"
  COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
load_cache("${WORK}/build" READ_WITH_PREFIX "" XmlPlugin_DIR)
if(NOT XmlPlugin_DIR MATCHES "^${PREFIX}/")
  message(SEND_ERROR "another installation was found: ${XmlPlugin_DIR}")
endif()

include("${CMAKE_CURRENT_LIST_DIR}/CheckHost.cmake")
check_host("${WORK}/build/host")

# A version that the installation does not have is refused.
file(READ "${WORK}/host/CMakeLists.txt" text)
string(REPLACE "find_package(XmlPlugin 1.1 " "find_package(XmlPlugin 2.0 " text "${text}")
file(WRITE "${WORK}/later/CMakeLists.txt" "${text}")
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${WORK}/later" -B "${WORK}/later/build" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DCMAKE_CXX_COMPILER=${COMPILER}"
  RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE errors)
if(status EQUAL 0 OR NOT errors MATCHES "requested version \"2.0\"")
  message(SEND_ERROR "find_package(XmlPlugin 2.0) is not refused as it should be:\n${errors}")
endif()
