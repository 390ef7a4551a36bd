# Fails unless the module exports its entry points and nothing else.
# -DNM=<program> -DMODULE=<file> -DNAMES=<functions, in alphabetical order>
execute_process(COMMAND "${NM}" -D --defined-only --format=posix "${MODULE}"
  OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cannot list the symbols of ${MODULE}")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${listing}")
set(names "")
foreach(line IN LISTS lines)
  string(REGEX REPLACE " .*" "" name "${line}")
  list(APPEND names "${name}")
endforeach()
list(SORT names)
if(NOT names STREQUAL NAMES)
  message(FATAL_ERROR "exports are not ${NAMES} alone: ${names}")
endif()
message(STATUS "exports: ${names}")
